#include "xml/sax/SaxException.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/sax/SaxNotRecognizedException.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/SaxParseException.h"

#include <gtest/gtest.h>

#include <exception>
#include <type_traits>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;

const unsigned short kLiteral[] = {'l', 'i', 't', 0};

XmlString literal() {
    return XmlString(Immutable | Borrowed, kLiteral);
}

/// The three kinds that hold a message and nothing else.
template <class Exception>
class SaxExceptionTest : public Testing::HostFixture {};

using MessageOnly = testing::Types<SaxException, SaxNotRecognizedException, SaxNotSupportedException>;
TYPED_TEST_SUITE(SaxExceptionTest, MessageOnly);

TYPED_TEST(SaxExceptionTest, MessageIsEmptyNotNullWithoutOne) {
    const TypeParam exception;
    EXPECT_FALSE(exception.getMessage().isNull());
    EXPECT_EQ(0u, exception.getMessage().size());
}

TYPED_TEST(SaxExceptionTest, MessageIsKeptAndShared) {
    const XmlString message = text(u"what is wrong");
    const TypeParam exception(message);
    EXPECT_EQ(message.data(), exception.getMessage().data());
}

TYPED_TEST(SaxExceptionTest, MessageMayBeNullOrALiteral) {
    EXPECT_TRUE(TypeParam(XmlString()).getMessage().isNull());
    EXPECT_EQ(kLiteral, TypeParam(literal()).getMessage().data());
}

TYPED_TEST(SaxExceptionTest, CopiesShareTheMessage) {
    const TypeParam exception(text(u"message"));
    const TypeParam copy(exception);
    EXPECT_EQ(exception.getMessage().data(), copy.getMessage().data());
}

TYPED_TEST(SaxExceptionTest, AssignmentTakesOverEvenOverALiteral) {
    TypeParam exception(literal());
    exception = TypeParam(text(u"message"));
    EXPECT_EQ("message", show(exception.getMessage()));
    const TypeParam& same = exception;
    exception = same;
    EXPECT_EQ("message", show(exception.getMessage()));
}

TYPED_TEST(SaxExceptionTest, IsCaughtAsItselfAndAsSaxException) {
    EXPECT_THROW(throw TypeParam(text(u"message")), TypeParam);
    try {
        throw TypeParam(text(u"message"));
    } catch (const SaxException& exception) {
        EXPECT_EQ("message", show(exception.getMessage()));
        EXPECT_NE(nullptr, dynamic_cast<const TypeParam*>(&exception));
    }
}

TYPED_TEST(SaxExceptionTest, StandsApartFromStandardExceptions) {
    EXPECT_FALSE((std::is_base_of_v<std::exception, TypeParam>));
}

TYPED_TEST(SaxExceptionTest, EmptyMessageNeedsMemoryOthersDoNot) {
    Testing::everyAllocationFails([] { const TypeParam exception; });
    const XmlString message = text(u"message");
    const std::size_t requests = Testing::hostMemory().requests();
    const TypeParam exception(message);
    const TypeParam copy(exception);
    EXPECT_EQ(requests, Testing::hostMemory().requests());
}

TEST(SaxExceptionKindsTest, AreToldApart) {
    EXPECT_FALSE((std::is_base_of_v<SaxNotRecognizedException, SaxNotSupportedException>));
    EXPECT_FALSE((std::is_base_of_v<SaxNotSupportedException, SaxNotRecognizedException>));
    EXPECT_FALSE((std::is_base_of_v<SaxParseException, SaxNotSupportedException>));
    EXPECT_TRUE((std::is_base_of_v<SaxException, SaxParseException>));
}

} // namespace
} // namespace Quillon::Xml::Sax
