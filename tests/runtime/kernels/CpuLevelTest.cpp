#include "runtime/kernels/CpuLevelInternal.h"

#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace Quillon::Runtime::Kernels {
namespace {

class CpuLevelTest : public Testing::HostFixture {
protected:
    void TearDown() override {
        setCpuLevel(before_);
        HostFixture::TearDown();
    }

private:
    const CpuLevel before_ = cpuLevel();
};

TEST_F(CpuLevelTest, StartsAtWhatTheEnvironmentAllows) {
    static constexpr const char* kNames[] = {"scalar", "sse2", "avx2", "avx512"};
    CpuLevel expected = supportedCpuLevel();
    if (const char* const name = std::getenv("ZUTARNEX_CPU_LEVEL")) {
        for (int i = 0; i < 4; ++i) {
            if (std::strcmp(name, kNames[i]) == 0 && i < static_cast<int>(expected))
                expected = static_cast<CpuLevel>(i);
        }
    }
    EXPECT_EQ(expected, cpuLevel());
}

TEST_F(CpuLevelTest, IsLoweredButNeverRaisedAboveWhatIsThere) {
    for (const CpuLevel level : {CpuLevel::Scalar, CpuLevel::Sse2, CpuLevel::Avx2, CpuLevel::Avx512}) {
        const CpuLevel expected = level < supportedCpuLevel() ? level : supportedCpuLevel();
        EXPECT_EQ(expected, setCpuLevel(level));
        EXPECT_EQ(expected, cpuLevel());
    }
}

#ifdef __x86_64__
TEST_F(CpuLevelTest, TheBaselineOf64BitsIsSse2) {
    EXPECT_LE(CpuLevel::Sse2, supportedCpuLevel());
}
#endif

} // namespace
} // namespace Quillon::Runtime::Kernels
