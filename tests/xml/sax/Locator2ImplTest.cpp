#include "xml/sax/Locator2Impl.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/ImmutableObjectWriteError.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;

using Locator2ImplTest = Testing::HostFixture;

/// A locator with all six values set.
Locator2Impl filled() {
    Locator2Impl locator;
    locator.setPublicId(text(u"pub"));
    locator.setSystemId(text(u"sys"));
    locator.setLineNumber(3);
    locator.setColumnNumber(4);
    locator.setEncoding(text(u"EUC-KR"));
    locator.setXMLVersion(text(u"1.1"));
    return locator;
}

void expectFilled(const Locator2Impl& locator) {
    EXPECT_EQ("pub", show(locator.getPublicId()));
    EXPECT_EQ("sys", show(locator.getSystemId()));
    EXPECT_EQ(3, locator.getLineNumber());
    EXPECT_EQ(4, locator.getColumnNumber());
    EXPECT_EQ("EUC-KR", show(locator.getEncoding()));
    EXPECT_EQ("1.1", show(locator.getXMLVersion()));
}

TEST_F(Locator2ImplTest, NewLocatorHasNullEncodingAndVersion) {
    const Locator2Impl locator;
    EXPECT_FALSE(locator.getPublicId().isNull());
    EXPECT_FALSE(locator.getSystemId().isNull());
    EXPECT_EQ(0, locator.getLineNumber());
    EXPECT_EQ(0, locator.getColumnNumber());
    EXPECT_TRUE(locator.getEncoding().isNull());
    EXPECT_TRUE(locator.getXMLVersion().isNull());
}

TEST_F(Locator2ImplTest, ValuesAreKept) {
    expectFilled(filled());
}

TEST_F(Locator2ImplTest, BothLocatorPartsSayTheSame) {
    const Locator2Impl locator = filled();
    const Locator& first = static_cast<const LocatorImpl&>(locator);
    const Locator& second = static_cast<const Locator2&>(locator);
    for (const Locator* part : {&first, &second}) {
        EXPECT_EQ("pub", show(part->getPublicId()));
        EXPECT_EQ("sys", show(part->getSystemId()));
        EXPECT_EQ(3, part->getLineNumber());
        EXPECT_EQ(4, part->getColumnNumber());
    }
    const Locator2& asLocator2 = locator;
    EXPECT_EQ("EUC-KR", show(asLocator2.getEncoding()));
    EXPECT_EQ("1.1", show(asLocator2.getXMLVersion()));
}

TEST_F(Locator2ImplTest, PlainLocatorLeavesEncodingAndVersionNull) {
    LocatorImpl plain;
    plain.setSystemId(text(u"sys"));
    plain.setLineNumber(3);
    const Locator2Impl locator(plain);
    EXPECT_EQ("sys", show(locator.getSystemId()));
    EXPECT_EQ(3, locator.getLineNumber());
    EXPECT_TRUE(locator.getEncoding().isNull());
    EXPECT_TRUE(locator.getXMLVersion().isNull());
}

TEST_F(Locator2ImplTest, Locator2IsRecognisedThroughEitherPart) {
    const Locator2Impl original = filled();
    expectFilled(Locator2Impl(static_cast<const Locator&>(static_cast<const LocatorImpl&>(original))));
    expectFilled(Locator2Impl(static_cast<const Locator&>(static_cast<const Locator2&>(original))));
}

/// A locator of somebody else's that keeps what it was asked.
class AskedLocator2 : public Locator2 {
public:
    XmlString getPublicId() const override { return answer("getPublicId", u"pub"); }
    XmlString getSystemId() const override { return answer("getSystemId", u"sys"); }
    long long getLineNumber() const override { return asked("getLineNumber"), 3; }
    long long getColumnNumber() const override { return asked("getColumnNumber"), 4; }
    XmlString getXMLVersion() const override { return answer("getXMLVersion", u"1.1"); }
    XmlString getEncoding() const override { return answer("getEncoding", u"EUC-KR"); }

    mutable std::vector<std::string> questions;

private:
    XmlString answer(const char* question, const char16_t* value) const {
        asked(question);
        return text(value);
    }
    void asked(const char* question) const { questions.emplace_back(question); }
};

TEST_F(Locator2ImplTest, ForeignLocator2IsAskedInOrder) {
    const AskedLocator2 original;
    const Locator2Impl locator{static_cast<const Locator&>(original)};
    EXPECT_EQ((std::vector<std::string>{"getPublicId", "getSystemId", "getLineNumber", "getColumnNumber",
                                        "getXMLVersion", "getEncoding"}),
              original.questions);
    expectFilled(locator);
}

TEST_F(Locator2ImplTest, CopyKeepsWhatTheOriginalWas) {
    Locator2Impl original = filled();
    const Locator2Impl copy(original);
    original.setEncoding(text(u"UTF-8"));
    original.setXMLVersion(text(u"1.0"));
    original.setLineNumber(9);
    expectFilled(copy);
}

TEST_F(Locator2ImplTest, AssignmentTakesOverEvenOverLiterals) {
    static const unsigned short literal[] = {'l', 0};
    const XmlString view(Immutable | Borrowed, literal);
    Locator2Impl locator;
    locator.setPublicId(view);
    locator.setSystemId(view);
    locator.setEncoding(view);
    locator.setXMLVersion(view);
    EXPECT_THROW(locator.setEncoding(text(u"UTF-8")), ImmutableObjectWriteError);
    EXPECT_THROW(locator.setXMLVersion(text(u"1.0")), ImmutableObjectWriteError);
    locator = filled();
    expectFilled(locator);
    const Locator2Impl& same = locator;
    locator = same;
    expectFilled(locator);
}

TEST_F(Locator2ImplTest, WithoutMemoryThereIsNoLocator) {
    Testing::everyAllocationFails([] { const Locator2Impl locator; });
}

} // namespace
} // namespace Quillon::Xml::Sax
