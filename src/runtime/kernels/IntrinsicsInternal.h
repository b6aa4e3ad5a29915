#ifndef ZUTARNEX_RUNTIME_KERNELS_INTRINSICSINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_INTRINSICSINTERNAL_H

// GCC 12 takes the "undefined" operand inside many intrinsics for a mistake (its bug 105593).
#ifndef __clang__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>
#ifndef __clang__
#pragma GCC diagnostic pop
#endif

#include "runtime/kernels/CpuLevelInternal.h"

#include <cstddef>

/// Masks of 64 bits that stay in their registers: in 32-bit code, the way to two general ones is one through memory.
namespace Quillon::Runtime::Kernels {

/// The numbers from `first` on.
ZUTARNEX_TARGET_AVX512 inline __m512i numbersFrom(int first) noexcept {
    const __m512i numbers =
        _mm512_set_epi64(0x3F3E3D3C3B3A3938, 0x3736353433323130, 0x2F2E2D2C2B2A2928, 0x2726252423222120,
                         0x1F1E1D1C1B1A1918, 0x1716151413121110, 0x0F0E0D0C0B0A0908, 0x0706050403020100);
    return _mm512_add_epi8(numbers, _mm512_set1_epi8(static_cast<char>(first)));
}

/// REQUIRES: count <= 64.
ZUTARNEX_TARGET_AVX512 inline __mmask64 firstBytes(std::size_t count) noexcept {
    return _mm512_cmplt_epu8_mask(numbersFrom(0), _mm512_set1_epi8(static_cast<char>(count)));
}

ZUTARNEX_TARGET_AVX512 inline bool isEmpty(__mmask64 mask) noexcept {
    return _kortestz_mask64_u8(mask, mask) != 0;
}

ZUTARNEX_TARGET_AVX512 inline unsigned int countOf(__mmask64 mask) noexcept {
#ifdef __x86_64__
    return static_cast<unsigned int>(__builtin_popcountll(mask));
#else
    const __m512i bytes = _mm512_movm_epi8(mask);
    return static_cast<unsigned int>(
        __builtin_popcount(_mm256_movepi8_mask(_mm512_castsi512_si256(bytes)))
        + __builtin_popcount(_mm256_movepi8_mask(_mm512_extracti64x4_epi64(bytes, 1))));
#endif
}

/// Whether one of the bytes has one of the bits.
ZUTARNEX_TARGET_AVX512 inline bool hasAny(__m512i bytes, unsigned char bits) noexcept {
    return _mm512_test_epi32_mask(bytes, _mm512_set1_epi8(static_cast<char>(bits))) != 0;
}

} // namespace Quillon::Runtime::Kernels

#endif
