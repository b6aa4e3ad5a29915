#ifndef ZUTARNEX_RUNTIME_KERNELS_COMPAREINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_COMPAREINTERNAL_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>

namespace Quillon::Runtime::Kernels {

/// Whether the eight units at each place are the same.
inline bool areEightSame(const unsigned short* left, const unsigned short* right) noexcept {
    const __m128i isSame = _mm_cmpeq_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(left)),
                                           _mm_loadu_si128(reinterpret_cast<const __m128i*>(right)));
    return _mm_movemask_epi8(isSame) == 0xFFFF;
}

inline bool areFourSame(const unsigned short* left, const unsigned short* right) noexcept {
    std::uint64_t ofLeft, ofRight;
    std::memcpy(&ofLeft, left, sizeof ofLeft);
    std::memcpy(&ofRight, right, sizeof ofRight);
    return ofLeft == ofRight;
}

/// Whether `count` units are the same: for names and the like, most of which are too short for a call to pay. Those
/// that fill no register twice are compared by their ends, which overlap.
inline bool areUnitsSame(const unsigned short* left, const unsigned short* right,
                         std::size_t count) noexcept {
    if (count > 16)
        return std::memcmp(left, right, count * sizeof *left) == 0;
    if (count >= 8)
        return areEightSame(left, right) && areEightSame(left + count - 8, right + count - 8);
    if (count >= 4)
        return areFourSame(left, right) && areFourSame(left + count - 4, right + count - 4);
    return count == 0
           || (left[0] == right[0] && left[count / 2] == right[count / 2]
               && left[count - 1] == right[count - 1]);
}

} // namespace Quillon::Runtime::Kernels

#endif
