#ifndef ZUTARNEX_RUNTIME_KERNELS_CPULEVELINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_CPULEVELINTERNAL_H

#include <atomic>

/// For the twins of a kernel: what each level may use. Helpers of a twin carry the same attribute, so that they can be
/// inlined into it; the rest of the build keeps the platform's baseline.
#define ZUTARNEX_TARGET_SSE2 [[gnu::target("sse2")]]
#define ZUTARNEX_TARGET_AVX2 [[gnu::target("avx2,bmi,bmi2,popcnt")]]
#define ZUTARNEX_TARGET_AVX512                                                                               \
    [[gnu::target("avx2,bmi,bmi2,popcnt,avx512f,avx512bw,avx512vl,avx512dq,avx512vbmi,avx512vbmi2")]]

namespace Quillon::Runtime::Kernels {

/// Sets of instructions, each of which includes those before it.
enum class CpuLevel : unsigned char {
    Scalar, ///< the platform's baseline, without intrinsics
    Sse2,
    Avx2,  ///< with BMI1, BMI2 and POPCNT
    Avx512 ///< F, BW, VL, DQ, VBMI and VBMI2
};

extern std::atomic<CpuLevel> theCpuLevel;

/// The level that kernels run at: what the processor and the system offer, unless the environment variable
/// ZUTARNEX_CPU_LEVEL (scalar, sse2, avx2 or avx512) named a lower one when the library was loaded. Code that runs
/// before the library's own constructors sees the platform's baseline.
///
/// Every level gives the same results, so a kernel asks once per call, in no order with anything else.
inline CpuLevel cpuLevel() noexcept {
    return theCpuLevel.load(std::memory_order_relaxed);
}

/// The highest level that the processor and the system offer, whatever the environment says.
CpuLevel supportedCpuLevel() noexcept;

/// For tests: kernels run at `level` from now on, or at the highest that is supported. Returns that level.
CpuLevel setCpuLevel(CpuLevel level) noexcept;

} // namespace Quillon::Runtime::Kernels

#endif
