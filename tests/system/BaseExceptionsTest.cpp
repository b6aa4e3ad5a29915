#include "system/Identifiable.h"
#include "system/InternalException.h"
#include "system/ObjectOutput.h"
#include "system/OutOfMemoryException.h"
#include "system/Throwable.h"
#include "system/UserException.h"

#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <type_traits>

namespace Quillon::System {
namespace {

class CollectedOutput : public ObjectOutput {
public:
    void write(const char* bytes, std::size_t count) override { text.append(bytes, count); }
    std::string text;
};

template <class Write>
std::string written(Write write) {
    CollectedOutput out;
    write(out);
    return out.text;
}

class BaseExceptionsTest : public Testing::HostFixture {};

TEST_F(BaseExceptionsTest, OnlyThrowableIsAStandardException) {
    static_assert(std::is_base_of_v<std::exception, Throwable>);
    static_assert(std::is_convertible_v<UserException*, Throwable*>);
    static_assert(std::is_convertible_v<InternalException*, Throwable*>);
    static_assert(std::is_convertible_v<OutOfMemoryException*, Throwable*>);
    static_assert(!std::is_base_of_v<std::exception, Identifiable>);
}

TEST_F(BaseExceptionsTest, UserExceptionKeepsItsMessage) {
    UserException exception;
    EXPECT_EQ("", exception.getMessage());
    exception.setMessage("what went wrong, at some length");
    EXPECT_EQ("what went wrong, at some length", exception.getMessage());
    EXPECT_STREQ("what went wrong, at some length", exception.what());
    const UserException copy(exception);
    exception.setMessage("other");
    EXPECT_EQ("what went wrong, at some length", copy.getMessage());
}

TEST_F(BaseExceptionsTest, UserExceptionWritesItsMessageAndNoTrace) {
    UserException exception;
    exception.setMessage(std::string("a\0b", 3));
    EXPECT_EQ(std::string("a\0b", 3), written([&](ObjectOutput& out) { exception.writeLocalizedMsg(out); }));
    EXPECT_EQ("", written([&](ObjectOutput& out) { exception.writeStackTrace(out); }));
}

TEST_F(BaseExceptionsTest, InternalExceptionWritesItsKindAndNoTrace) {
    const InternalException exception;
    EXPECT_STREQ("internal error", exception.what());
    EXPECT_EQ("internal error", written([&](ObjectOutput& out) { exception.writeLocalizedMsg(out); }));
    EXPECT_EQ("", written([&](ObjectOutput& out) { exception.writeStackTrace(out); }));
}

TEST_F(BaseExceptionsTest, ThrowableWritesWhatItIs) {
    UserException exception;
    exception.setMessage("text");
    const Throwable& base = exception;
    EXPECT_EQ("text", written([&](ObjectOutput& out) { base.writeExternal(out); }));
    EXPECT_EQ("text", written([&](ObjectOutput& out) { base.writeRecurseChain(out); }));
    EXPECT_EQ("Throwable", written([&](ObjectOutput& out) { Throwable().writeExternal(out); }));
}

TEST_F(BaseExceptionsTest, OutOfMemoryIsThrownWithoutMemory) {
    Testing::newMemory().failRequest(1);
    Testing::hostMemory().failRequest(1);
    EXPECT_THROW(OutOfMemoryException::doThrow(), OutOfMemoryException);
    EXPECT_TRUE(Testing::newMemory().failureIsPending() && Testing::hostMemory().failureIsPending());
    Testing::newMemory().failRequest(0);
    Testing::hostMemory().failRequest(0);
}

TEST_F(BaseExceptionsTest, OutOfMemoryIsCaughtAsThrowableAndAsStandardException) {
    EXPECT_THROW(OutOfMemoryException::doThrow(), Throwable);
    EXPECT_THROW(OutOfMemoryException::doThrow(), std::exception);
    try {
        OutOfMemoryException::doThrow();
    } catch (const Throwable& exception) {
        EXPECT_STREQ("out of memory", exception.what());
    }
}

} // namespace
} // namespace Quillon::System
