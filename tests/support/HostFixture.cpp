#include "support/HostFixture.h"

#include <string>

namespace Quillon::Testing {

namespace {

/// GoogleTest keeps the output of the last death test on the heap; what happened in the child is gone with it.
bool isDeathTest() {
    const std::string suite = testing::UnitTest::GetInstance()->current_test_info()->test_suite_name();
    return suite.find("DeathTest") != std::string::npos;
}

} // namespace

void HostFixture::SetUp() {
    warmUp();
    hostBlocks_ = hostMemory().liveBlocks();
    objects_ = newMemory().liveBlocks();
}

void HostFixture::TearDown() {
    if (HasFailure() || isDeathTest()) // the records of failures are on the heap, too
        return;
    EXPECT_EQ(hostBlocks_, hostMemory().liveBlocks()) << "host blocks left over";
    EXPECT_EQ(objects_, newMemory().liveBlocks()) << "objects left over";
}

} // namespace Quillon::Testing
