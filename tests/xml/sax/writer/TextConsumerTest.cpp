#include "xml/sax/writer/TextConsumer.h"

#include "WriterFixture.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/EventFilter.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxNotRecognizedException.h"
#include "xml/sax/XmlReader.h"

#include <gtest/gtest.h>

#include <string>

namespace Quillon::Xml::Sax {
namespace {

using Testing::everyAllocationFails;
using Testing::show;
using Testing::text;
using Testing::units;

class TextConsumerTest : public Testing::HostFixture {
protected:
    std::string written() {
        std::string result = sink.written();
        sink.clear();
        return result;
    }

    FixedSink sink;
    std::ostream out{&sink};
    TextConsumer consumer{out};
};

/// Delivers one document with an event of every kind to whoever is registered.
class OneDocumentReader : public XmlReader {
public:
    void setFeature(const XmlString& name, bool value) override {
        if (name.compare(SC_Features_NamespacePrefixes()) == 0)
            namespacePrefixes = value;
    }
    bool getFeature(const XmlString&) const override { return namespacePrefixes; }
    void setProperty(const XmlString& name, void* value) override {
        if (name.compare(SC_Properties_LexicalHandler()) == 0)
            lexical = static_cast<LexicalHandler*>(value);
        else
            decl = static_cast<DeclHandler*>(value);
    }
    void* getProperty(const XmlString&) const override { return nullptr; }
    void setEntityResolver(EntityResolver*) override {}
    EntityResolver* getEntityResolver() const override { return nullptr; }
    void setDTDHandler(DTDHandler* handler) override { dtd = handler; }
    DTDHandler* getDTDHandler() const override { return dtd; }
    void setContentHandler(ContentHandler* handler) override { content = handler; }
    ContentHandler* getContentHandler() const override { return content; }
    void setErrorHandler(ErrorHandler*) override {}
    ErrorHandler* getErrorHandler() const override { return nullptr; }
    void parse(InputSource&) override { deliver(*content, *lexical, *dtd, *decl); }
    void parse(const XmlString&) override { deliver(*content, *lexical, *dtd, *decl); }

    static void deliver(ContentHandler& content, LexicalHandler& lexical, DTDHandler& dtd,
                        DeclHandler& decl) {
        const auto run = units(u"a<b");
        content.startDocument();
        lexical.startDTD(text(u"doc"), XmlString(), text(u"s"));
        dtd.notationDecl(text(u"n"), XmlString(), text(u"s"));
        dtd.unparsedEntityDecl(text(u"u"), XmlString(), text(u"s"), text(u"n"));
        decl.elementDecl(text(u"doc"), text(u"ANY"));
        decl.attributeDecl(text(u"doc"), text(u"a"), text(u"CDATA"), XmlString(), text(u"v"));
        decl.internalEntityDecl(text(u"i"), text(u"v"));
        decl.externalEntityDecl(text(u"x"), XmlString(), text(u"s"));
        lexical.endDTD();
        content.startElement(XmlString(), XmlString(), text(u"doc"), attributesOf({{u"a", u"1"}}));
        content.characters(run.data(), 0, 3);
        lexical.startCDATA();
        content.characters(run.data(), 0, 3);
        lexical.endCDATA();
        lexical.comment(run.data(), 0, 3);
        content.processingInstruction(text(u"pi"), text(u"d"));
        content.skippedEntity(text(u"x"));
        content.endElement(XmlString(), XmlString(), text(u"doc"));
        content.endDocument();
    }

    bool namespacePrefixes = false;
    ContentHandler* content = nullptr;
    LexicalHandler* lexical = nullptr;
    DTDHandler* dtd = nullptr;
    DeclHandler* decl = nullptr;
};

constexpr const char* kWritten = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                 "<!DOCTYPE doc SYSTEM \"s\" [\n"
                                 "<!NOTATION n SYSTEM \"s\">\n"
                                 "<!ENTITY u SYSTEM \"s\" NDATA n>\n"
                                 "<!ELEMENT doc ANY>\n"
                                 "<!ATTLIST doc a CDATA \"v\">\n"
                                 "<!ENTITY i \"v\">\n"
                                 "<!ENTITY x SYSTEM \"s\">\n"
                                 "]>\n"
                                 "<doc a=\"1\">a&lt;b<![CDATA[a<b]]><!--a<b--><?pi d?>&x;</doc>\n\n";

TEST_F(TextConsumerTest, IsAWriterOnTheStream) {
    consumer.rawWrite(text(u"x"));
    EXPECT_EQ("x", written());
    EXPECT_STREQ("UTF-8", consumer.getEncoding());
}

TEST_F(TextConsumerTest, ContentHandlerIsItself) {
    EXPECT_EQ(static_cast<ContentHandler*>(&consumer), consumer.getContentHandler());
}

TEST_F(TextConsumerTest, DtdHandlerIsItself) {
    EXPECT_EQ(static_cast<DTDHandler*>(&consumer), consumer.getDTDHandler());
}

TEST_F(TextConsumerTest, LexicalHandlerIsTheConvertedPart) {
    EXPECT_EQ(static_cast<LexicalHandler*>(&consumer),
              static_cast<LexicalHandler*>(consumer.getProperty(SC_Properties_LexicalHandler())));
}

TEST_F(TextConsumerTest, DeclarationHandlerIsTheConvertedPart) {
    EXPECT_EQ(static_cast<DeclHandler*>(&consumer),
              static_cast<DeclHandler*>(consumer.getProperty(SC_Properties_DeclarationHandler())));
}

TEST_F(TextConsumerTest, HandlersThatItHandsOutWriteEveryEvent) {
    OneDocumentReader::deliver(
        *consumer.getContentHandler(),
        *static_cast<LexicalHandler*>(consumer.getProperty(SC_Properties_LexicalHandler())),
        *consumer.getDTDHandler(),
        *static_cast<DeclHandler*>(consumer.getProperty(SC_Properties_DeclarationHandler())));
    EXPECT_EQ(kWritten, written());
}

TEST_F(TextConsumerTest, EventFilterWritesEveryEventThroughIt) {
    EventFilter filter(&consumer);
    OneDocumentReader::deliver(filter, filter, filter, filter);
    EXPECT_EQ(kWritten, written());
}

TEST_F(TextConsumerTest, ChainOfEventFiltersWritesEveryEventThroughIt) {
    EventFilter inner(&consumer);
    EventFilter outer(&inner);
    OneDocumentReader::deliver(outer, outer, outer, outer);
    EXPECT_EQ(kWritten, written());
}

TEST_F(TextConsumerTest, BoundReaderWritesEveryEventThroughIt) {
    OneDocumentReader reader;
    EventFilter::bind(&reader, &consumer);
    EXPECT_TRUE(reader.namespacePrefixes);
    reader.parse(XmlString());
    EXPECT_EQ(kWritten, written());
}

TEST_F(TextConsumerTest, ReaderBoundToAFilterWritesEveryEventThroughIt) {
    OneDocumentReader reader;
    EventFilter filter(&consumer);
    EventFilter::bind(&reader, &filter);
    reader.parse(XmlString());
    EXPECT_EQ(kWritten, written());
}

std::string refusal(const TextConsumer& consumer, const XmlString& name) {
    try {
        consumer.getProperty(name);
    } catch (const SaxNotRecognizedException& e) {
        return show(e.getMessage());
    }
    return "nothing was thrown";
}

TEST_F(TextConsumerTest, OtherPropertiesAreNotRecognized) {
    EXPECT_EQ("Property: http://xml.org/sax/properties/dom-node", refusal(consumer, SC_Properties_DomNode()));
    EXPECT_EQ("Property: lexical-handler", refusal(consumer, text(u"lexical-handler")));
}

TEST_F(TextConsumerTest, NullAndEmptyPropertiesAreNotRecognized) {
    EXPECT_EQ("Property: ", refusal(consumer, XmlString()));
    EXPECT_EQ("Property: ", refusal(consumer, text(u"")));
    XmlString dropped = text(u"abc");
    dropped.dissociate();
    EXPECT_EQ("Property: ", refusal(consumer, dropped));
}

TEST_F(TextConsumerTest, PropertyWhoseStringIsNotValidIsNamedNevertheless) {
    XmlString name = text(u"name");
    name += text(u""); // leaves Valid clear
    EXPECT_EQ("Property: name", refusal(consumer, name));
}

TEST_F(TextConsumerTest, RefusalOfAPropertyMayRunOutOfMemory) {
    const XmlString name = text(u"name");
    everyAllocationFails([&] {
        try {
            consumer.getProperty(name);
        } catch (const SaxNotRecognizedException&) {
        }
    });
}

TEST_F(TextConsumerTest, ErrorHandlerIsTakenFromTheConsumerSide) {
    static_cast<EventConsumer&>(consumer).setErrorHandler(nullptr);
    consumer.setErrorHandler(nullptr);
    EXPECT_EQ("", written());
}

TEST_F(TextConsumerTest, IsDestroyedThroughEachOfItsBases) {
    delete static_cast<EventConsumer*>(new TextConsumer(out));
    delete static_cast<ContentHandler*>(new TextConsumer(out));
    delete static_cast<LexicalHandler*>(new TextConsumer(out));
    delete static_cast<DTDHandler*>(new TextConsumer(out));
    delete static_cast<DeclHandler*>(new TextConsumer(out));
    delete static_cast<XmlWriter*>(new TextConsumer(out));
}

} // namespace
} // namespace Quillon::Xml::Sax
