#ifndef ZUTARNEX_RUNTIME_KERNELS_DIGITTEXTINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_DIGITTEXTINTERNAL_H

#include "runtime/kernels/CpuLevelInternal.h"
#include "runtime/kernels/IntrinsicsInternal.h"

#include <algorithm>
#include <array>
#include <cstddef>

/// What decoding Base64 and hexadecimal text have in common: digits, with white space anywhere among them.
namespace Quillon::Runtime::Kernels {

/// What each US-ASCII character is: the value of a digit, or one of these. Every other byte is kNoDigit.
inline constexpr unsigned char kWhiteSpace = 0x40, kNoDigit = 0x80;
using DigitTable = std::array<unsigned char, 128>;

constexpr DigitTable digitTable(const char* digits) {
    DigitTable table{};
    table.fill(kNoDigit);
    for (unsigned char c = 9; c <= 13; ++c)
        table[c] = kWhiteSpace;
    table[' '] = kWhiteSpace;
    for (unsigned char value = 0; digits[value] != '\0'; ++value)
        table[static_cast<unsigned char>(digits[value])] = value;
    return table;
}

inline unsigned char digitOf(const DigitTable& table, unsigned char character) noexcept {
    return character < table.size() ? table[character] : kNoDigit;
}

/// Takes `digitCount` digits back, and the white space behind and among them. REQUIRES: they stand before `in`.
inline void takeBack(const DigitTable& table, const unsigned char*& in, const unsigned char* begin,
                     std::size_t digitCount) noexcept {
    for (; in != begin; --in) {
        if (digitOf(table, in[-1]) == kWhiteSpace)
            continue;
        if (digitCount == 0)
            return;
        --digitCount;
    }
}

/// Collects the digits of a text, piece by piece.
struct DigitCollector {
    static constexpr std::size_t kPiece = 2048;

    const DigitTable& table;
    std::size_t count = 0;  ///< of the values that are held
    bool isStopped = false; ///< within a block's length there is something else
    alignas(64) unsigned char values[kPiece + std::size_t{2} * 64];

    explicit DigitCollector(const DigitTable& digits) noexcept : table(digits) {}

    /// How much of `left` characters to collect when `maxUnits` of so many digits each are wanted, counting those that
    /// are held: in no case more.
    std::size_t pieceFor(std::size_t maxUnits, std::size_t digitsOfUnit, std::size_t left) const noexcept {
        const std::size_t wanted =
            std::min(maxUnits, kPiece) * digitsOfUnit - count; // no product of any size
        return std::min({wanted, kPiece, left});
    }

    /// Appends what [in, in + size) holds and moves `in`; block by block, the one with another character not included.
    /// REQUIRES: size <= kPiece, count < 64.
    ZUTARNEX_TARGET_AVX512 void collect(const unsigned char*& in, std::size_t size) noexcept {
        const __m512i low = _mm512_loadu_si512(table.data()), high = _mm512_loadu_si512(table.data() + 64);
        const __m512i spaces = _mm512_set1_epi8(' ');
        const unsigned char* at = in; // not `in` and `count` themselves, which the stores below might change
        std::size_t held = count;
        while (size != 0) {
            const std::size_t length = size < 64 ? size : 64;
            const __m512i text = length == 64 ? _mm512_loadu_si512(at)
                                              : _mm512_mask_loadu_epi8(spaces, firstBytes(length), at);
            const __m512i kinds = _mm512_permutex2var_epi8(low, text, high);
            isStopped = hasAny(_mm512_or_si512(kinds, text), kNoDigit);
            if (isStopped)
                break;
            const __mmask64 digits = _mm512_testn_epi8_mask(kinds, _mm512_set1_epi8(kWhiteSpace));
            _mm512_storeu_si512(values + held, _mm512_maskz_compress_epi8(digits, kinds));
            held += countOf(digits);
            at += length;
            size -= length;
        }
        in = at;
        count = held;
    }

    /// Forgets the first `used` values. REQUIRES: fewer than 64 stay.
    ZUTARNEX_TARGET_AVX512 void drop(std::size_t used) noexcept {
        _mm512_storeu_si512(values, _mm512_loadu_si512(values + used));
        count -= used;
    }
};

} // namespace Quillon::Runtime::Kernels

#endif
