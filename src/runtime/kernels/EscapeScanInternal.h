#ifndef ZUTARNEX_RUNTIME_KERNELS_ESCAPESCANINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_ESCAPESCANINTERNAL_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>
#include <utility>

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

    /// REQUIRES: unit < 0x80.
    constexpr bool holds(unsigned int unit) const noexcept {
        return ((rows[unit & 15] >> (unit >> 4)) & 1) != 0;
    }

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

// Short texts, where asking for the level and the way to a kernel would cost more than the work. SSE2 is the floor of
// both platforms, so it needs no question.

constexpr std::size_t kShortText = 32;

/// All bits of the bytes that are `unit`; of none when it is zero.
template <unsigned int unit>
inline __m128i areUnit(__m128i bytes) noexcept {
    return unit == 0 ? _mm_setzero_si128() : _mm_cmpeq_epi8(bytes, _mm_set1_epi8(static_cast<char>(unit)));
}

/// A bit for each of sixteen bytes that is in `set` or not of US-ASCII.
template <const EscapeSet& set>
inline unsigned int stopsIn(__m128i bytes) noexcept {
    constexpr auto kKept = [](unsigned int space) {
        return space < set.controlLimit && !set.holds(space) ? space : 0;
    };
    const __m128i isKept =
        areUnit<kKept('\t')>(bytes) | areUnit<kKept('\n')>(bytes) | areUnit<kKept('\r')>(bytes);
    constexpr auto kBehindControls = [](unsigned int mark) { return mark < set.controlLimit ? 0 : mark; };
    const auto areMarks = [&]<std::size_t... i>(std::index_sequence<i...>) {
        return (areUnit<kBehindControls(set.marks[i])>(bytes) | ...);
    };
    const __m128i isMark = areMarks(std::make_index_sequence<EscapeSet::Marks().size()>());
    // With a sign, the bytes from 0x80 are the lowest.
    const __m128i isLow = _mm_cmplt_epi8(bytes, _mm_set1_epi8(static_cast<char>(set.controlLimit)));
    return static_cast<unsigned int>(_mm_movemask_epi8(_mm_andnot_si128(isKept, isLow) | isMark));
}

/// Sixteen units as bytes. Those behind U+00FF become 0 or 0xFF.
inline __m128i narrowed(const unsigned short* eight, const unsigned short* eightMore) noexcept {
    return _mm_packus_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(eight)),
                            _mm_loadu_si128(reinterpret_cast<const __m128i*>(eightMore)));
}

/// Writes the units, each as one byte, unless one of them is in `set` or not of US-ASCII: then it writes nothing and
/// returns false. A text that fills no register twice is taken by its ends, which overlap.
/// REQUIRES: count <= kShortText.
template <const EscapeSet& set>
inline bool copyShort(const unsigned short* text, std::size_t count, char* out) noexcept {
    if (count > 16) {
        const __m128i first = narrowed(text, text + 8);
        const __m128i last = narrowed(text + count - 16, text + count - 8);
        if ((stopsIn<set>(first) | stopsIn<set>(last)) != 0)
            return false;
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), first);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + count - 16), last);
    } else if (count >= 8) {
        const __m128i bytes = narrowed(text, text + count - 8);
        if (stopsIn<set>(bytes) != 0)
            return false;
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out), bytes);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(out + count - 8), _mm_unpackhi_epi64(bytes, bytes));
    } else if (count >= 4) {
        const __m128i units =
            _mm_unpacklo_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(text)),
                               _mm_loadl_epi64(reinterpret_cast<const __m128i*>(text + count - 4)));
        const __m128i bytes = _mm_packus_epi16(units, units);
        if (stopsIn<set>(bytes) != 0)
            return false;
        const int first = _mm_cvtsi128_si32(bytes), last = _mm_cvtsi128_si32(_mm_srli_epi64(bytes, 32));
        std::memcpy(out, &first, sizeof first);
        std::memcpy(out + count - 4, &last, sizeof last);
    } else if (count != 0) {
        const std::size_t middle = count / 2, end = count - 1;
        const unsigned int units[] = {text[0], text[middle], text[end]};
        const bool isAscii = (units[0] | units[1] | units[2]) < 0x80;
        if (!isAscii || set.holds(units[0]) || set.holds(units[1]) || set.holds(units[2]))
            return false;
        out[0] = static_cast<char>(units[0]);
        out[middle] = static_cast<char>(units[1]);
        out[end] = static_cast<char>(units[2]);
    }
    return true;
}

/// Whether copyShort would write them, and count is in its range.
template <const EscapeSet& set>
inline bool isShortAndPlain(const unsigned short* text, std::size_t count) noexcept {
    char unused[kShortText];
    return count <= kShortText && copyShort<set>(text, count, unused);
}

} // namespace Quillon::Runtime::Kernels

#endif
