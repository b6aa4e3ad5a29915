#ifndef ZUTARNEX_RUNTIME_KERNELS_ESCAPESCANINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_ESCAPESCANINTERNAL_H

#include <array>
#include <cstddef>
#include <cstdint>

/// Loops over text that is about to be written, up to the first unit that cannot stay as it is. They read only
/// [text, text + count), write only [out, out + count), call nothing and allocate nothing.
namespace Quillon::Runtime::Kernels {

/// The units that cannot stay as they are. Which ones those are behind U+007F is, besides, a matter of the encoding.
struct EscapeSet {
    using Marks = std::array<std::uint16_t, 7>;

    /// U+0000 and the other units below `controlLimit`, tab, line feed and carriage return excepted; the units above
    /// `last`; and the characters of `text`, all of US-ASCII and no more than there is room for.
    constexpr EscapeSet(std::uint16_t controlLimit, std::uint16_t last, const char* text) noexcept
        : controlLimit(controlLimit), last(last), marks(marksOf(text)), rows(rowsOf(controlLimit, marks)) {}

    std::uint16_t controlLimit; ///< from 1 to 0x20
    std::uint16_t last;         ///< U+00FF or more
    Marks marks;                ///< filled up with U+0000
    /// The members below U+0080 once more: bit h of rows[l] is that of the unit 16 * h + l.
    std::array<std::uint8_t, 16> rows;

private:
    static constexpr Marks marksOf(const char* text) noexcept {
        Marks result{};
        for (std::size_t i = 0; text[i] != '\0'; ++i)
            result[i] = static_cast<unsigned char>(text[i]);
        return result;
    }
    static constexpr std::array<std::uint8_t, 16> rowsOf(std::uint16_t controlLimit,
                                                         const Marks& marks) noexcept {
        std::array<std::uint8_t, 16> result{};
        const auto add = [&](unsigned int unit) {
            result[unit & 15] = static_cast<std::uint8_t>(result[unit & 15] | (1u << (unit >> 4)));
        };
        for (unsigned int unit = 0; unit < controlLimit; ++unit) {
            if (unit != '\t' && unit != '\n' && unit != '\r')
                add(unit);
        }
        for (const std::uint16_t mark : marks)
            add(mark);
        return result;
    }
};

/// The index of the first unit that is in `set` or has one of the bits of `unwritableMask`; `count` when none is.
/// REQUIRES: the mask has no bit below 0x80.
std::size_t firstToEscape(const unsigned short* text, std::size_t count, const EscapeSet& set,
                          std::uint16_t unwritableMask) noexcept;

/// Writes the units up to the first one that is in `set` or above `last`, each as one byte, and returns their number.
/// What lies behind them in [out, out + count) may have changed.
/// REQUIRES: `last` is 0x7F or 0xFF.
std::size_t copyUnescaped(const unsigned short* text, std::size_t count, const EscapeSet& set,
                          std::uint16_t last, char* out) noexcept;

} // namespace Quillon::Runtime::Kernels

#endif
