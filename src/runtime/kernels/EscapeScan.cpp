#include "runtime/kernels/EscapeScanInternal.h"

#include "runtime/kernels/CpuLevelInternal.h"
#include "runtime/kernels/IntrinsicsInternal.h"

#include <cstring>

namespace Quillon::Runtime::Kernels {

namespace {

// The definition of right

constexpr bool isIn(const EscapeSet& set, std::uint16_t unit) noexcept {
    if (unit < 0x80)
        return ((set.rows[unit & 15] >> (unit >> 4)) & 1) != 0;
    return unit > set.last;
}

std::size_t firstToEscapeScalar(const unsigned short* text, std::size_t from, std::size_t count,
                                const EscapeSet& set, std::uint16_t unwritableMask) noexcept {
    std::size_t i = from;
    while (i < count && !isIn(set, text[i]) && (text[i] & unwritableMask) == 0)
        ++i;
    return i;
}

std::size_t copyUnescapedScalar(const unsigned short* text, std::size_t count, const EscapeSet& set,
                                std::uint16_t last, char* out) noexcept {
    std::size_t i = 0;
    for (; i < count && text[i] <= last && !isIn(set, text[i]); ++i)
        out[i] = static_cast<char>(text[i]);
    return i;
}

constexpr std::size_t indexOfLowest(unsigned int bits) noexcept {
    return static_cast<unsigned int>(__builtin_ctz(bits));
}

constexpr short asShort(std::uint16_t unit) noexcept {
    return static_cast<short>(unit);
}

ZUTARNEX_TARGET_SSE2 inline __m128i load128(const unsigned short* text) noexcept {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
}

ZUTARNEX_TARGET_SSE2 inline void store64(char* out, __m128i bytes) noexcept {
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), bytes);
}

// SSE2: every mark is compared with, eight units at a time

class Sse2Set {
public:
    ZUTARNEX_TARGET_SSE2 explicit Sse2Set(const EscapeSet& set) noexcept
        : lastControl_(_mm_set1_epi16(asShort(static_cast<std::uint16_t>(set.controlLimit - 1)))),
          last_(_mm_set1_epi16(asShort(set.last))) {
        for (std::size_t i = 0; i < set.marks.size(); ++i)
            marks_[i] = _mm_set1_epi16(asShort(set.marks[i]));
    }

    /// All bits of each unit that is in the set.
    ZUTARNEX_TARGET_SSE2 __m128i find(__m128i units) const noexcept {
        const __m128i zero = _mm_setzero_si128();
        const __m128i isSpace = _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(units, _mm_set1_epi16('\t')),
                                                          _mm_cmpeq_epi16(units, _mm_set1_epi16('\n'))),
                                             _mm_cmpeq_epi16(units, _mm_set1_epi16('\r')));
        const __m128i isLow = _mm_cmpeq_epi16(_mm_subs_epu16(units, lastControl_), zero);
        const __m128i isHigh =
            _mm_andnot_si128(_mm_cmpeq_epi16(_mm_subs_epu16(units, last_), zero), _mm_set1_epi16(-1));
        __m128i found = _mm_or_si128(_mm_andnot_si128(isSpace, isLow), isHigh);
        for (const __m128i& mark : marks_)
            found = _mm_or_si128(found, _mm_cmpeq_epi16(units, mark));
        return found;
    }

private:
    __m128i lastControl_, last_;
    __m128i marks_[EscapeSet::Marks().size()];
};

ZUTARNEX_TARGET_SSE2 std::size_t firstToEscapeSse2(const unsigned short* text, std::size_t count,
                                                   const EscapeSet& set,
                                                   std::uint16_t unwritableMask) noexcept {
    const Sse2Set vectors(set);
    const __m128i zero = _mm_setzero_si128();
    const __m128i mask = _mm_set1_epi16(asShort(unwritableMask));
    std::size_t i = 0;
    for (; count - i >= 8; i += 8) {
        const __m128i units = load128(text + i);
        const __m128i isWritable = _mm_cmpeq_epi16(_mm_and_si128(units, mask), zero);
        const __m128i stays = _mm_andnot_si128(vectors.find(units), isWritable);
        const auto stops = static_cast<unsigned int>(_mm_movemask_epi8(stays)) ^ 0xFFFFu;
        if (stops != 0)
            return i + indexOfLowest(stops) / 2;
    }
    return firstToEscapeScalar(text, i, count, set, unwritableMask);
}

ZUTARNEX_TARGET_SSE2 std::size_t copyUnescapedSse2(const unsigned short* text, std::size_t count,
                                                   const EscapeSet& set, std::uint16_t last,
                                                   char* out) noexcept {
    EscapeSet narrowed = set;
    narrowed.last = last;
    const Sse2Set vectors(narrowed);
    std::size_t i = 0;
    for (; count - i >= 8; i += 8) {
        const __m128i units = load128(text + i);
        const auto stops = static_cast<unsigned int>(_mm_movemask_epi8(vectors.find(units)));
        store64(out + i, _mm_packus_epi16(units, units));
        if (stops != 0)
            return i + indexOfLowest(stops) / 2;
    }
    return i + copyUnescapedScalar(text + i, count - i, set, last, out + i);
}

// AVX2. Copied units are narrowed first and then looked up in the rows of the set: a shuffle by the low half of the
// byte gives the row, one by the high half the bit in it. A byte from 0x80 has no row.
//
// The last block of a text begins so far before its end that it is whole: some units are then looked at twice.

ZUTARNEX_TARGET_AVX2 inline __m128i loadRows(const EscapeSet& set) noexcept {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(set.rows.data()));
}

ZUTARNEX_TARGET_AVX2 inline __m128i rowBits() noexcept {
    return _mm_setr_epi8(1, 2, 4, 8, 16, 32, 64, -128, 0, 0, 0, 0, 0, 0, 0, 0);
}

class Avx2Lookup {
public:
    ZUTARNEX_TARGET_AVX2 Avx2Lookup(const EscapeSet& set, std::uint16_t last) noexcept
        : rows_(_mm256_broadcastsi128_si256(loadRows(set))), bits_(_mm256_broadcastsi128_si256(rowBits())),
          last_(_mm256_set1_epi16(asShort(last))) {}

    /// Each of these writes as many bytes as its name says and returns a bit for each unit that stops.
    ZUTARNEX_TARGET_AVX2 unsigned int copy32(const unsigned short* text, char* out) const noexcept {
        const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
        const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + 16));
        const __m256i isNarrow = inOrder(_mm256_packs_epi16(isNarrowIn(low), isNarrowIn(high)));
        const __m256i bytes = inOrder(_mm256_packus_epi16(low, high));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), bytes);
        const __m256i row = _mm256_shuffle_epi8(rows_, bytes);
        const __m256i half = _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(0x0F));
        const __m256i found = _mm256_and_si256(row, _mm256_shuffle_epi8(bits_, half));
        const __m256i stays = _mm256_and_si256(_mm256_cmpeq_epi8(found, _mm256_setzero_si256()), isNarrow);
        return ~static_cast<unsigned int>(_mm256_movemask_epi8(stays));
    }

    ZUTARNEX_TARGET_AVX2 unsigned int copy16(const unsigned short* text, char* out) const noexcept {
        const __m128i low = load128(text), high = load128(text + 8);
        const __m128i bytes = _mm_packus_epi16(low, high);
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out), bytes);
        return stopsIn(bytes, _mm_packs_epi16(isNarrowIn(low), isNarrowIn(high))) & 0xFFFFu;
    }

    ZUTARNEX_TARGET_AVX2 unsigned int copy8(const unsigned short* text, char* out) const noexcept {
        const __m128i units = load128(text);
        const __m128i bytes = _mm_packus_epi16(units, units);
        store64(out, bytes);
        return stopsIn(bytes, _mm_packs_epi16(isNarrowIn(units), isNarrowIn(units))) & 0xFFu;
    }

    ZUTARNEX_TARGET_AVX2 unsigned int copy4(const unsigned short* text, char* out) const noexcept {
        const __m128i units = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(text));
        const __m128i bytes = _mm_packus_epi16(units, units);
        const int four = _mm_cvtsi128_si32(bytes);
        std::memcpy(out, &four, sizeof four);
        return stopsIn(bytes, _mm_packs_epi16(isNarrowIn(units), isNarrowIn(units))) & 0xFu;
    }

private:
    ZUTARNEX_TARGET_AVX2 static __m256i inOrder(__m256i packed) noexcept {
        return _mm256_permute4x64_epi64(packed, 0xD8);
    }
    ZUTARNEX_TARGET_AVX2 __m256i isNarrowIn(__m256i units) const noexcept {
        return _mm256_cmpeq_epi16(_mm256_subs_epu16(units, last_), _mm256_setzero_si256());
    }
    ZUTARNEX_TARGET_AVX2 __m128i isNarrowIn(__m128i units) const noexcept {
        return _mm_cmpeq_epi16(_mm_subs_epu16(units, _mm256_castsi256_si128(last_)), _mm_setzero_si128());
    }
    ZUTARNEX_TARGET_AVX2 unsigned int stopsIn(__m128i bytes, __m128i isNarrow) const noexcept {
        const __m128i row = _mm_shuffle_epi8(_mm256_castsi256_si128(rows_), bytes);
        const __m128i half = _mm_and_si128(_mm_srli_epi16(bytes, 4), _mm_set1_epi8(0x0F));
        const __m128i found = _mm_and_si128(row, _mm_shuffle_epi8(_mm256_castsi256_si128(bits_), half));
        const __m128i stays = _mm_and_si128(_mm_cmpeq_epi8(found, _mm_setzero_si128()), isNarrow);
        return ~static_cast<unsigned int>(_mm_movemask_epi8(stays));
    }

    __m256i rows_, bits_, last_;
};

/// Copies by blocks of `Size` units. REQUIRES: count >= Size.
template <std::size_t Size,
          unsigned int (Avx2Lookup::*CopyBlock)(const unsigned short*, char*) const noexcept>
ZUTARNEX_TARGET_AVX2 inline std::size_t copyBlocks(const Avx2Lookup& lookup, const unsigned short* text,
                                                   std::size_t count, char* out) noexcept {
    for (std::size_t i = 0;;) {
        if (const unsigned int stops = (lookup.*CopyBlock)(text + i, out + i))
            return i + indexOfLowest(stops);
        i += Size;
        if (i == count)
            return count;
        if (count - i < Size)
            i = count - Size;
    }
}

ZUTARNEX_TARGET_AVX2 std::size_t copyUnescapedAvx2(const unsigned short* text, std::size_t count,
                                                   const EscapeSet& set, std::uint16_t last,
                                                   char* out) noexcept {
    if (count < 4)
        return copyUnescapedScalar(text, count, set, last, out);
    const Avx2Lookup lookup(set, last);
    if (count >= 32)
        return copyBlocks<32, &Avx2Lookup::copy32>(lookup, text, count, out);
    if (count >= 16)
        return copyBlocks<16, &Avx2Lookup::copy16>(lookup, text, count, out);
    if (count >= 8)
        return copyBlocks<8, &Avx2Lookup::copy8>(lookup, text, count, out);
    return copyBlocks<4, &Avx2Lookup::copy4>(lookup, text, count, out);
}

ZUTARNEX_TARGET_AVX2 std::size_t firstToEscapeAvx2(const unsigned short* text, std::size_t count,
                                                   const EscapeSet& set,
                                                   std::uint16_t unwritableMask) noexcept {
    const __m256i zero = _mm256_setzero_si256();
    const __m256i rows = _mm256_broadcastsi128_si256(loadRows(set));
    const __m256i bits = _mm256_broadcastsi128_si256(rowBits());
    const __m256i last = _mm256_set1_epi16(asShort(set.last));
    const __m256i mask = _mm256_set1_epi16(asShort(unwritableMask));
    std::size_t i = 0;
    for (; count - i >= 16; i += 16) {
        const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + i));
        const __m256i isKnown = _mm256_cmpeq_epi16(_mm256_subs_epu16(units, last), zero);
        const __m256i isWritable = _mm256_cmpeq_epi16(_mm256_and_si256(units, mask), zero);
        // A shuffle looks at each byte; the units from 0x80 become 0x80, so that they have no row, as have high bytes.
        const __m256i ascii = _mm256_or_si256(_mm256_min_epu16(units, _mm256_set1_epi16(0x80)),
                                              _mm256_set1_epi16(asShort(0x8000)));
        const __m256i half = _mm256_and_si256(_mm256_srli_epi16(ascii, 4), _mm256_set1_epi16(0x0F));
        const __m256i found =
            _mm256_and_si256(_mm256_shuffle_epi8(rows, ascii), _mm256_shuffle_epi8(bits, half));
        const __m256i stays =
            _mm256_and_si256(_mm256_cmpeq_epi16(found, zero), _mm256_and_si256(isKnown, isWritable));
        if (const unsigned int stops = ~static_cast<unsigned int>(_mm256_movemask_epi8(stays)))
            return i + indexOfLowest(stops) / 2;
    }
    return firstToEscapeScalar(text, i, count, set, unwritableMask);
}

// AVX-512: as AVX2, 32 units at a time; the loads and stores of the last block are masked.

ZUTARNEX_TARGET_AVX512 inline __mmask32 maskOf(std::size_t count) noexcept {
    return count >= 32 ? ~__mmask32{0} : (__mmask32{1} << count) - 1;
}

/// A bit for each byte that is in the set.
ZUTARNEX_TARGET_AVX512 inline __mmask32 lookUp(__m256i rows, __m256i bytes) noexcept {
    const __m256i bits = _mm256_broadcastsi128_si256(rowBits());
    const __m256i half = _mm256_and_si256(_mm256_srli_epi16(bytes, 4), _mm256_set1_epi8(0x0F));
    return _mm256_test_epi8_mask(_mm256_shuffle_epi8(rows, bytes), _mm256_shuffle_epi8(bits, half));
}

ZUTARNEX_TARGET_AVX512 std::size_t copyUnescapedAvx512(const unsigned short* text, std::size_t count,
                                                       const EscapeSet& set, std::uint16_t last,
                                                       char* out) noexcept {
    const __m256i rows = _mm256_broadcastsi128_si256(loadRows(set));
    const __m512i lastUnits = _mm512_set1_epi16(asShort(last));
    for (std::size_t i = 0; i < count; i += 32) {
        const __mmask32 block = maskOf(count - i);
        const __m512i units = _mm512_maskz_loadu_epi16(block, text + i);
        const __m256i bytes = _mm512_cvtepi16_epi8(units);
        _mm256_mask_storeu_epi8(out + i, block, bytes);
        const __mmask32 isWide = _mm512_cmpgt_epu16_mask(units, lastUnits);
        if (const __mmask32 stops = (lookUp(rows, bytes) | isWide) & block)
            return i + indexOfLowest(stops);
    }
    return count;
}

ZUTARNEX_TARGET_AVX512 std::size_t firstToEscapeAvx512(const unsigned short* text, std::size_t count,
                                                       const EscapeSet& set,
                                                       std::uint16_t unwritableMask) noexcept {
    const __m256i rows = _mm256_broadcastsi128_si256(loadRows(set));
    const __m512i last = _mm512_set1_epi16(asShort(set.last));
    const __m512i mask = _mm512_set1_epi16(asShort(unwritableMask));
    for (std::size_t i = 0; i < count; i += 32) {
        const __mmask32 block = maskOf(count - i);
        const __m512i units = _mm512_maskz_loadu_epi16(block, text + i);
        const __m256i ascii = _mm512_cvtepi16_epi8(_mm512_min_epu16(units, _mm512_set1_epi16(0x80)));
        const __mmask32 isBeyond = _mm512_cmpgt_epu16_mask(units, last) | _mm512_test_epi16_mask(units, mask);
        if (const __mmask32 stops = (lookUp(rows, ascii) | isBeyond) & block)
            return i + indexOfLowest(stops);
    }
    return count;
}

} // namespace

std::size_t firstToEscape(const unsigned short* text, std::size_t count, const EscapeSet& set,
                          std::uint16_t unwritableMask) noexcept {
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return firstToEscapeAvx512(text, count, set, unwritableMask);
    case CpuLevel::Avx2:
        return firstToEscapeAvx2(text, count, set, unwritableMask);
    case CpuLevel::Sse2:
        return firstToEscapeSse2(text, count, set, unwritableMask);
    case CpuLevel::Scalar:
        break;
    }
    return firstToEscapeScalar(text, 0, count, set, unwritableMask);
}

std::size_t copyUnescaped(const unsigned short* text, std::size_t count, const EscapeSet& set,
                          std::uint16_t last, char* out) noexcept {
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return copyUnescapedAvx512(text, count, set, last, out);
    case CpuLevel::Avx2:
        return copyUnescapedAvx2(text, count, set, last, out);
    case CpuLevel::Sse2:
        return copyUnescapedSse2(text, count, set, last, out);
    case CpuLevel::Scalar:
        break;
    }
    return copyUnescapedScalar(text, count, set, last, out);
}

} // namespace Quillon::Runtime::Kernels
