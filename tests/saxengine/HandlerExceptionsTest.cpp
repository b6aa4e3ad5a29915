// What handlers throw: it comes out of parse as it is, nothing follows it, nothing leaks, and the reader works again.
#include "saxengine/ReadingFixture.h"
#include "xml/IOException.h"
#include "xml/NullPointerException.h"

#include <gmock/gmock.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HandlerExceptionsTest : public ReadingFixture {
protected:
    void SetUp() override {
        ReadingFixture::SetUp();
        readExternalEntities();
        serveResources();
        resources["file:///x/a.dtd"] = "<!ELEMENT a ANY><!ENTITY % p SYSTEM 'p.ent'>%p;<!--s-->";
        resources["file:///x/p.ent"] = "<!ATTLIST a b CDATA 'c'><?q r?>";
        resources["file:///x/e.ent"] = "<d>&f;</d><!--e-->";
        resources["file:///x/f.ent"] = "<g/>f\n";
    }
    Outcome readAll() { return read(kEverything, u"file:///x/z.xml"); }

    /// Every kind of event is in it, in the document, in the internal and external subset and in entities.
    static constexpr char kEverything[] =
        "<?xml version='1.1' encoding='UTF-8'?><!--c--><!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY e SYSTEM 'e.ent'>"
        "<!ENTITY f SYSTEM 'f.ent'><!ENTITY i 'i<h/>'><!NOTATION n PUBLIC 'p'><!ENTITY u SYSTEM 'u' NDATA n>"
        "<!ELEMENT w (x)*><!ATTLIST a k ID #IMPLIED>]><?t d?><a xmlns='u' xmlns:v='w'>t\n&e;&i;<w> "
        "</w><![CDATA[d]]>"
        "<v:x/>&unknown;</a><!--z-->";
};

TEST_F(HandlerExceptionsTest, AnyEventMayThrow) {
    ASSERT_FALSE(readAll().threw);
    const std::vector<std::string> all = handler().lines();
    EXPECT_THAT(all, ::testing::SizeIs(::testing::Gt(50u)));
    for (std::size_t n = 1; n <= all.size(); ++n) {
        handler().throwAt(n);
        const Outcome outcome = readAll();
        EXPECT_TRUE(outcome.threw) << all[n - 1];
        EXPECT_EQ("thrown by the handler", outcome.message);
        EXPECT_EQ(n, handler().lines().size()) << "the last event is " << handler().lines().back();
        EXPECT_EQ(all[n - 1], handler().lines().back());
        handler().throwAt(0);
        EXPECT_FALSE(readAll().threw) << all[n - 1];
        EXPECT_EQ(all, handler().lines()) << "after a failure at " << all[n - 1];
    }
}

/// Nothing of the library's.
struct Stranger {
    int value;
};

TEST_F(HandlerExceptionsTest, ExceptionsOfAnyKindComeOutAsTheyAre) {
    const auto throwAtText = [&](const std::function<void()>& thrower) {
        handler().clear();
        const std::string document = "<a><b/></a>";
        MemoryByteChannel channel(document.data(), document.size());
        InputSource source(&channel);
        handler().throwAt(3, thrower);
        reader().parse(source);
    };
    try {
        throwAtText([] { throw Stranger{42}; });
        FAIL();
    } catch (const Stranger& stranger) {
        EXPECT_EQ(42, stranger.value);
    }
    EXPECT_THROW(throwAtText([] { IOException::doThrow(); }), IOException);
    EXPECT_THROW(throwAtText([] { NullPointerException::doThrow(); }), NullPointerException);
    EXPECT_THROW(throwAtText([] { throw 1; }), int);
    EXPECT_THROW(throwAtText([] { throw std::bad_alloc(); }), std::bad_alloc);
    EXPECT_FALSE(read("<a/>").threw);
}

/// Throws from what the reader asks for while Expat is at work.
class ThrowingResolver : public EntityResolver2 {
public:
    InputSource* getExternalSubset(const XmlString&, const XmlString&) override { throw Stranger{1}; }
    InputSource* resolveEntity(const XmlString&, const XmlString&) override { throw Stranger{2}; }
    InputSource* resolveEntity(const XmlString&, const XmlString&, const XmlString&,
                               const XmlString&) override {
        throw Stranger{3};
    }
};

TEST_F(HandlerExceptionsTest, ResolversMayThrow) {
    ThrowingResolver resolver;
    reader().setEntityResolver(&resolver);
    EXPECT_THROW(read("<a/>"), Stranger);
    EXPECT_THROW(read("<!DOCTYPE a><a/>"), Stranger);
    EXPECT_THROW(read("<!DOCTYPE a SYSTEM 's'><a/>"), Stranger);
    set(SC_Features_UseEntityResolver2, false);
    EXPECT_THROW(read("<!DOCTYPE a SYSTEM 's'><a/>"), Stranger);
    reader().setEntityResolver(nullptr);
    EXPECT_FALSE(read("<a/>").threw);
}

/// A channel that fails after its text.
class FailingChannel : public ReadableByteChannel {
public:
    explicit FailingChannel(std::string_view text) : text_(text) {}
    void close() override {}
    bool isOpen() const override { return true; }
    unsigned int read(unsigned char* buffer, unsigned int) override {
        if (text_.empty())
            IOException::doThrow();
        const auto count = static_cast<unsigned int>(text_.copy(reinterpret_cast<char*>(buffer), 100));
        text_.remove_prefix(count);
        return count;
    }

private:
    std::string_view text_;
};

TEST_F(HandlerExceptionsTest, ChannelsMayThrow) {
    FailingChannel channel("<!--c--><a>");
    InputSource source(&channel);
    EXPECT_THROW(reader().parse(source), IOException);
    FailingChannel entity("x");
    reader().setEntityResolver(&handler());
    handler().resolveWith([&](const XmlString&, const XmlString&) { return new InputSource(&entity); });
    handler().clear();
    EXPECT_THROW(read("<!DOCTYPE a [<!ENTITY e SYSTEM 's'>]><a>&e;</a>"), IOException);
    EXPECT_EQ(R"(startEntity("e"))", handler().lines().back());
}

/// Text that ends an entity with a carriage return is reported without a look at whether the parser was stopped.
TEST_F(HandlerExceptionsTest, ExceptionCountsWhereExpatReportsSuccess) {
    resources["file:///x/e.ent"] = "x\r";
    const char* document = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>";
    ASSERT_FALSE(read(document, u"file:///x/z.xml").threw);
    const std::vector<std::string> all = handler().lines();
    const auto last = std::find(all.begin(), all.end(), R"(characters("\n"))");
    ASSERT_NE(all.end(), last);
    handler().throwAt(static_cast<std::size_t>(last - all.begin()) + 1);
    EXPECT_EQ("thrown by the handler", read(document, u"file:///x/z.xml").message);
    EXPECT_EQ(R"(characters("\n"))", handler().lines().back());
}

/// Starts a parse from inside a parse.
class Nester : public DefaultHandler2 {
public:
    std::function<void()> atElement;
    void startElement(const XmlString&, const XmlString&, const XmlString&, const Attributes&) override {
        atElement();
    }
};

TEST_F(HandlerExceptionsTest, ParseInsideAParseIsRefusedAndTheOuterGoesOn) {
    Nester nester;
    reader().setContentHandler(&nester);
    int refusals = 0;
    nester.atElement = [&] {
        const std::string document = "<b/>";
        MemoryByteChannel channel(document.data(), document.size());
        InputSource source(&channel);
        const Outcome outcome = outcomeOf([&] { reader().parse(source); });
        EXPECT_TRUE(outcome.threw);
        EXPECT_FALSE(outcome.isParseException);
        EXPECT_EQ("the reader is in the middle of a parse", outcome.message);
        EXPECT_TRUE(outcomeOf([&] { reader().parse(text(u"/dev/null")); }).threw);
        ++refusals;
    };
    EXPECT_FALSE(read("<a><c/></a>").threw);
    EXPECT_EQ(2, refusals);
}

TEST_F(HandlerExceptionsTest, AnotherReaderMayParseInsideAParse) {
    Nester nester;
    reader().setContentHandler(&nester);
    SaxEngineReader inner;
    RecordingHandler recorder;
    inner.setContentHandler(&recorder);
    nester.atElement = [&] {
        const std::string document = "<b/>";
        MemoryByteChannel channel(document.data(), document.size());
        InputSource source(&channel);
        inner.parse(source);
    };
    EXPECT_FALSE(read("<a><c/></a>").threw);
    EXPECT_EQ(2u, recorder.linesOf("endDocument").size());
}

/// Fatal errors.
class Forgiving : public DefaultHandler2 {
public:
    int fatalErrors = 0;
    void fatalError(const SaxParseException&) override { ++fatalErrors; }
};

TEST_F(HandlerExceptionsTest, FatalErrorIsThrownWhenTheErrorHandlerReturns) {
    Forgiving forgiving;
    reader().setErrorHandler(&forgiving);
    for (const char* document :
         {"<a>", "<a xmlns:p=''/>", "\xFF", "<?xml version='1.0' encoding='no-such'?><a/>"}) {
        forgiving.fatalErrors = 0;
        EXPECT_TRUE(read(document).isParseException) << document;
        EXPECT_EQ(1, forgiving.fatalErrors) << document;
    }
}

TEST_F(HandlerExceptionsTest, FatalErrorIsThrownWithoutAnErrorHandler) {
    reader().setErrorHandler(nullptr);
    EXPECT_TRUE(read("<a>").isParseException);
    EXPECT_TRUE(read("<p:a/>").isParseException);
}

TEST_F(HandlerExceptionsTest, WhatTheErrorHandlerThrowsGoesFirst) {
    class Thrower : public DefaultHandler2 {
    public:
        void fatalError(const SaxParseException&) override { throw Stranger{7}; }
    } thrower;
    reader().setErrorHandler(&thrower);
    EXPECT_THROW(read("<a>"), Stranger);
    EXPECT_THROW(read("<p:a/>"), Stranger);
}

TEST_F(HandlerExceptionsTest, NothingFollowsAFatalError) {
    EXPECT_TRUE(read("<a><b></a>").threw);
    EXPECT_THAT(handler().lines(),
                ElementsAre("setDocumentLocator(locator)", "startDocument()",
                            R"(startElement("", "a", "a", []))", R"(startElement("", "b", "b", []))",
                            ::testing::StartsWith("fatalError(")));
}

TEST_F(HandlerExceptionsTest, ReaderIsUsedAgainAfterEveryKindOfEnd) {
    for (const char* document : {"", "<a", "<a/>", "<a></b>", "<a>&x;</a>", "<!DOCTYPE", "<a/>"}) {
        read(document);
        handler().clear();
        EXPECT_FALSE(readAll().threw) << "after " << document;
    }
}

} // namespace
} // namespace Quillon::Xml::Sax
