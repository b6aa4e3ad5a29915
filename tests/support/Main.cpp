#include "support/Allocations.h"

#include <gmock/gmock.h>

int main(int argc, char** argv) {
    Quillon::Testing::installCountingHost();
    testing::InitGoogleMock(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    return RUN_ALL_TESTS();
}
