#include "runtime/kernels/CpuLevelInternal.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <iterator>

namespace Quillon::Runtime::Kernels {

namespace {

#ifdef __SSE2__
constexpr CpuLevel kBaseline = CpuLevel::Sse2;
#else
constexpr CpuLevel kBaseline = CpuLevel::Scalar;
#endif

constexpr const char* kNames[] = {"scalar", "sse2", "avx2", "avx512"}; // in the order of CpuLevel

bool isEqual(const char* left, const char* right) noexcept {
    while (*left != '\0' && *left == *right) {
        ++left;
        ++right;
    }
    return *left == *right;
}

/// The level that the environment asks for; the highest when it asks for none or for one that does not exist.
CpuLevel requestedLevel() noexcept {
    if (const char* const name = std::getenv("ZUTARNEX_CPU_LEVEL")) {
        for (std::size_t i = 0; i < std::size(kNames); ++i) {
            if (isEqual(name, kNames[i]))
                return static_cast<CpuLevel>(i);
        }
    }
    return CpuLevel::Avx512;
}

/// When the library is loaded and not at the first use: the environment is read while no other thread of a starting
/// program changes it, and a kernel has nothing to test. 101 is before every object of the program's own.
[[gnu::constructor(101)]] void chooseLevel() noexcept {
    setCpuLevel(requestedLevel());
}

} // namespace

constinit std::atomic<CpuLevel> theCpuLevel{kBaseline};

/// The compiler's run-time support asks for the system's consent (XGETBV) to the wider registers, too.
CpuLevel supportedCpuLevel() noexcept {
    __builtin_cpu_init();
    if (!__builtin_cpu_supports("sse2"))
        return CpuLevel::Scalar;
    if (!__builtin_cpu_supports("avx2") || !__builtin_cpu_supports("bmi") || !__builtin_cpu_supports("bmi2")
        || !__builtin_cpu_supports("popcnt"))
        return CpuLevel::Sse2;
    if (!__builtin_cpu_supports("avx512f") || !__builtin_cpu_supports("avx512bw")
        || !__builtin_cpu_supports("avx512vl") || !__builtin_cpu_supports("avx512dq")
        || !__builtin_cpu_supports("avx512vbmi") || !__builtin_cpu_supports("avx512vbmi2"))
        return CpuLevel::Avx2;
    return CpuLevel::Avx512;
}

CpuLevel setCpuLevel(CpuLevel level) noexcept {
    level = std::min(level, supportedCpuLevel());
    theCpuLevel.store(level, std::memory_order_relaxed);
    return level;
}

} // namespace Quillon::Runtime::Kernels
