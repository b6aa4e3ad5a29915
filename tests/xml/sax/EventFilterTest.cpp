#include "xml/sax/EventFilter.h"

#include "support/FakeReader.h"
#include "support/HostFixture.h"
#include "support/RecordingHandler.h"
#include "support/Text.h"
#include "xml/NullPointerException.h"
#include "xml/sax/EventTables.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxNotRecognizedException.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/XmlFilterImpl.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::FakeReader;
using Testing::quoted;
using Testing::RecordingHandler;
using Testing::show;
using Testing::text;

using Lines = std::vector<std::string>;

const char* const kDeclaration = "http://xml.org/sax/properties/declaration-handler";
const char* const kLexical = "http://xml.org/sax/properties/lexical-handler";

XmlString declarationHandler() {
    return SC_Properties_DeclarationHandler();
}

XmlString lexicalHandler() {
    return SC_Properties_LexicalHandler();
}

/// A consumer that hands out the parts of one recording handler, or nothing, and keeps what it was asked.
class FakeConsumer : public EventConsumer {
public:
    FakeConsumer() = default;
    explicit FakeConsumer(RecordingHandler& handler)
        : content(&handler), dtd(&handler), lexical(&handler), decl(&handler) {}

    ContentHandler* getContentHandler() const override { return asked("getContentHandler"), content; }
    DTDHandler* getDTDHandler() const override { return asked("getDTDHandler"), dtd; }
    void* getProperty(const XmlString& name) const override {
        asked("getProperty " + show(name));
        if (name.compare(refused) == 0)
            throw SaxNotRecognizedException(name);
        return name.compare(lexicalHandler()) == 0 ? static_cast<void*>(lexical) : decl;
    }
    void setErrorHandler(ErrorHandler* handler) override {
        asked("setErrorHandler");
        error = handler;
    }

    ContentHandler* content = nullptr;
    DTDHandler* dtd = nullptr;
    LexicalHandler* lexical = nullptr;
    DeclHandler* decl = nullptr;
    ErrorHandler* error = nullptr;
    XmlString refused;
    mutable Lines questions;

private:
    void asked(const std::string& question) const { questions.push_back(question); }
};

template <class Exception, class Call>
std::string messageOf(Call call) {
    try {
        call();
    } catch (const Exception& exception) {
        return show(exception.getMessage());
    }
    return "not thrown";
}

using EventFilterTest = Testing::HostFixture;

/// What the filter hands out as its lexical handler.
LexicalHandler* lexicalOf(const EventFilter& filter) {
    return static_cast<LexicalHandler*>(filter.getProperty(lexicalHandler()));
}

DeclHandler* declOf(const EventFilter& filter) {
    return static_cast<DeclHandler*>(filter.getProperty(declarationHandler()));
}

// Construction

void expectHandsOutNothing(const EventFilter& filter) {
    EXPECT_EQ(nullptr, filter.getNext());
    EXPECT_EQ(nullptr, filter.getContentHandler());
    EXPECT_EQ(nullptr, filter.getDTDHandler());
    EXPECT_EQ(nullptr, declOf(filter));
    EXPECT_EQ(nullptr, lexicalOf(filter));
    EXPECT_EQ(nullptr, filter.getErrorHandler());
    EXPECT_EQ(nullptr, filter.getDocumentLocator());
}

TEST_F(EventFilterTest, NewFilterHasNothing) {
    expectHandsOutNothing(EventFilter());
    expectHandsOutNothing(EventFilter(nullptr));
}

TEST_F(EventFilterTest, HandlersOfTheConsumerAreAskedForInOrder) {
    RecordingHandler handler;
    FakeConsumer consumer(handler);
    const EventFilter filter(&consumer);
    EXPECT_EQ((Lines{"getContentHandler", "getDTDHandler", std::string("getProperty ") + kDeclaration,
                     std::string("getProperty ") + kLexical}),
              consumer.questions);
    EXPECT_EQ(&consumer, filter.getNext());
    EXPECT_EQ(&handler, filter.getContentHandler());
    EXPECT_EQ(&handler, filter.getDTDHandler());
    EXPECT_EQ(&handler, declOf(filter));
    EXPECT_EQ(&handler, lexicalOf(filter));
    EXPECT_EQ(nullptr, filter.getErrorHandler());
}

TEST_F(EventFilterTest, ConsumerMayLackHandlers) {
    FakeConsumer consumer;
    EventFilter filter(&consumer);
    EXPECT_EQ(nullptr, filter.getContentHandler());
    EXPECT_EQ(nullptr, lexicalOf(filter));
    EXPECT_NO_THROW(filter.startDocument());
    EXPECT_NO_THROW(filter.endDTD());
}

TEST_F(EventFilterTest, ExceptionOfTheConsumerPasses) {
    FakeConsumer consumer;
    consumer.refused = declarationHandler();
    EXPECT_THROW(EventFilter{&consumer}, SaxNotRecognizedException);
}

// What is handed out

TEST_F(EventFilterTest, HandlersThatAreSetAreHandedOut) {
    RecordingHandler handler;
    EventFilter filter;
    filter.setContentHandler(&handler);
    filter.setDTDHandler(&handler);
    EXPECT_EQ(&handler, filter.getContentHandler());
    EXPECT_EQ(&handler, filter.getDTDHandler());
    filter.setContentHandler(nullptr);
    filter.setDTDHandler(nullptr);
    EXPECT_EQ(nullptr, filter.getContentHandler());
    EXPECT_EQ(nullptr, filter.getDTDHandler());
}

TEST_F(EventFilterTest, PropertiesThatAreSetAreHandedOut) {
    RecordingHandler handler;
    EventFilter filter;
    filter.setProperty(declarationHandler(), static_cast<DeclHandler*>(&handler));
    EXPECT_EQ(&handler, declOf(filter));
    EXPECT_EQ(nullptr, lexicalOf(filter));
    filter.setProperty(lexicalHandler(), static_cast<LexicalHandler*>(&handler));
    EXPECT_EQ(&handler, lexicalOf(filter));
}

TEST_F(EventFilterTest, WhatIsHandedOutIsNotTheTarget) {
    RecordingHandler target, handedOut;
    FakeConsumer consumer(target);
    EventFilter filter(&consumer);
    filter.setContentHandler(&handedOut);
    filter.setDTDHandler(&handedOut);
    filter.setProperty(declarationHandler(), static_cast<DeclHandler*>(&handedOut));
    filter.setProperty(lexicalHandler(), static_cast<LexicalHandler*>(&handedOut));
    filter.startDocument();
    filter.notationDecl(text(u"n"), XmlString(), XmlString());
    filter.elementDecl(text(u"e"), text(u"ANY"));
    filter.endDTD();
    EXPECT_EQ(4u, target.eventCount());
    EXPECT_EQ(0u, handedOut.eventCount());
}

TEST_F(EventFilterTest, UnknownPropertyIsNamedBare) {
    const EventFilter filter;
    EXPECT_EQ("unknown", messageOf<SaxNotRecognizedException>([&] { filter.getProperty(text(u"unknown")); }));
    EXPECT_EQ("(null)", messageOf<SaxNotRecognizedException>([&] { filter.getProperty(XmlString()); }));
    EXPECT_EQ("http://xml.org/sax/properties/dom-node",
              messageOf<SaxNotRecognizedException>([&] { filter.getProperty(SC_Properties_DomNode()); }));
}

TEST_F(EventFilterTest, UnknownPropertyCannotBeSet) {
    EventFilter filter;
    EXPECT_EQ("unknown",
              messageOf<SaxNotRecognizedException>([&] { filter.setProperty(text(u"unknown"), nullptr); }));
}

TEST_F(EventFilterTest, NullHandlerIsStoredThenRefused) {
    RecordingHandler handler;
    FakeConsumer consumer(handler);
    EventFilter filter(&consumer);
    EXPECT_EQ(kLexical,
              messageOf<SaxNotSupportedException>([&] { filter.setProperty(lexicalHandler(), nullptr); }));
    EXPECT_EQ(nullptr, lexicalOf(filter));
    EXPECT_EQ(&handler, declOf(filter));
    EXPECT_EQ(kDeclaration, messageOf<SaxNotSupportedException>(
                                [&] { filter.setProperty(declarationHandler(), nullptr); }));
    EXPECT_EQ(nullptr, declOf(filter));
    filter.endDTD(); // the target stays
    EXPECT_EQ(1u, handler.eventCount());
}

TEST_F(EventFilterTest, ValueThatIsThereAlreadyChangesNothing) {
    RecordingHandler handler;
    EventFilter filter;
    EXPECT_NO_THROW(filter.setProperty(lexicalHandler(), nullptr));
    EXPECT_NO_THROW(filter.setProperty(declarationHandler(), nullptr));
    filter.setProperty(lexicalHandler(), static_cast<LexicalHandler*>(&handler));
    EXPECT_NO_THROW(filter.setProperty(lexicalHandler(), static_cast<LexicalHandler*>(&handler)));
    EXPECT_EQ(&handler, lexicalOf(filter));
}

/// A filter that knows one property more, and answers nothing for the lexical handler.
class KnowsMore : public EventFilter {
public:
    void* getProperty(const XmlString& name) const override {
        if (name.compare(text(u"own")) == 0)
            return const_cast<KnowsMore*>(this);
        return name.compare(lexicalHandler()) == 0 ? nullptr : EventFilter::getProperty(name);
    }
};

TEST_F(EventFilterTest, PropertyOfASubclassIsNotSupported) {
    KnowsMore filter;
    EXPECT_EQ("own", messageOf<SaxNotSupportedException>([&] { filter.setProperty(text(u"own"), nullptr); }));
    EXPECT_NO_THROW(filter.setProperty(text(u"own"), &filter)); // equals what the override answers
}

TEST_F(EventFilterTest, OverrideDecidesWhetherAValueIsThereAlready) {
    KnowsMore filter;
    RecordingHandler handler;
    filter.setProperty(lexicalHandler(), static_cast<LexicalHandler*>(&handler));
    filter.setProperty(lexicalHandler(), nullptr); // the override says that it is null already
    EXPECT_EQ(static_cast<LexicalHandler*>(&handler), filter.EventFilter::getProperty(lexicalHandler()));
}

TEST_F(EventFilterTest, ErrorHandlerIsKeptAndPassedOn) {
    RecordingHandler handler;
    FakeConsumer consumer;
    EventFilter filter(&consumer);
    filter.setErrorHandler(&handler);
    EXPECT_EQ(&handler, filter.getErrorHandler());
    EXPECT_EQ(&handler, consumer.error);
    filter.setErrorHandler(nullptr);
    EXPECT_EQ(nullptr, filter.getErrorHandler());
    EXPECT_EQ(nullptr, consumer.error);
}

TEST_F(EventFilterTest, ErrorHandlerGoesToTheConsumerOfTheMoment) {
    RecordingHandler handler;
    FakeConsumer first, second;
    EventFilter filter(&first);
    filter.setNext(&second);
    filter.setErrorHandler(&handler);
    EXPECT_EQ(nullptr, first.error);
    EXPECT_EQ(&handler, second.error);
    filter.setNext(nullptr);
    EXPECT_NO_THROW(filter.setErrorHandler(nullptr));
    EXPECT_EQ(&handler, second.error);
}

TEST_F(EventFilterTest, NewNextDoesNotChangeTheTargets) {
    RecordingHandler first, second;
    FakeConsumer consumer(first), other(second);
    EventFilter filter(&consumer);
    filter.setNext(&other);
    filter.startDocument();
    EXPECT_EQ(1u, first.eventCount());
    EXPECT_EQ(0u, second.eventCount());
}

// Events

template <class Handler>
class ForwardTest : public Testing::HostFixture, public testing::WithParamInterface<EventCase<Handler>> {
protected:
    void expectForwarded() {
        RecordingHandler handler;
        FakeConsumer consumer(handler);
        EventFilter filter(&consumer);
        this->GetParam().play(filter);
        EXPECT_EQ(this->GetParam().line, handler.text());
    }

    void expectDropped() {
        EventFilter filter;
        EXPECT_NO_THROW(this->GetParam().play(filter));
    }

    void expectExceptionPasses() {
        RecordingHandler handler;
        FakeConsumer consumer(handler);
        EventFilter filter(&consumer);
        handler.throwAt(1, [] { throw 42; });
        EXPECT_THROW(this->GetParam().play(filter), int);
    }
};

using ForwardContentTest = ForwardTest<ContentHandler>;
using ForwardDtdTest = ForwardTest<DTDHandler>;
using ForwardLexicalTest = ForwardTest<LexicalHandler>;
using ForwardDeclTest = ForwardTest<DeclHandler>;

TEST_P(ForwardContentTest, ReachesTheTarget) {
    expectForwarded();
}
TEST_P(ForwardContentTest, IsDroppedWithoutConsumer) {
    expectDropped();
}
TEST_P(ForwardContentTest, ExceptionPasses) {
    expectExceptionPasses();
}
TEST_P(ForwardDtdTest, ReachesTheTarget) {
    expectForwarded();
}
TEST_P(ForwardDtdTest, IsDroppedWithoutConsumer) {
    expectDropped();
}
TEST_P(ForwardDtdTest, ExceptionPasses) {
    expectExceptionPasses();
}
TEST_P(ForwardLexicalTest, ReachesTheTarget) {
    expectForwarded();
}
TEST_P(ForwardLexicalTest, IsDroppedWithoutConsumer) {
    expectDropped();
}
TEST_P(ForwardLexicalTest, ExceptionPasses) {
    expectExceptionPasses();
}
TEST_P(ForwardDeclTest, ReachesTheTarget) {
    expectForwarded();
}
TEST_P(ForwardDeclTest, IsDroppedWithoutConsumer) {
    expectDropped();
}
TEST_P(ForwardDeclTest, ExceptionPasses) {
    expectExceptionPasses();
}

INSTANTIATE_TEST_SUITE_P(Table, ForwardContentTest, testing::ValuesIn(kContentEvents),
                         nameOfCase<ContentHandler>);
INSTANTIATE_TEST_SUITE_P(Table, ForwardDtdTest, testing::ValuesIn(kDtdEvents), nameOfCase<DTDHandler>);
INSTANTIATE_TEST_SUITE_P(Table, ForwardLexicalTest, testing::ValuesIn(kLexicalEvents),
                         nameOfCase<LexicalHandler>);
INSTANTIATE_TEST_SUITE_P(Table, ForwardDeclTest, testing::ValuesIn(kDeclEvents), nameOfCase<DeclHandler>);

TEST_F(EventFilterTest, EachTargetGetsItsEventsAlone) {
    RecordingHandler content, dtd, lexical, decl;
    FakeConsumer consumer;
    consumer.content = &content;
    consumer.dtd = &dtd;
    consumer.lexical = &lexical;
    consumer.decl = &decl;
    EventFilter filter(&consumer);
    for (const auto& event : kContentEvents)
        event.play(filter);
    for (const auto& event : kDtdEvents)
        event.play(filter);
    for (const auto& event : kLexicalEvents)
        event.play(filter);
    for (const auto& event : kDeclEvents)
        event.play(filter);
    EXPECT_EQ(12u, content.eventCount()); // the locator comes twice
    EXPECT_EQ(2u, dtd.eventCount());
    EXPECT_EQ(7u, lexical.eventCount());
    EXPECT_EQ(4u, decl.eventCount());
}

TEST_F(EventFilterTest, LocatorIsStoredBeforeItIsForwarded) {
    LocatorImpl locator;
    EventFilter alone;
    alone.setDocumentLocator(&locator);
    EXPECT_EQ(&locator, alone.getDocumentLocator());
    RecordingHandler handler;
    FakeConsumer consumer(handler);
    EventFilter filter(&consumer);
    handler.throwAt(1, [] { throw 1; });
    EXPECT_THROW(filter.setDocumentLocator(&locator), int);
    EXPECT_EQ(&locator, filter.getDocumentLocator());
    EXPECT_EQ(&locator, handler.locator());
}

// Chaining

TEST_F(EventFilterTest, ChainToIsInert) {
    RecordingHandler handler;
    FakeConsumer consumer(handler);
    EventFilter filter(&consumer);
    FakeReader reader;
    XmlFilterImpl other(&reader);
    filter.chainTo(&other);
    EXPECT_EQ(&consumer, filter.getNext());
    EXPECT_EQ(&handler, filter.getContentHandler());
    EXPECT_EQ(nullptr, other.getContentHandler());
    EXPECT_EQ(nullptr, other.getDTDHandler());
    EXPECT_EQ(nullptr, other.getErrorHandler());
    EXPECT_EQ(&reader, other.getParent());
    EXPECT_EQ(Lines(), reader.calls());
}

TEST_F(EventFilterTest, ChainToNullIsRefused) {
    EventFilter filter;
    EXPECT_THROW(filter.chainTo(nullptr), NullPointerException);
}

// Binding

const char* const kPrefixesOn = "setFeature(\"http://xml.org/sax/features/namespace-prefixes\", true)";
const char* const kDeclSet = "setProperty(\"http://xml.org/sax/properties/declaration-handler\", set)";
const char* const kDeclNull = "setProperty(\"http://xml.org/sax/properties/declaration-handler\", null)";
const char* const kLexicalSet = "setProperty(\"http://xml.org/sax/properties/lexical-handler\", set)";
const char* const kLexicalNull = "setProperty(\"http://xml.org/sax/properties/lexical-handler\", null)";

TEST_F(EventFilterTest, BindWiresAReaderToAConsumerInOrder) {
    RecordingHandler handler, errors;
    FakeConsumer consumer(handler);
    FakeReader reader;
    reader.setErrorHandler(&errors);
    reader.clearCalls();
    EventFilter::bind(&reader, &consumer);
    EXPECT_EQ((Lines{kPrefixesOn, "setContentHandler(set)", "setDTDHandler(set)", kDeclSet, kLexicalSet}),
              reader.calls());
    EXPECT_EQ(&handler, reader.getContentHandler());
    EXPECT_EQ(&handler, reader.getDTDHandler());
    EXPECT_EQ(&handler, reader.declHandler());
    EXPECT_EQ(&handler, reader.lexicalHandler());
    EXPECT_EQ(&errors, consumer.error);
    EXPECT_EQ("setErrorHandler", consumer.questions.back());
    EXPECT_EQ(&errors, reader.getErrorHandler());
}

/// Adds what is asked of it to the questions of a consumer.
class QuestionedReader : public FakeReader {
public:
    explicit QuestionedReader(const FakeConsumer& consumer) : questions_(&consumer.questions) {}

    void setFeature(const XmlString& name, bool value) override {
        questions_->push_back("reader: setFeature");
        FakeReader::setFeature(name, value);
    }
    void setContentHandler(ContentHandler* handler) override {
        questions_->push_back("reader: setContentHandler");
        FakeReader::setContentHandler(handler);
    }
    void setDTDHandler(DTDHandler* handler) override {
        questions_->push_back("reader: setDTDHandler");
        FakeReader::setDTDHandler(handler);
    }
    void setProperty(const XmlString& name, void* value) override {
        questions_->push_back("reader: setProperty " + show(name));
        FakeReader::setProperty(name, value);
    }
    ErrorHandler* getErrorHandler() const override {
        questions_->push_back("reader: getErrorHandler");
        return FakeReader::getErrorHandler();
    }

private:
    Lines* questions_;
};

TEST_F(EventFilterTest, BindHandsEachAnswerOnBeforeTheNextQuestion) {
    RecordingHandler handler;
    FakeConsumer consumer(handler);
    QuestionedReader reader(consumer);
    EventFilter::bind(&reader, &consumer);
    EXPECT_EQ(
        (Lines{"reader: setFeature", "getContentHandler", "reader: setContentHandler", "getDTDHandler",
               "reader: setDTDHandler", std::string("getProperty ") + kDeclaration,
               std::string("reader: setProperty ") + kDeclaration, std::string("getProperty ") + kLexical,
               std::string("reader: setProperty ") + kLexical, "reader: getErrorHandler", "setErrorHandler"}),
        consumer.questions);
}

TEST_F(EventFilterTest, BindLeavesTheReadersHandlersWhereTheConsumerHasNone) {
    RecordingHandler own;
    FakeConsumer consumer;
    FakeReader reader;
    reader.setContentHandler(&own);
    reader.setDTDHandler(&own);
    reader.clearCalls();
    EventFilter::bind(&reader, &consumer);
    EXPECT_EQ((Lines{kPrefixesOn, kDeclNull, kLexicalNull}), reader.calls());
    EXPECT_EQ(&own, reader.getContentHandler());
    EXPECT_EQ(&own, reader.getDTDHandler());
}

TEST_F(EventFilterTest, BindPassesAMissingErrorHandlerOn) {
    RecordingHandler errors;
    FakeConsumer consumer;
    consumer.error = &errors;
    FakeReader reader;
    EventFilter::bind(&reader, &consumer);
    EXPECT_EQ(nullptr, consumer.error);
}

TEST_F(EventFilterTest, BindToNothingTakesTheExtraHandlersAway) {
    RecordingHandler own;
    FakeReader reader;
    reader.setContentHandler(&own);
    reader.clearCalls();
    EventFilter::bind(&reader, nullptr);
    EXPECT_EQ((Lines{kPrefixesOn, kDeclNull, kLexicalNull}), reader.calls());
    EXPECT_EQ(&own, reader.getContentHandler());
}

TEST_F(EventFilterTest, BindNeedsAReader) {
    FakeConsumer consumer;
    EXPECT_THROW(EventFilter::bind(nullptr, &consumer), NullPointerException);
    EXPECT_THROW(EventFilter::bind(nullptr, nullptr), NullPointerException);
    EXPECT_EQ(Lines(), consumer.questions);
}

TEST_F(EventFilterTest, BindPassesOnWhatTheReaderThrows) {
    const XmlString names[] = {SC_Features_NamespacePrefixes(), declarationHandler(), lexicalHandler()};
    const std::size_t callsUntilThen[] = {1, 4, 5};
    for (int i = 0; i < 3; ++i) {
        RecordingHandler handler;
        FakeConsumer consumer(handler);
        FakeReader reader;
        reader.refuse(names[i]);
        EXPECT_EQ(show(names[i]),
                  messageOf<SaxNotRecognizedException>([&] { EventFilter::bind(&reader, &consumer); }));
        EXPECT_EQ(callsUntilThen[i], reader.calls().size());
        EXPECT_NE("setErrorHandler", consumer.questions.empty() ? "" : consumer.questions.back());
    }
}

TEST_F(EventFilterTest, BindPassesOnWhatTheConsumerThrows) {
    FakeConsumer consumer;
    consumer.refused = lexicalHandler();
    FakeReader reader;
    EXPECT_THROW(EventFilter::bind(&reader, &consumer), SaxNotRecognizedException);
}

/// Sees every element, and passes it on in capitals.
class Capitals : public EventFilter {
public:
    using EventFilter::EventFilter;
    void startElement(const XmlString& uri, const XmlString& localName, const XmlString&,
                      const Attributes& attributes) override {
        EventFilter::startElement(uri, localName, text(u"E"), attributes);
    }
    void startCDATA() override {}
};

TEST_F(EventFilterTest, FilterThatHandsOutItselfSeesTheEventsOfABoundReader) {
    RecordingHandler handler;
    FakeConsumer consumer(handler);
    Capitals filter(&consumer);
    filter.setContentHandler(&filter);
    filter.setProperty(lexicalHandler(), static_cast<LexicalHandler*>(&filter));
    FakeReader reader;
    reader.startElement(u"", u"e", u"e").startCDATA().characters(u"x").endCDATA().endElement(u"", u"e", u"e");
    EventFilter::bind(&reader, &filter);
    reader.parse(text(u"doc.xml"));
    EXPECT_EQ((Lines{"startElement(\"\", \"e\", \"E\", [])", "characters(\"x\")", "endCDATA()",
                     "endElement(\"\", \"e\", \"e\")"}),
              handler.lines());
}

TEST_F(EventFilterTest, FilterThatHandsOutItsConsumersHandlersSeesNothing) {
    RecordingHandler handler;
    FakeConsumer consumer(handler);
    Capitals filter(&consumer);
    FakeReader reader;
    reader.startElement(u"", u"e", u"e");
    EventFilter::bind(&reader, &filter);
    reader.parse(text(u"doc.xml"));
    EXPECT_EQ((Lines{"startElement(\"\", \"e\", \"e\", [])"}), handler.lines());
}

TEST_F(EventFilterTest, StagesMayGoInAnyOrder) {
    auto handler = std::make_unique<RecordingHandler>();
    auto consumer = std::make_unique<FakeConsumer>(*handler);
    auto reader = std::make_unique<FakeReader>();
    auto filter = std::make_unique<EventFilter>(consumer.get());
    EventFilter::bind(reader.get(), filter.get());
    handler.reset();
    consumer.reset();
    filter.reset();
    reader.reset();
}

} // namespace
} // namespace Quillon::Xml::Sax
