#include "runtime/CStringInternal.h"
#include "runtime/ThrowGuardInternal.h"

#include "runtime/HostServices.h"
#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <stdexcept>
#include <string>

namespace Quillon::Runtime {
namespace {

class CStringTest : public Testing::HostFixture {};
class ThrowGuardTest : public Testing::HostFixture {};
class ThrowGuardDeathTest : public Testing::HostFixture {};

TEST_F(CStringTest, LengthOfNullIsZero) {
    EXPECT_EQ(0u, lengthOf(nullptr));
    EXPECT_EQ(3u, lengthOf("abc"));
    EXPECT_EQ(0u, unitCountOf(nullptr));
    const unsigned short units[] = {1, 2, 0};
    EXPECT_EQ(2u, unitCountOf(units));
}

TEST_F(CStringTest, DuplicateComesFromTheHost) {
    EXPECT_EQ(nullptr, duplicate(nullptr));
    const std::ptrdiff_t before = Testing::hostMemory().liveBlocks();
    char* copy = duplicate("abc");
    EXPECT_EQ(before + 1, Testing::hostMemory().liveBlocks());
    EXPECT_STREQ("abc", copy);
    release(copy);
    Testing::hostMemory().failRequest(1);
    EXPECT_EQ(nullptr, duplicate("abc"));
    Testing::hostMemory().failRequest(0);
}

TEST_F(CStringTest, BoundedTextIsTerminatedAndToldWhenCut) {
    char buffer[4];
    EXPECT_TRUE(copyBounded(buffer, sizeof buffer, "abc"));
    EXPECT_STREQ("abc", buffer);
    EXPECT_FALSE(copyBounded(buffer, sizeof buffer, "wxyz"));
    EXPECT_STREQ("wxy", buffer);
    EXPECT_FALSE(printBounded(buffer, sizeof buffer, "%d", 12345));
    EXPECT_STREQ("123", buffer);
}

TEST_F(CStringTest, PrintToHostUsesTheHost) {
    testing::internal::CaptureStdout();
    printToHost("%s!\n", "hello");
    std::fflush(stdout);
    EXPECT_EQ("hello!\n", testing::internal::GetCapturedStdout());
}

TEST_F(CStringTest, HashDependsOnEveryByteAndTheOrder) {
    EXPECT_EQ(hashBytes("abc", 3), hashBytes("abcd", 3));
    EXPECT_NE(hashBytes("abc", 3), hashBytes("acb", 3));
    EXPECT_NE(hashBytes("abc", 3), hashBytes("abc\0", 4));
}

struct Allowed {};
struct DerivedFromAllowed : Allowed {};

TEST_F(ThrowGuardTest, AllowedKindsAndResultsPass) {
    EXPECT_EQ(5, letEscapeOnly<Allowed>([] { return 5; }));
    int target = 0;
    letEscapeOnly<Allowed>([&]() -> int& { return target; }) = 7;
    EXPECT_EQ(7, target);
    EXPECT_THROW(letEscapeOnly<Allowed>([] { throw Allowed(); }), Allowed);
    EXPECT_THROW(letEscapeOnly<Allowed>([] { throw DerivedFromAllowed(); }), DerivedFromAllowed);
}

void exitWhenUnexpected() {
    HostServices services = hostServices();
    services.unexpected = [] {
        std::fputs("unexpected", stderr);
        std::_Exit(4);
    };
    setHostServices(services);
}

TEST_F(ThrowGuardDeathTest, OtherKindsGoToTheHost) {
    EXPECT_EXIT(
        {
            exitWhenUnexpected();
            letEscapeOnly<Allowed>([] { throw std::bad_alloc(); });
        },
        testing::ExitedWithCode(4), "^unexpected$");
    EXPECT_EXIT(
        {
            exitWhenUnexpected();
            letEscapeOnly<Allowed>([] { throw 1; });
        },
        testing::ExitedWithCode(4), "^unexpected$");
}

TEST_F(ThrowGuardDeathTest, AHostThatReturnsStillEndsTheProcess) {
    EXPECT_DEATH(
        {
            HostServices services = hostServices();
            services.unexpected = [] {};
            setHostServices(services);
            letEscapeOnly<Allowed>([] { throw 1; });
        },
        "");
}

} // namespace
} // namespace Quillon::Runtime
