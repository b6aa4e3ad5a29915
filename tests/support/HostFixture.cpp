#include "support/HostFixture.h"

namespace Quillon::Testing {

void HostFixture::SetUp() {
    warmUp();
    hostBlocks_ = hostMemory().liveBlocks();
    objects_ = newMemory().liveBlocks();
}

void HostFixture::TearDown() {
    if (HasFailure()) // the records of failures are on the heap, too
        return;
    EXPECT_EQ(hostBlocks_, hostMemory().liveBlocks()) << "host blocks left over";
    EXPECT_EQ(objects_, newMemory().liveBlocks()) << "objects left over";
}

} // namespace Quillon::Testing
