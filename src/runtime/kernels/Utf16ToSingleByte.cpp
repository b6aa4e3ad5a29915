#include "runtime/kernels/CpuLevelInternal.h"
#include "runtime/kernels/IntrinsicsInternal.h"
#include "runtime/kernels/TranscodeInternal.h"
#include "runtime/kernels/TranscodeStepsInternal.h"

#include <algorithm>

namespace Quillon::Runtime::Kernels {

namespace {

using Units = const unsigned short*;

// Scalar

/// Converts the characters that begin before `stop`; moves `text` behind the last.
inline char* convertTo(Units stop, Units& text, Units end, unsigned short last, char* out) noexcept {
    while (text < stop) {
        const char32_t c = nextOfUtf16(text, end);
        *out++ = c <= last ? static_cast<char>(c) : '?';
    }
    return out;
}

// Without surrogates each unit is a byte, so that whole registers are stored.

/// Eight units as they are to be stored, in the low halves of the lanes; false when there are surrogates.
ZUTARNEX_TARGET_SSE2 inline bool limitEight(Units text, __m128i lastUnit, __m128i& limited) noexcept {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const __m128i surrogate =
        _mm_cmpeq_epi16(_mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xF800))),
                        _mm_set1_epi16(static_cast<short>(0xD800)));
    const __m128i isFit = _mm_cmpeq_epi16(_mm_subs_epu16(units, lastUnit), _mm_setzero_si128());
    limited = _mm_or_si128(_mm_and_si128(isFit, units), _mm_andnot_si128(isFit, _mm_set1_epi16('?')));
    return _mm_movemask_epi8(surrogate) == 0;
}

ZUTARNEX_TARGET_SSE2 char* convertSse2(Units text, Units end, unsigned short last, char* out) noexcept {
    const __m128i lastUnit = _mm_set1_epi16(static_cast<short>(last));
    while (end - text >= 16) {
        __m128i first, second;
        if (limitEight(text, lastUnit, first) && limitEight(text + 8, lastUnit, second)) {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(first, second));
            text += 16;
            out += 16;
        } else {
            out = convertTo(text + 16, text, end, last, out);
        }
    }
    return convertTo(end, text, end, last, out);
}

ZUTARNEX_TARGET_AVX2 inline bool limitSixteen(Units text, __m256i lastUnit, __m256i& limited) noexcept {
    const __m256i units = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(text));
    const __m256i surrogate =
        _mm256_cmpeq_epi16(_mm256_and_si256(units, _mm256_set1_epi16(static_cast<short>(0xF800))),
                           _mm256_set1_epi16(static_cast<short>(0xD800)));
    const __m256i isFit = _mm256_cmpeq_epi16(_mm256_subs_epu16(units, lastUnit), _mm256_setzero_si256());
    limited = _mm256_blendv_epi8(_mm256_set1_epi16('?'), units, isFit);
    return _mm256_movemask_epi8(surrogate) == 0;
}

ZUTARNEX_TARGET_AVX2 char* convertAvx2(Units text, Units end, unsigned short last, char* out) noexcept {
    const __m256i lastUnit = _mm256_set1_epi16(static_cast<short>(last));
    while (end - text >= 32) {
        __m256i first, second;
        if (limitSixteen(text, lastUnit, first) && limitSixteen(text + 16, lastUnit, second)) {
            const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packus_epi16(first, second), 0xD8);
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), bytes);
            text += 32;
            out += 32;
        } else {
            out = convertTo(text + 32, text, end, last, out);
        }
    }
    return convertSse2(text, end, last, out);
}

/// Of a pair of surrogates, the second is left out and the first becomes the `?`, as a lone one does. Moves from the
/// registers of masks are slow, so there are some only where there are surrogates.
ZUTARNEX_TARGET_AVX512 char* convertAvx512(Units text, Units end, unsigned short last, char* out) noexcept {
    const __m512i lastUnit = _mm512_set1_epi16(static_cast<short>(last));
    std::uint32_t highBefore = 0; // 1: the unit before `text` is a high surrogate
    while (text != end) {
        const auto count = static_cast<unsigned int>(std::min<std::ptrdiff_t>(end - text, 32));
        const auto present = static_cast<__mmask32>(~std::uint32_t{0} >> (32 - count));
        const __m512i units = _mm512_maskz_loadu_epi16(present, text);
        const __mmask32 isFit = _mm512_cmple_epu16_mask(units, lastUnit);
        const __m256i bytes =
            _mm512_cvtepi16_epi8(_mm512_mask_mov_epi16(_mm512_set1_epi16('?'), isFit, units));
        const __m512i topBits = _mm512_and_si512(units, _mm512_set1_epi16(static_cast<short>(0xF800)));
        text += count;
        if (_mm512_cmpeq_epi16_mask(topBits, _mm512_set1_epi16(static_cast<short>(0xD800))) == 0) {
            _mm256_mask_storeu_epi8(out, present, bytes);
            out += count;
            highBefore = 0;
            continue;
        }
        const __m512i kind = _mm512_and_si512(units, _mm512_set1_epi16(static_cast<short>(0xFC00)));
        const std::uint32_t high =
            _mm512_cmpeq_epi16_mask(kind, _mm512_set1_epi16(static_cast<short>(0xD800)));
        const std::uint32_t low =
            _mm512_cmpeq_epi16_mask(kind, _mm512_set1_epi16(static_cast<short>(0xDC00)));
        const auto counted = static_cast<__mmask32>(present & ~((high << 1 | highBefore) & low));
        const auto length = static_cast<unsigned int>(__builtin_popcount(counted));
        const std::uint64_t stored = (std::uint64_t{1} << length) - 1;
        _mm256_mask_storeu_epi8(out, static_cast<__mmask32>(stored),
                                _mm256_maskz_compress_epi8(counted, bytes));
        out += length;
        highBefore = high >> 31;
    }
    return out;
}

} // namespace

char* utf16ToSingleByte(const unsigned short* text, std::size_t count, unsigned short last,
                        char* out) noexcept {
    const Units end = text + count;
    switch (cpuLevel()) {
    case CpuLevel::Avx512:
        return convertAvx512(text, end, last, out);
    case CpuLevel::Avx2:
        return convertAvx2(text, end, last, out);
    case CpuLevel::Sse2:
        return convertSse2(text, end, last, out);
    case CpuLevel::Scalar:
        break;
    }
    return convertTo(end, text, end, last, out);
}

} // namespace Quillon::Runtime::Kernels
