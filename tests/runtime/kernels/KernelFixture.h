#ifndef ZUTARNEX_TESTS_RUNTIME_KERNELS_KERNELFIXTURE_H
#define ZUTARNEX_TESTS_RUNTIME_KERNELS_KERNELFIXTURE_H

#include "runtime/kernels/CpuLevelInternal.h"
#include "support/HostFixture.h"

#include <cstddef>
#include <random>

namespace Quillon::Testing {

/// Runs kernels at every level that the machine has.
class KernelFixture : public HostFixture {
protected:
    void warmUp() override { SCOPED_TRACE("GoogleTest keeps what the first one allocates"); }

    void TearDown() override {
        Runtime::Kernels::setCpuLevel(before_);
        HostFixture::TearDown();
    }

    /// `check()` at each level above Scalar; a failure says which.
    template <class Check>
    void atEachLevel(Check check) {
        using Runtime::Kernels::CpuLevel;
        for (const CpuLevel level : {CpuLevel::Sse2, CpuLevel::Avx2, CpuLevel::Avx512}) {
            if (Runtime::Kernels::setCpuLevel(level) != level)
                continue;
            SCOPED_TRACE(testing::Message() << "level " << static_cast<int>(level));
            check();
            if (HasFatalFailure())
                return;
        }
    }

    template <class Call>
    static auto atScalarLevel(Call call) {
        Runtime::Kernels::setCpuLevel(Runtime::Kernels::CpuLevel::Scalar);
        return call();
    }

    /// From 0 to below `bound`, the same numbers in every run.
    std::size_t random(std::size_t bound) { return random_() % bound; }

private:
    const Runtime::Kernels::CpuLevel before_ = Runtime::Kernels::cpuLevel();
    std::mt19937 random_{20}; // NOLINT: the same in every run
};

} // namespace Quillon::Testing

#endif
