#include "xml/sax/SaxParseException.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/sax/LocatorImpl.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;

const unsigned short kLiteral[] = {'l', 'i', 't', 0};

XmlString literal() {
    return XmlString(Immutable | Borrowed, kLiteral);
}

using SaxParseExceptionTest = Testing::HostFixture;

SaxParseException sample() {
    return SaxParseException(text(u"msg"), text(u"pub"), text(u"sys"), 1LL << 40, -7);
}

void expectSample(const SaxParseException& exception) {
    EXPECT_EQ("msg", show(exception.getMessage()));
    EXPECT_EQ("pub", show(exception.getPublicId()));
    EXPECT_EQ("sys", show(exception.getSystemId()));
    EXPECT_EQ(1LL << 40, exception.getLineNumber());
    EXPECT_EQ(-7, exception.getColumnNumber());
}

TEST_F(SaxParseExceptionTest, AllFieldsComeFromTheArguments) {
    expectSample(sample());
}

TEST_F(SaxParseExceptionTest, NumbersHave64Bits) {
    const SaxParseException exception(XmlString(), XmlString(), XmlString(),
                                      std::numeric_limits<long long>::min(),
                                      std::numeric_limits<long long>::max());
    EXPECT_EQ(std::numeric_limits<long long>::min(), exception.getLineNumber());
    EXPECT_EQ(std::numeric_limits<long long>::max(), exception.getColumnNumber());
    EXPECT_TRUE(exception.getMessage().isNull());
    EXPECT_TRUE(exception.getPublicId().isNull());
    EXPECT_TRUE(exception.getSystemId().isNull());
}

/// Keeps what it was asked.
class AskedLocator : public Locator {
public:
    XmlString getPublicId() const override { return asked("publicId"), text(u"pub"); }
    XmlString getSystemId() const override { return asked("systemId"), text(u"sys"); }
    long long getLineNumber() const override { return asked("line"), 1LL << 40; }
    long long getColumnNumber() const override { return asked("column"), -7; }

    mutable std::vector<std::string> questions;

private:
    void asked(const char* question) const { questions.push_back(question); }
};

TEST_F(SaxParseExceptionTest, LocatorIsAskedInOrder) {
    const AskedLocator locator;
    expectSample(SaxParseException(text(u"msg"), locator));
    EXPECT_EQ((std::vector<std::string>{"publicId", "systemId", "line", "column"}), locator.questions);
}

TEST_F(SaxParseExceptionTest, LaterChangesOfTheLocatorDoNotShow) {
    LocatorImpl locator;
    locator.setPublicId(text(u"pub"));
    locator.setSystemId(text(u"sys"));
    locator.setLineNumber(1LL << 40);
    locator.setColumnNumber(-7);
    const SaxParseException exception(text(u"msg"), locator);
    locator.setPublicId(text(u"other"));
    locator.setSystemId(text(u"other"));
    locator.setLineNumber(1);
    locator.setColumnNumber(1);
    expectSample(exception);
}

TEST_F(SaxParseExceptionTest, CopiesKeepEveryField) {
    const SaxParseException exception = sample();
    const SaxParseException copy(exception);
    expectSample(copy);
    EXPECT_EQ(exception.getSystemId().data(), copy.getSystemId().data());
}

TEST_F(SaxParseExceptionTest, AssignmentTakesOverEvenOverLiterals) {
    SaxParseException exception(literal(), literal(), literal(), 1, 2);
    exception = sample();
    expectSample(exception);
    const SaxParseException& same = exception;
    exception = same;
    expectSample(exception);
}

TEST_F(SaxParseExceptionTest, IsCaughtAsSaxException) {
    try {
        throw sample();
    } catch (const SaxException& exception) {
        EXPECT_EQ("msg", show(exception.getMessage()));
        expectSample(dynamic_cast<const SaxParseException&>(exception));
    }
}

} // namespace
} // namespace Quillon::Xml::Sax
