#include "runtime/kernels/CpuLevelInternal.h"
#include "runtime/kernels/IntrinsicsInternal.h"
#include "runtime/kernels/TranscodeInternal.h"
#include "runtime/kernels/TranscodeStepsInternal.h"

#include <algorithm>
#include <array>

namespace Quillon::Runtime::Kernels {

namespace {

using Units = const unsigned short*;

// Scalar

std::uint64_t lengthScalar(Units text, Units end) noexcept {
    std::uint64_t length = 0;
    while (text != end)
        length += utf8LengthOf(nextOfUtf16(text, end));
    return length;
}

/// Converts the characters that begin before `stop`; moves `text` behind the last.
inline char* convertTo(Units stop, Units& text, Units end, char* out) noexcept {
    while (text < stop)
        out = appendUtf8(nextOfUtf16(text, end), out);
    return out;
}

// Lengths: one byte for each unit, one more from U+0080 and from U+0800 on, and two less for each pair of surrogates,
// whose units count three each by then. A pair counts with its high surrogate, so each load looks one unit ahead.

constexpr std::size_t kBatch = 4096; // vectors, after which a 16-bit sum of up to 2 for each is emptied

ZUTARNEX_TARGET_SSE2 std::uint64_t sumOf(__m128i counts) noexcept {
    alignas(16) unsigned short sums[8];
    _mm_store_si128(reinterpret_cast<__m128i*>(sums), counts);
    std::uint64_t sum = 0;
    for (const unsigned short s : sums)
        sum += s;
    return sum;
}

/// What is left behind the last whole vector: the low half of a pair that was counted there is left out.
std::uint64_t lengthOfRest(Units begin, Units text, Units end) noexcept {
    if (text == begin || text == end || !isHighSurrogate(text[-1]) || !isLowSurrogate(*text))
        return lengthScalar(text, end);
    return 3 + lengthScalar(text + 1, end);
}

ZUTARNEX_TARGET_SSE2 std::uint64_t lengthSse2(Units text, Units end) noexcept {
    const Units begin = text;
    const __m128i zero = _mm_setzero_si128(), surrogateBits = _mm_set1_epi16(static_cast<short>(0xFC00));
    std::uint64_t length = 0;
    while (end - text > 8) {
        const std::size_t vectors = std::min(kBatch, static_cast<std::size_t>(end - text - 1) / 8);
        __m128i extra = zero;
        for (const Units stop = text + vectors * 8; text != stop; text += 8) {
            const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
            const __m128i next = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + 1));
            const __m128i below80 =
                _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80))), zero);
            const __m128i below800 =
                _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800))), zero);
            const __m128i high = _mm_cmpeq_epi16(_mm_and_si128(units, surrogateBits),
                                                 _mm_set1_epi16(static_cast<short>(0xD800)));
            const __m128i low = _mm_cmpeq_epi16(_mm_and_si128(next, surrogateBits),
                                                _mm_set1_epi16(static_cast<short>(0xDC00)));
            const __m128i pair = _mm_and_si128(high, low);
            extra = _mm_add_epi16(extra, _mm_add_epi16(below80, below800)); // each true is -1
            extra = _mm_add_epi16(extra, _mm_add_epi16(pair, pair));
        }
        length += vectors * 24 - sumOf(_mm_sub_epi16(zero, extra));
    }
    return length + lengthOfRest(begin, text, end);
}

ZUTARNEX_TARGET_AVX2 std::uint64_t lengthAvx2(Units text, Units end) noexcept {
    const Units begin = text;
    const __m256i zero = _mm256_setzero_si256(),
                  surrogateBits = _mm256_set1_epi16(static_cast<short>(0xFC00));
    std::uint64_t length = 0;
    while (end - text > 16) {
        const std::size_t vectors = std::min(kBatch, static_cast<std::size_t>(end - text - 1) / 16);
        __m256i extra = zero;
        for (const Units stop = text + vectors * 16; text != stop; text += 16) {
            const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
            const __m256i next = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + 1));
            const __m256i below80 = _mm256_cmpeq_epi16(
                _mm256_and_si256(units, _mm256_set1_epi16(static_cast<short>(0xFF80))), zero);
            const __m256i below800 = _mm256_cmpeq_epi16(
                _mm256_and_si256(units, _mm256_set1_epi16(static_cast<short>(0xF800))), zero);
            const __m256i high = _mm256_cmpeq_epi16(_mm256_and_si256(units, surrogateBits),
                                                    _mm256_set1_epi16(static_cast<short>(0xD800)));
            const __m256i low = _mm256_cmpeq_epi16(_mm256_and_si256(next, surrogateBits),
                                                   _mm256_set1_epi16(static_cast<short>(0xDC00)));
            const __m256i pair = _mm256_and_si256(high, low);
            extra = _mm256_add_epi16(extra, _mm256_add_epi16(below80, below800)); // each true is -1
            extra = _mm256_add_epi16(extra, _mm256_add_epi16(pair, pair));
        }
        extra = _mm256_sub_epi16(zero, extra);
        length +=
            vectors * 48 - sumOf(_mm256_castsi256_si128(extra)) - sumOf(_mm256_extracti128_si256(extra, 1));
    }
    return length + lengthOfRest(begin, text, end);
}

ZUTARNEX_TARGET_AVX512 inline std::uint64_t sumOf(__m512i counts) noexcept {
    const __m512i low = _mm512_and_si512(counts, _mm512_set1_epi32(0xFFFF));
    return static_cast<std::uint64_t>(
        _mm512_reduce_add_epi32(_mm512_add_epi32(low, _mm512_srli_epi32(counts, 16))));
}

ZUTARNEX_TARGET_AVX512 inline __mmask32 surrogates(__m512i units, unsigned int kind) noexcept {
    return _mm512_cmpeq_epi16_mask(_mm512_and_si512(units, _mm512_set1_epi16(static_cast<short>(0xFC00))),
                                   _mm512_set1_epi16(static_cast<short>(kind)));
}

constexpr std::ptrdiff_t kAsciiRun = 128; // units that are looked at together

ZUTARNEX_TARGET_AVX512 inline bool isAsciiRun(Units text) noexcept {
    const __m512i all =
        _mm512_or_si512(_mm512_or_si512(_mm512_loadu_si512(text), _mm512_loadu_si512(text + 32)),
                        _mm512_or_si512(_mm512_loadu_si512(text + 64), _mm512_loadu_si512(text + 96)));
    return _mm512_test_epi16_mask(all, _mm512_set1_epi16(static_cast<short>(0xFF80))) == 0;
}

/// Moves from the registers of masks are slow, so there are some only where there are surrogates.
ZUTARNEX_TARGET_AVX512 std::uint64_t lengthAvx512(Units text, Units end) noexcept {
    const Units begin = text;
    const __m512i from80 = _mm512_set1_epi16(static_cast<short>(0xFF80)), one = _mm512_set1_epi16(1),
                  from800 = _mm512_set1_epi16(static_cast<short>(0xF800));
    std::uint64_t length = 0;
    while (end - text > 32) {
        if (end - text > kAsciiRun && isAsciiRun(text)) {
            text += kAsciiRun;
            length += kAsciiRun;
            continue;
        }
        const std::size_t vectors = std::min<std::size_t>(32, static_cast<std::size_t>(end - text - 1) / 32);
        __m512i extra = _mm512_setzero_si512();
        std::size_t pairs = 0;
        for (const Units stop = text + vectors * 32; text != stop; text += 32) {
            const __m512i units = _mm512_loadu_si512(text);
            extra = _mm512_mask_add_epi16(extra, _mm512_test_epi16_mask(units, from80), extra, one);
            extra = _mm512_mask_add_epi16(extra, _mm512_test_epi16_mask(units, from800), extra, one);
            const __mmask32 high = surrogates(units, 0xD800);
            if (high != 0) {
                const __mmask32 low = surrogates(_mm512_loadu_si512(text + 1), 0xDC00);
                pairs += static_cast<unsigned int>(__builtin_popcount(high & low));
            }
        }
        length += vectors * 32 + sumOf(extra) - 2 * pairs;
    }
    return length + lengthOfRest(begin, text, end);
}

// Conversion

/// US-ASCII eight units at a time; whatever surrounds another character goes one by one.
ZUTARNEX_TARGET_SSE2 char* convertSse2(Units text, Units end, char* out) noexcept {
    while (end - text >= 8) {
        if (narrowEightAscii(text, out)) {
            text += 8;
            out += 8;
        } else {
            out = convertTo(text + std::min<std::ptrdiff_t>(end - text, 16), text, end, out);
        }
    }
    return convertTo(end, text, end, out);
}

/// For four lanes that hold the UTF-8 of one character each, the bytes that count, in their order. Indexed by the
/// lanes from U+0080 on (bits 0 to 3) and from U+0800 on (bits 4 to 7).
constexpr auto kPacked = [] {
    std::array<std::array<unsigned char, 16>, 256> packed{};
    for (std::size_t key = 0; key < packed.size(); ++key) {
        std::size_t at = 0;
        for (std::size_t lane = 0; lane < 4; ++lane) {
            const std::size_t length = 1 + (key >> lane & 1) + (key >> (lane + 4) & 1);
            for (std::size_t i = 0; i < length; ++i)
                packed[key][at++] = static_cast<unsigned char>(lane * 4 + i);
        }
        while (at < 16)
            packed[key][at++] = 0x80; // zero
    }
    return packed;
}();

/// Eight units without surrogates, of which four go into each half of the register.
struct EightEncoded {
    __m256i bytes; // up to three of four of each lane
    unsigned int from80, from800;
};

ZUTARNEX_TARGET_AVX2 inline EightEncoded encodeEight(__m128i units) noexcept {
    const __m256i c = _mm256_cvtepu16_epi32(units);
    const __m256i is80 = _mm256_cmpgt_epi32(c, _mm256_set1_epi32(0x7F));
    const __m256i is800 = _mm256_cmpgt_epi32(c, _mm256_set1_epi32(0x7FF));
    const __m256i low = _mm256_and_si256(c, _mm256_set1_epi32(0x3F));
    const __m256i middle = _mm256_and_si256(_mm256_srli_epi32(c, 6), _mm256_set1_epi32(0x3F));
    const __m256i two =
        _mm256_or_si256(_mm256_or_si256(middle, _mm256_slli_epi32(low, 8)), _mm256_set1_epi32(0x80C0));
    const __m256i three =
        _mm256_or_si256(_mm256_or_si256(_mm256_srli_epi32(c, 12), _mm256_slli_epi32(middle, 8)),
                        _mm256_or_si256(_mm256_slli_epi32(low, 16), _mm256_set1_epi32(0x8080E0)));
    return {_mm256_blendv_epi8(_mm256_blendv_epi8(c, two, is80), three, is800),
            static_cast<unsigned int>(_mm256_movemask_ps(_mm256_castsi256_ps(is80))),
            static_cast<unsigned int>(_mm256_movemask_ps(_mm256_castsi256_ps(is800)))};
}

/// Writes sixteen bytes, of which those before the result count.
ZUTARNEX_TARGET_AVX2 inline char* storePacked(__m128i lanes, unsigned int from80, unsigned int from800,
                                              char* out) noexcept {
    const unsigned int key = (from80 & 15) | (from800 & 15) << 4;
    const __m128i order = _mm_loadu_si128(reinterpret_cast<const __m128i*>(kPacked[key].data()));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_shuffle_epi8(lanes, order));
    return out + 4 + __builtin_popcount(key);
}

/// Eight units that are four pairs of surrogates, as sixteen bytes.
ZUTARNEX_TARGET_AVX2 inline __m128i encodeFourPairs(__m128i units) noexcept {
    const __m128i high = _mm_and_si128(units, _mm_set1_epi32(0x3FF));
    const __m128i low = _mm_and_si128(_mm_srli_epi32(units, 16), _mm_set1_epi32(0x3FF));
    const __m128i c = _mm_add_epi32(_mm_or_si128(_mm_slli_epi32(high, 10), low), _mm_set1_epi32(0x10000));
    const __m128i first = _mm_srli_epi32(c, 18);
    const __m128i second = _mm_and_si128(_mm_srli_epi32(c, 4), _mm_set1_epi32(0x3F00));
    const __m128i third = _mm_and_si128(_mm_slli_epi32(c, 10), _mm_set1_epi32(0x3F0000));
    const __m128i fourth = _mm_slli_epi32(_mm_and_si128(c, _mm_set1_epi32(0x3F)), 24);
    return _mm_or_si128(_mm_or_si128(_mm_or_si128(first, second), _mm_or_si128(third, fourth)),
                        _mm_set1_epi32(static_cast<int>(0x808080F0)));
}

ZUTARNEX_TARGET_AVX2 char* convertAvx2(Units text, Units end, char* out) noexcept {
    constexpr std::ptrdiff_t kBehind =
        12; // units, and so at least bytes, behind what storePacked() may count least of
    while (end - text >= 16 + kBehind) {
        const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
        if (_mm256_testz_si256(units, _mm256_set1_epi16(static_cast<short>(0xFF80)))) {
            const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(units, units), 0x08);
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm256_castsi256_si128(bytes));
            out += 16;
            text += 16;
            continue;
        }
        const __m128i eight = _mm256_castsi256_si128(units);
        const __m128i surrogateBits = _mm_and_si128(eight, _mm_set1_epi16(static_cast<short>(0xFC00)));
        const __m128i isHigh = _mm_cmpeq_epi16(surrogateBits, _mm_set1_epi16(static_cast<short>(0xD800)));
        const __m128i isLow = _mm_cmpeq_epi16(surrogateBits, _mm_set1_epi16(static_cast<short>(0xDC00)));
        if (_mm_movemask_epi8(_mm_or_si128(isHigh, isLow)) == 0) {
            const EightEncoded encoded = encodeEight(eight);
            out = storePacked(_mm256_castsi256_si128(encoded.bytes), encoded.from80, encoded.from800, out);
            out = storePacked(_mm256_extracti128_si256(encoded.bytes, 1), encoded.from80 >> 4,
                              encoded.from800 >> 4, out);
            text += 8;
        } else if (_mm_movemask_epi8(isHigh) == 0x3333 && _mm_movemask_epi8(isLow) == 0xCCCC) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out), encodeFourPairs(eight));
            out += 16;
            text += 8;
        } else {
            out = convertTo(text + 8, text, end, out);
        }
    }
    return convertSse2(text, end, out);
}

/// The lanes of sixteen characters; the last byte of each is the last of its lane.
struct SixteenEncoded {
    __m512i bytes;
    __mmask64 counted;
};

/// `pairs`: characters above U+FFFF. `nothing`: lanes without a character.
ZUTARNEX_TARGET_AVX512 inline SixteenEncoded encodeSixteen(__m512i c, __mmask16 pairs,
                                                           __mmask16 nothing) noexcept {
    const __mmask16 below80 = _mm512_cmplt_epu32_mask(c, _mm512_set1_epi32(0x80));
    const __mmask16 below800 = _mm512_cmplt_epu32_mask(c, _mm512_set1_epi32(0x800));
    // The groups of six bits from 18, 12, 6 and 0 on, for both lanes of 64 bits.
    const __m512i groups = _mm512_multishift_epi64_epi8(_mm512_set1_epi64(0x20262C3200060C12), c);
    __m512i prefix = _mm512_set1_epi32(static_cast<int>(0x8080E000));
    prefix = _mm512_mask_mov_epi32(prefix, below800, _mm512_set1_epi32(static_cast<int>(0x80C00000)));
    prefix = _mm512_mask_mov_epi32(prefix, pairs, _mm512_set1_epi32(static_cast<int>(0x808080F0)));
    __m512i bytes =
        _mm512_ternarylogic_epi32(groups, _mm512_set1_epi32(0x3F3F3F3F), prefix, 0xEA); // (a & b) | c
    bytes = _mm512_mask_slli_epi32(bytes, below80, c, 24);
    // A byte that does not count is zero; the last one, which may be zero, counts always.
    const __m512i last = _mm512_set1_epi32(static_cast<int>(0xFF000000));
    const __m512i marked = _mm512_maskz_or_epi32(_knot_mask16(nothing), bytes, last);
    return {bytes, _mm512_test_epi8_mask(marked, marked)};
}

/// Writes 64 bytes, of which those before the result count.
ZUTARNEX_TARGET_AVX512 inline char* storeSixteen(const SixteenEncoded& encoded, char* out) noexcept {
    _mm512_storeu_si512(out, _mm512_maskz_compress_epi8(encoded.counted, encoded.bytes));
    return out + countOf(encoded.counted);
}

/// Sixteen units among which there are surrogates, and the units one further on. Of a pair, the lane of the first has
/// all four bytes, that of the second none.
///
/// `consumed`: 1 when the first unit is the second of a pair whose first stood before; then the same for the units
/// that follow. `nothing`: lanes without a unit.
ZUTARNEX_TARGET_AVX512 inline SixteenEncoded
encodeSurrogates(__m256i units, __m256i nextUnits, unsigned int& consumed, __mmask16 nothing) noexcept {
    __m512i c = _mm512_cvtepu16_epi32(units);
    const __m512i next = _mm512_cvtepu16_epi32(nextUnits);
    const __m512i surrogateBits = _mm512_set1_epi32(0xFC00), lowSurrogate = _mm512_set1_epi32(0xDC00);
    const __m512i kind = _mm512_and_si512(c, surrogateBits);
    const unsigned int high = _mm512_cmpeq_epi32_mask(kind, _mm512_set1_epi32(0xD800));
    const unsigned int low = _mm512_cmpeq_epi32_mask(kind, lowSurrogate);
    const unsigned int lowNext = _mm512_cmpeq_epi32_mask(_mm512_and_si512(next, surrogateBits), lowSurrogate);
    const auto pairs = static_cast<__mmask16>(high & lowNext);
    const unsigned int second = static_cast<unsigned int>(pairs) << 1 | consumed;
    const auto lone = static_cast<__mmask16>((high | low) & ~pairs & ~second);
    c = _mm512_mask_mov_epi32(c, lone, _mm512_set1_epi32(kReplacement));
    // The ten low bits of each make the character; the sum has these surpluses besides.
    constexpr unsigned int kSurplus = (0xD800u << 10) + 0xDC00u - 0x10000u;
    const __m512i whole = _mm512_sub_epi32(_mm512_add_epi32(_mm512_slli_epi32(c, 10), next),
                                           _mm512_set1_epi32(static_cast<int>(kSurplus)));
    c = _mm512_mask_mov_epi32(c, pairs, whole);
    consumed = second >> 16;
    return encodeSixteen(c, pairs, static_cast<__mmask16>(second | nothing));
}

ZUTARNEX_TARGET_AVX512 inline char* convertSurrogates(Units text, unsigned int& consumed,
                                                      char* out) noexcept {
    const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
    const __m256i next = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text + 1));
    return storeSixteen(encodeSurrogates(units, next, consumed, 0), out);
}

ZUTARNEX_TARGET_AVX512 inline bool isAsciiOnly(__m256i units) noexcept {
    return _mm256_test_epi16_mask(units, _mm256_set1_epi16(static_cast<short>(0xFF80))) == 0;
}

ZUTARNEX_TARGET_AVX512 inline bool hasSurrogates(__m256i units) noexcept {
    const __m256i topBits = _mm256_and_si256(units, _mm256_set1_epi16(static_cast<short>(0xF800)));
    return _mm256_cmpeq_epi16_mask(topBits, _mm256_set1_epi16(static_cast<short>(0xD800))) != 0;
}

/// What is too little for stores that write too much. On its own, so that a short text does not wait for what long ones
/// keep in registers.
ZUTARNEX_TARGET_AVX512 [[gnu::noinline]] char* convertRest(Units text, Units end, char* out) noexcept {
    unsigned int consumed = 0;
    while (text != end) {
        const auto left = static_cast<std::size_t>(end - text);
        const std::size_t count = std::min<std::size_t>(left, 16);
        const auto lanes = static_cast<__mmask16>(0xFFFFu >> (16 - count));
        const __m256i units = _mm256_maskz_loadu_epi16(lanes, text);
        if (isAsciiOnly(units)) {
            _mm_mask_storeu_epi8(out, lanes, _mm256_cvtepi16_epi8(units));
            out += count;
        } else {
            const auto nothing = static_cast<__mmask16>(~lanes);
            const auto nextLanes = left > 16 ? lanes : static_cast<__mmask16>(lanes >> 1);
            const SixteenEncoded encoded =
                hasSurrogates(units) ? encodeSurrogates(units, _mm256_maskz_loadu_epi16(nextLanes, text + 1),
                                                        consumed, nothing)
                                     : encodeSixteen(_mm512_cvtepu16_epi32(units), 0, nothing);
            const unsigned int length = countOf(encoded.counted);
            _mm512_mask_storeu_epi8(out, firstBytes(length),
                                    _mm512_maskz_compress_epi8(encoded.counted, encoded.bytes));
            out += length;
        }
        text += count;
    }
    return out;
}

// Units, and so bytes but for one, behind what a store may count none of.
constexpr std::ptrdiff_t kBehind = 65;

ZUTARNEX_TARGET_AVX512 char* convertLong(Units text, Units end, char* out) noexcept {
    const __m512i notAscii = _mm512_set1_epi16(static_cast<short>(0xFF80));
    unsigned int consumed = 0; // 1: the first unit is the second of a pair that is already converted
    for (; end - text >= 32 + kBehind; text += 32) {
        const __m512i units = _mm512_loadu_si512(text);
        const __m512i topBits = _mm512_and_si512(units, _mm512_set1_epi16(static_cast<short>(0xF800)));
        if (_mm512_test_epi16_mask(units, notAscii) == 0) {
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), _mm512_cvtepi16_epi8(units));
            out += 32;
        } else if (_mm512_cmpeq_epi16_mask(topBits, _mm512_set1_epi16(static_cast<short>(0xD800))) == 0) {
            const __m512i first = _mm512_cvtepu16_epi32(_mm512_castsi512_si256(units));
            const __m512i second = _mm512_cvtepu16_epi32(_mm512_extracti64x4_epi64(units, 1));
            out = storeSixteen(encodeSixteen(first, 0, 0), out);
            out = storeSixteen(encodeSixteen(second, 0, 0), out);
        } else {
            out = convertSurrogates(text, consumed, out);
            out = convertSurrogates(text + 16, consumed, out);
        }
    }
    return convertRest(text + consumed, end, out);
}

char* convertAvx512(Units text, Units end, char* out) noexcept {
    return end - text < 32 + kBehind ? convertRest(text, end, out) : convertLong(text, end, out);
}

} // namespace

std::uint64_t utf8LengthOfUtf16(const unsigned short* text, std::size_t count) noexcept {
    const Units end = text + count;
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return lengthAvx512(text, end);
    case CpuLevel::Avx2:
        return lengthAvx2(text, end);
    case CpuLevel::Sse2:
        return lengthSse2(text, end);
    case CpuLevel::Scalar:
        break;
    }
    return lengthScalar(text, end);
}

char* utf16ToUtf8(const unsigned short* text, std::size_t count, char* out) noexcept {
    const Units end = text + count;
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return convertAvx512(text, end, out);
    case CpuLevel::Avx2:
        return convertAvx2(text, end, out);
    case CpuLevel::Sse2:
        return convertSse2(text, end, out);
    case CpuLevel::Scalar:
        break;
    }
    return convertTo(end, text, end, out);
}

} // namespace Quillon::Runtime::Kernels
