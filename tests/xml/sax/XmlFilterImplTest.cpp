#include "xml/sax/XmlFilterImpl.h"

#include "support/FakeReader.h"
#include "support/HostFixture.h"
#include "support/RecordingHandler.h"
#include "support/Text.h"
#include "system/InternalException.h"
#include "system/UserException.h"
#include "xml/IOException.h"
#include "xml/NullPointerException.h"
#include "xml/ReadableByteChannel.h"
#include "xml/sax/EventTables.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxNotRecognizedException.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::FakeReader;
using Testing::RecordingHandler;
using Testing::show;
using Testing::text;

using Lines = std::vector<std::string>;

using XmlFilterImplTest = Testing::HostFixture;

/// Shows what only subclasses see.
class OpenFilter : public XmlFilterImpl {
public:
    using XmlFilterImpl::getDocumentLocator;
    using XmlFilterImpl::setupParse;
    using XmlFilterImpl::XmlFilterImpl;
};

/// Registers `handler` for everything that a filter passes on.
void registerAll(XmlFilterImpl& filter, RecordingHandler& handler) {
    filter.setEntityResolver(&handler);
    filter.setDTDHandler(&handler);
    filter.setContentHandler(&handler);
    filter.setErrorHandler(&handler);
}

// Wiring

TEST_F(XmlFilterImplTest, NewFilterHasNothing) {
    const OpenFilter filter;
    EXPECT_EQ(nullptr, filter.getParent());
    EXPECT_EQ(nullptr, filter.getEntityResolver());
    EXPECT_EQ(nullptr, filter.getDTDHandler());
    EXPECT_EQ(nullptr, filter.getContentHandler());
    EXPECT_EQ(nullptr, filter.getErrorHandler());
    EXPECT_EQ(nullptr, filter.getDocumentLocator());
}

TEST_F(XmlFilterImplTest, ParentIsStoredAndNotTouched) {
    FakeReader reader, other;
    XmlFilterImpl filter(&reader);
    EXPECT_EQ(&reader, filter.getParent());
    filter.setParent(&other);
    EXPECT_EQ(&other, filter.getParent());
    filter.setParent(nullptr);
    EXPECT_EQ(nullptr, filter.getParent());
    EXPECT_EQ(Lines(), reader.calls());
    EXPECT_EQ(Lines(), other.calls());
}

TEST_F(XmlFilterImplTest, NewFilterOverAReaderHasNoHandlers) {
    RecordingHandler own;
    FakeReader reader;
    reader.setEntityResolver(&own);
    reader.setDTDHandler(&own);
    reader.setContentHandler(&own);
    reader.setErrorHandler(&own);
    const OpenFilter filter(&reader);
    EXPECT_EQ(nullptr, filter.getEntityResolver());
    EXPECT_EQ(nullptr, filter.getDTDHandler());
    EXPECT_EQ(nullptr, filter.getContentHandler());
    EXPECT_EQ(nullptr, filter.getErrorHandler());
    EXPECT_EQ(nullptr, filter.getDocumentLocator());
}

TEST_F(XmlFilterImplTest, HandlersAreStoredAndTheParentIsNotTouched) {
    FakeReader reader;
    XmlFilterImpl filter(&reader);
    RecordingHandler handler;
    registerAll(filter, handler);
    EXPECT_EQ(&handler, filter.getEntityResolver());
    EXPECT_EQ(&handler, filter.getDTDHandler());
    EXPECT_EQ(&handler, filter.getContentHandler());
    EXPECT_EQ(&handler, filter.getErrorHandler());
    filter.setEntityResolver(nullptr);
    filter.setDTDHandler(nullptr);
    filter.setContentHandler(nullptr);
    filter.setErrorHandler(nullptr);
    EXPECT_EQ(nullptr, filter.getEntityResolver());
    EXPECT_EQ(nullptr, filter.getDTDHandler());
    EXPECT_EQ(nullptr, filter.getContentHandler());
    EXPECT_EQ(nullptr, filter.getErrorHandler());
    EXPECT_EQ(Lines(), reader.calls());
}

// Features and properties

TEST_F(XmlFilterImplTest, FeaturesAndPropertiesAreTheParents) {
    FakeReader reader;
    XmlFilterImpl filter(&reader);
    int value = 0;
    filter.setFeature(text(u"f"), true);
    EXPECT_TRUE(filter.getFeature(text(u"f")));
    filter.setFeature(text(u"f"), false);
    EXPECT_FALSE(filter.getFeature(text(u"f")));
    filter.setProperty(text(u"p"), &value);
    EXPECT_EQ(&value, filter.getProperty(text(u"p")));
    EXPECT_EQ((Lines{"setFeature(\"f\", true)", "getFeature(\"f\")", "setFeature(\"f\", false)",
                     "getFeature(\"f\")", "setProperty(\"p\", set)", "getProperty(\"p\")"}),
              reader.calls());
}

TEST_F(XmlFilterImplTest, WhatTheParentRefusesIsRefused) {
    FakeReader reader;
    reader.refuse(text(u"x"));
    XmlFilterImpl filter(&reader);
    const auto message = [](auto call) {
        try {
            call();
        } catch (const SaxNotRecognizedException& exception) {
            return show(exception.getMessage());
        }
        return std::string("not thrown");
    };
    EXPECT_EQ("x", message([&] { filter.setFeature(text(u"x"), true); }));
    EXPECT_EQ("x", message([&] { filter.getFeature(text(u"x")); }));
    EXPECT_EQ("x", message([&] { filter.setProperty(text(u"x"), nullptr); }));
    EXPECT_EQ("x", message([&] { filter.getProperty(text(u"x")); }));
}

struct OrphanCase {
    const char* name;
    void (*call)(XmlFilterImpl&, const XmlString&);
    const char* prefix;
};

class OrphanFilterTest : public XmlFilterImplTest, public testing::WithParamInterface<OrphanCase> {
protected:
    /// The message with which a filter without a parent refuses `name`.
    static std::string messageFor(const XmlString& name) {
        XmlFilterImpl filter;
        try {
            GetParam().call(filter, name);
        } catch (const SaxNotRecognizedException& exception) {
            return show(exception.getMessage());
        }
        return "not thrown";
    }
};

TEST_P(OrphanFilterTest, RefusesEveryName) {
    const std::string prefix = GetParam().prefix;
    EXPECT_EQ(prefix + "http://xml.org/sax/features/namespaces", messageFor(SC_Features_Namespaces()));
    EXPECT_EQ(prefix + "http://xml.org/sax/properties/lexical-handler",
              messageFor(SC_Properties_LexicalHandler()));
    EXPECT_EQ(prefix + "own", messageFor(text(u"own")));
}

TEST_P(OrphanFilterTest, RefusesOddNamesToo) {
    EXPECT_EQ(GetParam().prefix, messageFor(XmlString()));
    EXPECT_EQ(GetParam().prefix, messageFor(text(u"")));
    XmlString invalid = text(u"invalid");
    invalid += text(u""); // leaves Valid clear
    EXPECT_EQ(std::string(GetParam().prefix) + "invalid", messageFor(invalid));
}

TEST_P(OrphanFilterTest, WithoutMemoryForTheMessageThatIsReported) {
    const XmlString name = text(u"name");
    Testing::everyAllocationFails([&] {
        XmlFilterImpl filter;
        try {
            GetParam().call(filter, name);
        } catch (const SaxNotRecognizedException&) {
        }
    });
}

const OrphanCase kOrphanCases[] = {
    {"setFeature", [](XmlFilterImpl& filter, const XmlString& name) { filter.setFeature(name, true); },
     "Feature: "},
    {"getFeature", [](XmlFilterImpl& filter, const XmlString& name) { filter.getFeature(name); },
     "Feature: "},
    {"setProperty", [](XmlFilterImpl& filter, const XmlString& name) { filter.setProperty(name, nullptr); },
     "Property: "},
    {"getProperty", [](XmlFilterImpl& filter, const XmlString& name) { filter.getProperty(name); },
     "Property: "},
};

INSTANTIATE_TEST_SUITE_P(Operations, OrphanFilterTest, testing::ValuesIn(kOrphanCases),
                         [](const auto& info) { return std::string(info.param.name); });

// Parsing

TEST_F(XmlFilterImplTest, ParseWithoutParentIsANullPointer) {
    XmlFilterImpl filter;
    InputSource source;
    EXPECT_THROW(filter.parse(source), NullPointerException);
    EXPECT_THROW(filter.parse(text(u"doc.xml")), NullPointerException);
}

TEST_F(XmlFilterImplTest, NullPointerExceptionCarriesNoMessage) {
    OpenFilter filter;
    try {
        filter.setupParse();
        FAIL() << "nothing was thrown";
    } catch (const NullPointerException& exception) {
        EXPECT_NE(nullptr, dynamic_cast<const System::InternalException*>(&exception));
        EXPECT_EQ(nullptr, dynamic_cast<const System::UserException*>(&exception));
    }
}

TEST_F(XmlFilterImplTest, ParseRegistersTheFilterInOrder) {
    FakeReader reader;
    XmlFilterImpl filter(&reader);
    InputSource source(text(u"doc.xml"));
    filter.parse(source);
    EXPECT_EQ((Lines{"setEntityResolver(set)", "setDTDHandler(set)", "setContentHandler(set)",
                     "setErrorHandler(set)", "parse(\"doc.xml\")"}),
              reader.calls());
    EXPECT_EQ(&filter, reader.getEntityResolver());
    EXPECT_EQ(&filter, reader.getDTDHandler());
    EXPECT_EQ(&filter, reader.getContentHandler());
    EXPECT_EQ(&filter, reader.getErrorHandler());
}

TEST_F(XmlFilterImplTest, ParsePassesTheSourceItselfOn) {
    struct SourceReader : FakeReader {
        void parse(InputSource& source) override { seen = &source; }
        InputSource* seen = nullptr;
    };
    SourceReader reader;
    XmlFilterImpl filter(&reader);
    InputSource source;
    filter.parse(source);
    EXPECT_EQ(&source, reader.seen);
}

TEST_F(XmlFilterImplTest, EveryParseRegistersAgain) {
    FakeReader reader;
    XmlFilterImpl filter(&reader);
    filter.parse(text(u"one"));
    reader.setContentHandler(nullptr);
    reader.clearCalls();
    filter.parse(text(u"two"));
    EXPECT_EQ(5u, reader.calls().size());
    EXPECT_EQ(&filter, reader.getContentHandler());
}

TEST_F(XmlFilterImplTest, ParentMayChangeBetweenParses) {
    FakeReader first, second;
    XmlFilterImpl filter(&first);
    filter.parse(text(u"one"));
    filter.setParent(&second);
    EXPECT_EQ(Lines(), second.calls());
    filter.parse(text(u"two"));
    EXPECT_EQ(5u, first.calls().size());
    EXPECT_EQ("parse(\"two\")", second.calls().back());
}

/// Keeps what its own parse(InputSource&) is given.
class OwnParse : public XmlFilterImpl {
public:
    using XmlFilterImpl::parse;
    void parse(InputSource& source) override {
        systemId = show(source.getSystemId());
        publicId = show(source.getPublicId());
        if (throws)
            throw 1;
    }

    std::string systemId, publicId;
    bool throws = false;
};

TEST_F(XmlFilterImplTest, ParseOfASystemIdCallsTheOverride) {
    OwnParse filter;
    filter.parse(text(u"doc.xml"));
    EXPECT_EQ("doc.xml", filter.systemId);
    EXPECT_EQ("", filter.publicId);
}

TEST_F(XmlFilterImplTest, SourceOfASystemIdIsLetGoWhenTheParseThrows) {
    OwnParse filter;
    filter.throws = true;
    const XmlString systemId = text(u"doc.xml");
    EXPECT_THROW(filter.parse(systemId), int);
    EXPECT_EQ(1u, systemId.getRefs());
}

TEST_F(XmlFilterImplTest, SourceOfASystemIdNeedsMemory) {
    OwnParse filter;
    const XmlString systemId = text(u"s");
    Testing::everyAllocationFails([&] { filter.parse(systemId); });
}

// Events

template <class Handler>
class FilterEventTest : public Testing::HostFixture, public testing::WithParamInterface<EventCase<Handler>> {
protected:
    void expectPassedOn() {
        const EventCase<Handler>& event = this->GetParam();
        RecordingHandler handler;
        XmlFilterImpl filter;
        registerAll(filter, handler);
        event.play(filter);
        EXPECT_EQ(event.line, handler.text());
    }

    void expectDropped() {
        XmlFilterImpl filter;
        EXPECT_NO_THROW(this->GetParam().play(filter));
    }

    void expectExceptionPasses() {
        RecordingHandler handler;
        XmlFilterImpl filter;
        registerAll(filter, handler);
        handler.throwAt(1, [] { throw 42; });
        EXPECT_THROW(this->GetParam().play(filter), int);
    }
};

using FilterContentTest = FilterEventTest<ContentHandler>;
using FilterDtdTest = FilterEventTest<DTDHandler>;
using FilterErrorTest = FilterEventTest<ErrorHandler>;

TEST_P(FilterContentTest, IsPassedOn) {
    expectPassedOn();
}
TEST_P(FilterContentTest, IsDroppedWithoutHandler) {
    expectDropped();
}
TEST_P(FilterContentTest, ExceptionPasses) {
    expectExceptionPasses();
}
TEST_P(FilterDtdTest, IsPassedOn) {
    expectPassedOn();
}
TEST_P(FilterDtdTest, IsDroppedWithoutHandler) {
    expectDropped();
}
TEST_P(FilterDtdTest, ExceptionPasses) {
    expectExceptionPasses();
}
TEST_P(FilterErrorTest, IsPassedOn) {
    expectPassedOn();
}
TEST_P(FilterErrorTest, IsDroppedWithoutHandler) {
    expectDropped();
}
TEST_P(FilterErrorTest, ExceptionPasses) {
    expectExceptionPasses();
}

INSTANTIATE_TEST_SUITE_P(Table, FilterContentTest, testing::ValuesIn(kContentEvents),
                         nameOfCase<ContentHandler>);
INSTANTIATE_TEST_SUITE_P(Table, FilterDtdTest, testing::ValuesIn(kDtdEvents), nameOfCase<DTDHandler>);
INSTANTIATE_TEST_SUITE_P(Table, FilterErrorTest, testing::ValuesIn(kErrorEvents), nameOfCase<ErrorHandler>);

TEST_F(XmlFilterImplTest, ArgumentsArePassedOnUnchanged) {
    struct Checker : RecordingHandler {
        void startElement(const XmlString& uri, const XmlString&, const XmlString&,
                          const Attributes& attributes) override {
            same = &uri == expectedUri && &attributes == expectedAttributes;
        }
        void characters(const unsigned short* ch, unsigned int start, unsigned int length) override {
            same = ch == kRun && start == 2 && length == 4;
        }
        const XmlString* expectedUri = nullptr;
        const Attributes* expectedAttributes = nullptr;
        bool same = false;
    };
    Checker checker;
    XmlFilterImpl filter;
    filter.setContentHandler(&checker);
    const XmlString uri = text(u"urn:u");
    const AttributesImpl attributes;
    checker.expectedUri = &uri;
    checker.expectedAttributes = &attributes;
    filter.startElement(uri, uri, uri, attributes);
    EXPECT_TRUE(checker.same);
    checker.same = false;
    filter.characters(kRun, 2, 4);
    EXPECT_TRUE(checker.same);
}

TEST_F(XmlFilterImplTest, EachHandlerGetsItsEventsAlone) {
    RecordingHandler dtd, content, errors;
    XmlFilterImpl filter;
    filter.setDTDHandler(&dtd);
    filter.setContentHandler(&content);
    filter.setErrorHandler(&errors);
    filter.notationDecl(text(u"n"), XmlString(), XmlString());
    filter.startDocument();
    filter.warning(sampleError());
    EXPECT_EQ(1u, dtd.eventCount());
    EXPECT_EQ(1u, content.eventCount());
    EXPECT_EQ(1u, errors.eventCount());
}

TEST_F(XmlFilterImplTest, LocatorIsStoredAlsoWithoutHandler) {
    OpenFilter filter;
    LocatorImpl locator;
    filter.setDocumentLocator(&locator);
    EXPECT_EQ(&locator, filter.getDocumentLocator());
    RecordingHandler handler;
    filter.setContentHandler(&handler);
    handler.throwAt(1, [] { throw 1; });
    EXPECT_THROW(filter.setDocumentLocator(nullptr), int);
    EXPECT_EQ(nullptr, filter.getDocumentLocator()); // stored before it is passed on
}

TEST_F(XmlFilterImplTest, ResolverIsAskedAndItsAnswerGivenBack) {
    XmlFilterImpl filter;
    EXPECT_EQ(nullptr, filter.resolveEntity(text(u"pub"), text(u"sys")));
    RecordingHandler handler;
    filter.setEntityResolver(&handler);
    EXPECT_EQ(nullptr, filter.resolveEntity(text(u"pub"), text(u"sys")));
    InputSource answer;
    handler.resolveWith([&](const XmlString&, const XmlString&) { return &answer; });
    EXPECT_EQ(&answer, filter.resolveEntity(XmlString(), text(u"sys")));
    EXPECT_EQ((Lines{"resolveEntity(\"pub\", \"sys\")", "resolveEntity(null, \"sys\")"}), handler.lines());
}

TEST_F(XmlFilterImplTest, FatalErrorWithoutHandlerIsDropped) {
    FakeReader reader;
    reader.startDocument().fatalError(sampleError()).endDocument();
    XmlFilterImpl filter(&reader);
    RecordingHandler handler;
    filter.setContentHandler(&handler);
    filter.parse(text(u"doc.xml"));
    EXPECT_EQ((Lines{"startDocument()", "endDocument()"}), handler.lines());
}

// Chains

void scriptOfEverything(FakeReader& reader, Locator* locator) {
    AttributesImpl attributes;
    attributes.addAttribute(text(u""), text(u"x"), text(u"x"), text(u"CDATA"), text(u"1"));
    reader.setDocumentLocator(locator).startDocument().notationDecl(u"n", nullptr, u"sys");
    reader.unparsedEntityDecl(u"u", nullptr, u"sys", u"n").resolveEntity(u"pub", u"sys");
    reader.startPrefixMapping(u"p", u"urn:p").startElement(u"urn:p", u"e", u"p:e", attributes);
    reader.characters(u"text")
        .ignorableWhitespace(u"  ")
        .processingInstruction(u"t", u"d")
        .skippedEntity(u"s");
    reader.warning(sampleError()).error(sampleError()).fatalError(sampleError());
    reader.endElement(u"urn:p", u"e", u"p:e").endPrefixMapping(u"p").endDocument();
}

TEST_F(XmlFilterImplTest, ChainOfTwoDeliversEverything) {
    LocatorImpl locator;
    FakeReader reader;
    scriptOfEverything(reader, &locator);
    XmlFilterImpl inner(&reader);
    XmlFilterImpl outer(&inner);
    RecordingHandler handler, direct;
    registerAll(outer, handler);
    handler.resolveWith(
        [](const XmlString&, const XmlString& systemId) { return new InputSource(systemId); });
    outer.parse(text(u"doc.xml"));
    EXPECT_EQ("parse(\"doc.xml\")", reader.calls().back());
    EXPECT_EQ(&inner, reader.getContentHandler());
    EXPECT_EQ(&outer, inner.getContentHandler());
    EXPECT_EQ(&locator, handler.locator());
    EXPECT_EQ(1, reader.resolvedCount());

    reader.setEntityResolver(&direct);
    reader.setDTDHandler(&direct);
    reader.setContentHandler(&direct);
    reader.setErrorHandler(&direct);
    reader.parse(text(u"doc.xml"));
    EXPECT_EQ(direct.text(), handler.text());
    EXPECT_EQ(17u, handler.lines().size());
}

TEST_F(XmlFilterImplTest, FeaturesOfAChainAreTheReaders) {
    FakeReader reader;
    XmlFilterImpl inner(&reader);
    XmlFilterImpl outer(&inner);
    outer.setFeature(text(u"f"), true);
    EXPECT_TRUE(reader.getFeature(text(u"f")));
}

TEST_F(XmlFilterImplTest, ExceptionAtEveryEventPassesThroughAChain) {
    LocatorImpl locator;
    FakeReader reader;
    scriptOfEverything(reader, &locator);
    XmlFilterImpl inner(&reader);
    XmlFilterImpl outer(&inner);
    RecordingHandler handler;
    registerAll(outer, handler);
    for (std::size_t n = 1; n <= 17; ++n) {
        handler.clear();
        handler.throwAt(n);
        EXPECT_THROW(outer.parse(text(u"doc.xml")), SaxException) << n;
        EXPECT_EQ(n, handler.lines().size());
    }
    handler.clear();
    outer.parse(text(u"doc.xml")); // usable afterwards
    EXPECT_EQ(17u, handler.lines().size());
}

TEST_F(XmlFilterImplTest, ExceptionOfTheParentPasses) {
    FakeReader reader;
    reader.add([](FakeReader&) { throw SaxException(text(u"disk")); });
    XmlFilterImpl filter(&reader);
    EXPECT_THROW(filter.parse(text(u"doc.xml")), SaxException);
}

TEST_F(XmlFilterImplTest, IOExceptionOfTheParentPassesUnchanged) {
    FakeReader reader;
    reader.startDocument().add([](FakeReader&) { IOException::doThrow(); }).endDocument();
    XmlFilterImpl inner(&reader);
    XmlFilterImpl outer(&inner);
    RecordingHandler handler;
    registerAll(outer, handler);
    InputSource source(text(u"doc.xml"));
    EXPECT_THROW(outer.parse(source), IOException);
    EXPECT_THROW(outer.parse(text(u"doc.xml")), IOException);
    EXPECT_EQ((Lines{"startDocument()", "startDocument()"}), handler.lines());
}

TEST_F(XmlFilterImplTest, IOExceptionOfAHandlerPassesUnchangedAtEveryEvent) {
    LocatorImpl locator;
    FakeReader reader;
    scriptOfEverything(reader, &locator);
    XmlFilterImpl filter(&reader);
    RecordingHandler handler;
    registerAll(filter, handler);
    for (std::size_t n = 1; n <= 17; ++n) {
        handler.clear();
        handler.throwAt(n, [] { IOException::doThrow(); });
        EXPECT_THROW(filter.parse(text(u"doc.xml")), IOException) << n;
        EXPECT_EQ(n, handler.lines().size());
    }
}

} // namespace
} // namespace Quillon::Xml::Sax
