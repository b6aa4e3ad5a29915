#include "xml/sax/RemoveNamespaceFilter.h"

#include "support/FakeReader.h"
#include "support/HostFixture.h"
#include "support/RecordingHandler.h"
#include "support/Text.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/EventTables.h"
#include "xml/sax/InputSource.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::FakeReader;
using Testing::RecordingHandler;
using Testing::text;

using Lines = std::vector<std::string>;

using RemoveNamespaceFilterTest = Testing::HostFixture;

/// The lines that are left of `reader`'s script when the namespace is removed.
Lines filtered(FakeReader& reader, const XmlString& uri) {
    RemoveNamespaceFilter filter(&reader, uri);
    RecordingHandler handler;
    filter.setContentHandler(&handler);
    filter.parse(text(u"doc.xml"));
    return handler.lines();
}

AttributesImpl mixedAttributes() {
    AttributesImpl attributes;
    attributes.addAttribute(text(u"urn:n"), text(u"first"), text(u"n:first"), text(u"ID"), text(u"1"));
    attributes.addAttribute(text(u""), text(u"a"), text(u"a"), text(u"CDATA"), text(u"2"));
    attributes.addAttribute(text(u"urn:n"), text(u"b"), text(u"n:b"), text(u"CDATA"), text(u"3"));
    attributes.addAttribute(text(u"urn:m"), text(u"c"), text(u"m:c"), text(u"NMTOKEN"), text(u"4"));
    return attributes;
}

TEST_F(RemoveNamespaceFilterTest, ParentIsKept) {
    FakeReader reader;
    EXPECT_EQ(&reader, RemoveNamespaceFilter(&reader, text(u"urn:n")).getParent());
    EXPECT_EQ(nullptr, RemoveNamespaceFilter(nullptr, text(u"urn:n")).getParent());
}

TEST_F(RemoveNamespaceFilterTest, ContentOfRemovedElementsStays) {
    FakeReader reader;
    reader.startElement(u"urn:n", u"root", u"n:root").startElement(u"urn:n", u"child", u"n:child");
    reader.characters(u"text").processingInstruction(u"t", u"d").startElement(u"", u"g", u"g");
    reader.endElement(u"", u"g", u"g").endElement(u"urn:n", u"child", u"n:child");
    reader.endElement(u"urn:n", u"root", u"n:root");
    EXPECT_EQ((Lines{"characters(\"text\")", "processingInstruction(\"t\", \"d\")",
                     "startElement(\"\", \"g\", \"g\", [])", "endElement(\"\", \"g\", \"g\")"}),
              filtered(reader, text(u"urn:n")));
}

TEST_F(RemoveNamespaceFilterTest, AttributesOfTheNamespaceGoTheOthersKeepTheirOrder) {
    FakeReader reader;
    reader.startElement(u"", u"e", u"e", mixedAttributes());
    EXPECT_EQ((Lines{"startElement(\"\", \"e\", \"e\", [(\"\", \"a\", \"a\", \"CDATA\", \"2\"), "
                     "(\"urn:m\", \"c\", \"m:c\", \"NMTOKEN\", \"4\")])"}),
              filtered(reader, text(u"urn:n")));
}

TEST_F(RemoveNamespaceFilterTest, PrefixMappingsStay) {
    FakeReader reader;
    reader.startPrefixMapping(u"n", u"urn:n").startElement(u"urn:n", u"e", u"n:e");
    reader.endElement(u"urn:n", u"e", u"n:e").endPrefixMapping(u"n");
    EXPECT_EQ((Lines{"startPrefixMapping(\"n\", \"urn:n\")", "endPrefixMapping(\"n\")"}),
              filtered(reader, text(u"urn:n")));
}

TEST_F(RemoveNamespaceFilterTest, NamesOfWhatStaysAreUnchanged) {
    FakeReader reader;
    reader.startElement(u"urn:m", u"e", u"n:e")
        .endElement(u"urn:m", u"e", u"n:e"); // the prefix does not count
    EXPECT_EQ((Lines{"startElement(\"urn:m\", \"e\", \"n:e\", [])", "endElement(\"urn:m\", \"e\", \"n:e\")"}),
              filtered(reader, text(u"urn:n")));
}

TEST_F(RemoveNamespaceFilterTest, UriIsComparedAsAWhole) {
    FakeReader reader;
    for (const char16_t* uri : {u"urn:", u"urn:n", u"urn:nn", u"URN:N"})
        reader.startElement(uri, u"e", u"e");
    EXPECT_EQ(3u, filtered(reader, text(u"urn:n")).size());
}

TEST_F(RemoveNamespaceFilterTest, EmptyUriRemovesWhatIsInNoNamespace) {
    FakeReader reader;
    reader.startElement(u"", u"gone", u"gone").startElement(u"urn:m", u"e", u"m:e", mixedAttributes());
    reader.endElement(u"", u"gone", u"gone");
    EXPECT_EQ(
        (Lines{"startElement(\"urn:m\", \"e\", \"m:e\", [(\"urn:n\", \"first\", \"n:first\", \"ID\", \"1\"), "
               "(\"urn:n\", \"b\", \"n:b\", \"CDATA\", \"3\"), "
               "(\"urn:m\", \"c\", \"m:c\", \"NMTOKEN\", \"4\")])"}),
        filtered(reader, text(u"")));
}

TEST_F(RemoveNamespaceFilterTest, WithoutNamespaceNothingElseIsRemoved) {
    FakeReader reader;
    reader.startElement(u"", u"e", u"e").endElement(u"", u"e", u"e");
    EXPECT_EQ(2u, filtered(reader, text(u"urn:n")).size());
}

TEST_F(RemoveNamespaceFilterTest, NullAndEmptyUriAreDifferent) {
    FakeReader reader;
    reader.startElement(nullptr, u"e", u"e").startElement(u"", u"e", u"e");
    EXPECT_EQ((Lines{"startElement(null, \"e\", \"e\", [])"}), filtered(reader, text(u"")));
    EXPECT_EQ((Lines{"startElement(\"\", \"e\", \"e\", [])"}), filtered(reader, XmlString()));
}

TEST_F(RemoveNamespaceFilterTest, UriIsCopied) {
    FakeReader reader;
    reader.startElement(u"urn:n", u"e", u"e");
    XmlString uri = text(u"urn:n");
    RemoveNamespaceFilter filter(&reader, uri);
    uri = text(u"urn:other");
    RecordingHandler handler;
    filter.setContentHandler(&handler);
    filter.parse(text(u"doc.xml"));
    EXPECT_EQ(Lines(), handler.lines());
}

/// A list that keeps what it is asked, and can lose its last entry while it is being copied.
class AskedList : public AttributesImpl {
public:
    using AttributesImpl::getType;
    using AttributesImpl::getValue;
    unsigned int getLength() const override {
        questions.push_back("getLength");
        return AttributesImpl::getLength();
    }
    XmlString getURI(unsigned int i) const override { return asked("getURI", i), AttributesImpl::getURI(i); }
    XmlString getLocalName(unsigned int i) const override {
        return asked("getLocalName", i), AttributesImpl::getLocalName(i);
    }
    XmlString getQName(unsigned int i) const override {
        return asked("getQName", i), AttributesImpl::getQName(i);
    }
    XmlString getType(unsigned int i) const override {
        return asked("getType", i), AttributesImpl::getType(i);
    }
    XmlString getValue(unsigned int i) const override {
        asked("getValue", i);
        const XmlString value = AttributesImpl::getValue(i);
        if (shrinks)
            const_cast<AskedList*>(this)->removeAttribute(AttributesImpl::getLength() - 1);
        return value;
    }

    mutable Lines questions;
    bool shrinks = false;

private:
    void asked(const std::string& question, unsigned int i) const {
        questions.push_back(question + ' ' + std::to_string(i));
    }
};

void addTwo(AskedList& list) {
    list.addAttribute(text(u"urn:n"), text(u"a"), text(u"n:a"), text(u"ID"), text(u"1"));
    list.addAttribute(text(u""), text(u"b"), text(u"b"), text(u"ID"), text(u"2"));
}

TEST_F(RemoveNamespaceFilterTest, AttributesAreAskedInOrder) {
    AskedList list;
    addTwo(list);
    RemoveNamespaceFilter filter(nullptr, text(u"urn:n"));
    filter.startElement(text(u""), text(u"e"), text(u"e"), list);
    EXPECT_EQ((Lines{"getLength", "getURI 0", "getLength", "getURI 1", "getValue 1", "getType 1",
                     "getQName 1", "getLocalName 1", "getLength"}),
              list.questions);
}

TEST_F(RemoveNamespaceFilterTest, AttributesOfARemovedElementAreNotAsked) {
    AskedList list;
    addTwo(list);
    RemoveNamespaceFilter filter(nullptr, text(u"urn:n"));
    filter.startElement(text(u"urn:n"), text(u"e"), text(u"n:e"), list);
    EXPECT_EQ(Lines(), list.questions);
}

TEST_F(RemoveNamespaceFilterTest, LengthIsReadAgainAtEachStep) {
    AskedList list;
    for (int i = 0; i < 2; ++i)
        addTwo(list);
    list.shrinks = true;
    RecordingHandler handler;
    RemoveNamespaceFilter filter(nullptr, text(u"urn:x"));
    filter.setContentHandler(&handler);
    filter.startElement(text(u""), text(u"e"), text(u"e"), list); // four, then three, then two
    EXPECT_EQ((Lines{"startElement(\"\", \"e\", \"e\", [(\"urn:n\", \"a\", \"n:a\", \"ID\", \"1\"), "
                     "(\"\", \"b\", \"b\", \"ID\", \"2\")])"}),
              handler.lines());
}

TEST_F(RemoveNamespaceFilterTest, EveryOtherEventPasses) {
    RecordingHandler handler;
    RemoveNamespaceFilter filter(nullptr, text(u"urn:n"));
    filter.setContentHandler(&handler);
    filter.setDTDHandler(&handler);
    filter.setErrorHandler(&handler);
    std::string expected;
    for (const auto& event : kContentEvents)
        event.play(filter), expected += event.line;
    for (const auto& event : kDtdEvents)
        event.play(filter), expected += event.line;
    for (const auto& event : kErrorEvents)
        event.play(filter), expected += event.line;
    EXPECT_EQ(expected, handler.text());
}

TEST_F(RemoveNamespaceFilterTest, EntitiesAreResolvedByItsResolver) {
    FakeReader reader;
    reader.resolveEntity(u"pub", u"sys");
    RemoveNamespaceFilter filter(&reader, text(u"urn:n"));
    filter.parse(text(u"doc.xml"));
    EXPECT_EQ(0, reader.resolvedCount()); // there is no resolver yet
    RecordingHandler handler;
    handler.resolveWith(
        [](const XmlString&, const XmlString& systemId) { return new InputSource(systemId); });
    filter.setEntityResolver(&handler);
    filter.parse(text(u"doc.xml"));
    EXPECT_EQ(1, reader.resolvedCount());
    EXPECT_EQ((Lines{"resolveEntity(\"pub\", \"sys\")"}), handler.lines());
}

/// Keeps where the list of the last element stood.
class ListSpotter : public RecordingHandler {
public:
    void startElement(const XmlString&, const XmlString&, const XmlString&,
                      const Attributes& attributes) override {
        list = &attributes;
        length = attributes.getLength();
    }
    const Attributes* list = nullptr;
    unsigned int length = 0;
};

TEST_F(RemoveNamespaceFilterTest, HandlerGetsAListOfTheFiltersOwn) {
    const AttributesImpl attributes = mixedAttributes();
    const Attributes* const callers = &attributes;
    ListSpotter handler;
    for (const char16_t* uri : {u"urn:n", u"urn:of-nothing"}) {
        RemoveNamespaceFilter filter(nullptr, text(uri));
        filter.setContentHandler(&handler);
        filter.startElement(text(u""), text(u"e"), text(u"e"), attributes);
        EXPECT_NE(nullptr, handler.list);
        EXPECT_NE(callers, handler.list);
    }
    EXPECT_EQ(4u, handler.length) << "nothing was removed, and yet the list is a copy";
    EXPECT_EQ(4u, attributes.getLength());
}

TEST_F(RemoveNamespaceFilterTest, WithoutHandlerNothingHappens) {
    RemoveNamespaceFilter filter(nullptr, text(u"urn:n"));
    EXPECT_NO_THROW(filter.startElement(text(u""), text(u"e"), text(u"e"), mixedAttributes()));
    EXPECT_NO_THROW(filter.endElement(text(u""), text(u"e"), text(u"e")));
}

TEST_F(RemoveNamespaceFilterTest, ExceptionOfTheHandlerPassesAndNothingIsLeftBehind) {
    RecordingHandler handler;
    RemoveNamespaceFilter filter(nullptr, text(u"urn:n"));
    filter.setContentHandler(&handler);
    const AttributesImpl attributes = mixedAttributes();
    const std::ptrdiff_t blocks = Testing::hostMemory().liveBlocks();
    handler.throwAt(1, [] { throw 42; });
    EXPECT_THROW(filter.startElement(XmlString(), XmlString(), XmlString(), attributes), int);
    handler.throwAt(1, [] { throw 42; });
    EXPECT_THROW(filter.endElement(XmlString(), XmlString(), XmlString()), int);
    EXPECT_EQ(blocks, Testing::hostMemory().liveBlocks());
}

TEST_F(RemoveNamespaceFilterTest, WithoutMemoryTheElementIsNotDelivered) {
    RecordingHandler handler;
    RemoveNamespaceFilter filter(nullptr, text(u"urn:n"));
    filter.setContentHandler(&handler);
    AttributesImpl attributes;
    for (int i = 0; i < 3; ++i)
        for (int j = 0; j < 2; ++j)
            attributes.addAttribute(text(u""), text(u"a"), text(u"a"), text(u"CDATA"), text(u"1"));
    const XmlString name = text(u"e");
    Testing::everyAllocationFails([&] { filter.startElement(name, name, name, attributes); },
                                  [&] { EXPECT_EQ(0u, handler.eventCount()); });
    EXPECT_EQ(1u, handler.eventCount());
}

} // namespace
} // namespace Quillon::Xml::Sax
