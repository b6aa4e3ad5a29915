#include "xml/sax/DefaultHandler.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/sax/EventTables.h"

#include <gtest/gtest.h>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;

using DefaultHandlerTest = Testing::HostFixture;

TEST_F(DefaultHandlerTest, ContentEventsDoNothing) {
    DefaultHandler handler;
    for (const auto& event : kContentEvents)
        EXPECT_NO_THROW(event.play(handler)) << event.name;
}

TEST_F(DefaultHandlerTest, DeclarationsDoNothing) {
    DefaultHandler handler;
    for (const auto& event : kDtdEvents)
        EXPECT_NO_THROW(event.play(handler)) << event.name;
}

TEST_F(DefaultHandlerTest, EntitiesAreLeftToTheCaller) {
    DefaultHandler handler;
    EXPECT_EQ(nullptr, handler.resolveEntity(text(u"pub"), text(u"sys")));
    EXPECT_EQ(nullptr, handler.resolveEntity(XmlString(), XmlString()));
}

TEST_F(DefaultHandlerTest, WarningsAndErrorsAreIgnored) {
    DefaultHandler handler;
    EXPECT_NO_THROW(handler.warning(sampleError()));
    EXPECT_NO_THROW(handler.error(sampleError()));
}

TEST_F(DefaultHandlerTest, FatalErrorThrowsACopy) {
    DefaultHandler handler;
    const SaxParseException reported = sampleError();
    try {
        handler.fatalError(reported);
        FAIL() << "nothing was thrown";
    } catch (const SaxParseException& exception) {
        EXPECT_NE(&reported, &exception);
        EXPECT_EQ("msg", show(exception.getMessage()));
        EXPECT_EQ("pub", show(exception.getPublicId()));
        EXPECT_EQ("sys", show(exception.getSystemId()));
        EXPECT_EQ(reported.getLineNumber(), exception.getLineNumber());
        EXPECT_EQ(reported.getColumnNumber(), exception.getColumnNumber());
    }
}

TEST_F(DefaultHandlerTest, FatalErrorIsCaughtAsSaxException) {
    DefaultHandler handler;
    EXPECT_THROW(handler.fatalError(sampleError()), SaxException);
}

} // namespace
} // namespace Quillon::Xml::Sax
