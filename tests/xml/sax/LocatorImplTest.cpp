#include "xml/sax/LocatorImpl.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/ImmutableObjectWriteError.h"

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

/// Another implementation of Locator, which keeps what it was asked.
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

using LocatorImplTest = Testing::HostFixture;

TEST_F(LocatorImplTest, NewLocatorIsEmptyAtZero) {
    const LocatorImpl locator;
    EXPECT_FALSE(locator.getPublicId().isNull());
    EXPECT_EQ("", show(locator.getPublicId()));
    EXPECT_FALSE(locator.getSystemId().isNull());
    EXPECT_EQ("", show(locator.getSystemId()));
    EXPECT_EQ(0, locator.getLineNumber());
    EXPECT_EQ(0, locator.getColumnNumber());
}

TEST_F(LocatorImplTest, ValuesAreSetOneByOne) {
    LocatorImpl locator;
    locator.setPublicId(text(u"pub"));
    EXPECT_EQ("pub", show(locator.getPublicId()));
    EXPECT_EQ("", show(locator.getSystemId()));
    locator.setSystemId(text(u"sys"));
    EXPECT_EQ("sys", show(locator.getSystemId()));
    locator.setLineNumber(3);
    EXPECT_EQ(3, locator.getLineNumber());
    EXPECT_EQ(0, locator.getColumnNumber());
    locator.setColumnNumber(4);
    EXPECT_EQ(4, locator.getColumnNumber());
    EXPECT_EQ(3, locator.getLineNumber());
}

TEST_F(LocatorImplTest, ValuesCanBeSetAgain) {
    LocatorImpl locator;
    for (const char16_t* id : {u"one", u"two", static_cast<const char16_t*>(nullptr), u"three"}) {
        locator.setPublicId(text(id));
        locator.setSystemId(text(id));
        EXPECT_EQ(show(text(id)), show(locator.getPublicId()));
        EXPECT_EQ(show(text(id)), show(locator.getSystemId()));
    }
}

TEST_F(LocatorImplTest, NumbersHave64Bits) {
    LocatorImpl locator;
    locator.setLineNumber(std::numeric_limits<long long>::max());
    locator.setColumnNumber(std::numeric_limits<long long>::min());
    EXPECT_EQ(std::numeric_limits<long long>::max(), locator.getLineNumber());
    EXPECT_EQ(std::numeric_limits<long long>::min(), locator.getColumnNumber());
}

TEST_F(LocatorImplTest, AnotherLocatorIsAskedInOrder) {
    const AskedLocator asked;
    const LocatorImpl locator(asked);
    EXPECT_EQ((std::vector<std::string>{"publicId", "systemId", "line", "column"}), asked.questions);
    EXPECT_EQ("pub", show(locator.getPublicId()));
    EXPECT_EQ("sys", show(locator.getSystemId()));
    EXPECT_EQ(1LL << 40, locator.getLineNumber());
    EXPECT_EQ(-7, locator.getColumnNumber());
}

TEST_F(LocatorImplTest, CopyKeepsWhatTheOriginalWas) {
    LocatorImpl locator;
    locator.setSystemId(text(u"sys"));
    locator.setLineNumber(3);
    locator.setColumnNumber(4);
    const LocatorImpl copy(locator);
    const LocatorImpl snapshot(static_cast<const Locator&>(locator));
    EXPECT_EQ(locator.getSystemId().data(), copy.getSystemId().data());
    locator.setSystemId(text(u"other"));
    locator.setLineNumber(5);
    for (const LocatorImpl* kept : {&copy, &snapshot}) {
        EXPECT_EQ("sys", show(kept->getSystemId()));
        EXPECT_EQ(3, kept->getLineNumber());
        EXPECT_EQ(4, kept->getColumnNumber());
    }
}

TEST_F(LocatorImplTest, IdentifierThatWasSetToALiteralRefusesTheNextValue) {
    LocatorImpl locator;
    locator.setPublicId(literal());
    EXPECT_THROW(locator.setPublicId(text(u"other")), ImmutableObjectWriteError);
    EXPECT_EQ("lit", show(locator.getPublicId()));
    locator.setSystemId(text(u"free"));
    locator.setSystemId(literal());
    EXPECT_THROW(locator.setSystemId(XmlString()), ImmutableObjectWriteError);
}

TEST_F(LocatorImplTest, AssignmentTakesOverEvenOverLiterals) {
    LocatorImpl locator, other;
    locator.setPublicId(literal());
    locator.setSystemId(literal());
    other.setPublicId(text(u"pub"));
    other.setLineNumber(3);
    other.setColumnNumber(4);
    locator = other;
    EXPECT_EQ("pub", show(locator.getPublicId()));
    EXPECT_EQ("", show(locator.getSystemId()));
    EXPECT_EQ(3, locator.getLineNumber());
    EXPECT_EQ(4, locator.getColumnNumber());
    locator.setSystemId(text(u"free again"));
    const LocatorImpl& same = locator;
    locator = same;
    EXPECT_EQ("free again", show(locator.getSystemId()));
}

TEST_F(LocatorImplTest, WithoutMemoryThereIsNoLocator) {
    Testing::everyAllocationFails([] { const LocatorImpl locator; });
    const LocatorImpl original;
    Testing::everyAllocationFails([&] { const LocatorImpl locator(static_cast<const Locator&>(original)); });
}

} // namespace
} // namespace Quillon::Xml::Sax
