// Fields, bases and virtual slots of the writer and the text consumer.
#include "xml/sax/writer/TextConsumer.h"
#include "xml/sax/writer/XmlWriter.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/DefaultHandler.h"
#include "xml/sax/LocatorImpl.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;
using Testing::units;

constexpr std::size_t kWord = sizeof(void*);
constexpr std::size_t kEncoding = 4 * kWord;
constexpr std::size_t kLocator = 5 * kWord;
constexpr std::size_t kErrorHandler = 6 * kWord;
constexpr std::size_t kEntityDepth = 7 * kWord;
constexpr std::size_t kUnwritableMask = kEntityDepth + 4;
constexpr std::size_t kCanonical = kEntityDepth + 6;
constexpr std::size_t kInCData = kCanonical + 1;
constexpr std::size_t kInEpilogue = kCanonical + 2;
constexpr std::size_t kInDoctype = kCanonical + 3;
constexpr std::size_t kStartedDoctype = kCanonical + 4;
constexpr std::size_t kExpandingEntities = kCanonical + 5;
constexpr std::size_t kOut = kWord == 4 ? 40 : 72;

static_assert(sizeof(XmlWriter) == (kWord == 4 ? 44 : 80));
static_assert(sizeof(TextConsumer) == sizeof(XmlWriter) + kWord);

template <class T, class Object>
T fieldAt(const Object& object, std::size_t offset) {
    T value;
    std::memcpy(&value, reinterpret_cast<const char*>(&object) + offset, sizeof value);
    return value;
}

template <class Part, class Whole>
std::ptrdiff_t offsetOf(const Whole& whole) {
    return reinterpret_cast<const char*>(static_cast<const Part*>(&whole))
           - reinterpret_cast<const char*>(&whole);
}

constexpr std::ptrdiff_t words(std::ptrdiff_t count) {
    return count * static_cast<std::ptrdiff_t>(kWord);
}

class NoBytes : public std::streambuf {
    int overflow(int c) override { return c; }
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
};

class WriterAbiTest : public Testing::HostFixture {
protected:
    /// The offsets of the bytes that `change` changes; the padding before the stream is no field.
    template <class Change>
    std::vector<std::size_t> changedBy(Change change) {
        unsigned char before[sizeof writer];
        std::memcpy(before, reinterpret_cast<const char*>(&writer), sizeof writer);
        change();
        std::vector<std::size_t> offsets;
        for (std::size_t i = 0; i < sizeof writer; ++i) {
            const bool isField = i <= kExpandingEntities || i >= kOut;
            if (isField && before[i] != fieldAt<unsigned char>(writer, i))
                offsets.push_back(i);
        }
        return offsets;
    }
    /// The flag at `offset` is one byte, 1 when it is on, and nothing else changes with it.
    void expectFlagAt(std::size_t offset, void (XmlWriter::*set)(bool)) {
        const std::vector<std::size_t> expected{offset};
        EXPECT_EQ(expected, changedBy([&] { (writer.*set)(true); }));
        EXPECT_EQ(1, fieldAt<unsigned char>(writer, offset));
        EXPECT_EQ(expected, changedBy([&] { (writer.*set)(false); }));
        EXPECT_EQ(0, fieldAt<unsigned char>(writer, offset));
    }
    Locator* locator() const { return fieldAt<Locator*>(writer, kLocator); }

    NoBytes nowhere;
    std::ostream out{&nowhere};
    XmlWriter writer{out};
};

TEST_F(WriterAbiTest, BasesStandInOrder) {
    EXPECT_EQ(0, offsetOf<ContentHandler>(writer));
    EXPECT_EQ(words(1), offsetOf<LexicalHandler>(writer));
    EXPECT_EQ(words(2), offsetOf<DTDHandler>(writer));
    EXPECT_EQ(words(3), offsetOf<DeclHandler>(writer));
}

TEST_F(WriterAbiTest, TextConsumerAddsOneBaseAndNoField) {
    const TextConsumer consumer(out);
    EXPECT_EQ(0, offsetOf<XmlWriter>(consumer));
    EXPECT_EQ(0, offsetOf<ContentHandler>(consumer));
    EXPECT_EQ(static_cast<std::ptrdiff_t>(sizeof(XmlWriter)), offsetOf<EventConsumer>(consumer));
}

TEST_F(WriterAbiTest, FieldsOfANewWriter) {
    EXPECT_STREQ("UTF-8", fieldAt<const char*>(writer, kEncoding));
    EXPECT_EQ(nullptr, locator());
    EXPECT_EQ(nullptr, fieldAt<ErrorHandler*>(writer, kErrorHandler));
    EXPECT_EQ(0, fieldAt<std::int32_t>(writer, kEntityDepth));
    EXPECT_EQ(0, fieldAt<std::uint16_t>(writer, kUnwritableMask));
    for (std::size_t flag = kCanonical; flag <= kExpandingEntities; ++flag)
        EXPECT_EQ(0, fieldAt<unsigned char>(writer, flag));
    EXPECT_EQ(&out, fieldAt<std::ostream*>(writer, kOut));
}

TEST_F(WriterAbiTest, DefaultWriterHoldsStandardOutput) {
    const XmlWriter other;
    EXPECT_EQ(&std::cout, fieldAt<std::ostream*>(other, kOut));
}

TEST_F(WriterAbiTest, EveryWriterStartsWithTheSameConstant) {
    const XmlWriter other;
    EXPECT_EQ(fieldAt<const char*>(writer, kEncoding), fieldAt<const char*>(other, kEncoding));
}

TEST_F(WriterAbiTest, FlagsAreBytesInOrder) {
    expectFlagAt(kInCData, &XmlWriter::inCDATA);
    expectFlagAt(kInEpilogue, &XmlWriter::inEpilogue);
    expectFlagAt(kInDoctype, &XmlWriter::inDoctype);
    expectFlagAt(kStartedDoctype, &XmlWriter::startedDoctype);
    expectFlagAt(kExpandingEntities, &XmlWriter::expandingEntities);
    writer.expandingEntities(true);
    expectFlagAt(kCanonical, &XmlWriter::setCanonical);
}

TEST_F(WriterAbiTest, CanonicalModeChangesTwoFlags) {
    EXPECT_EQ((std::vector<std::size_t>{kCanonical, kExpandingEntities}),
              changedBy([&] { writer.setCanonical(true); }));
}

TEST_F(WriterAbiTest, EncodingsSetTheMask) {
    static const char* const encodings[] = {"US-ASCII", "ISO-8859-1", "UTF-16", nullptr, "UTF-8"};
    const unsigned int masks[] = {0xFF80, 0xFF00, 0xFF00, 0xFF00, 0};
    for (int i = 0; i < 5; ++i) {
        writer.setEncoding(encodings[i]);
        EXPECT_EQ(encodings[i], fieldAt<const char*>(writer, kEncoding));
        EXPECT_EQ(masks[i], fieldAt<std::uint16_t>(writer, kUnwritableMask));
    }
}

TEST_F(WriterAbiTest, ErrorHandlerIsStored) {
    DefaultHandler handler;
    writer.setErrorHandler(&handler);
    EXPECT_EQ(static_cast<ErrorHandler*>(&handler), fieldAt<ErrorHandler*>(writer, kErrorHandler));
    TextConsumer consumer(out);
    consumer.setErrorHandler(&handler);
    EXPECT_EQ(static_cast<ErrorHandler*>(&handler), fieldAt<ErrorHandler*>(consumer, kErrorHandler));
    static_cast<EventConsumer&>(consumer).setErrorHandler(nullptr);
    EXPECT_EQ(nullptr, fieldAt<ErrorHandler*>(consumer, kErrorHandler));
}

TEST_F(WriterAbiTest, EndEntityLowersTheDepthAndStartDocumentResetsIt) {
    writer.startEntity(text(u"x"));
    EXPECT_EQ(0, fieldAt<std::int32_t>(writer, kEntityDepth));
    writer.endEntity(text(u"x"));
    writer.endEntity(text(u"x"));
    EXPECT_EQ(-2, fieldAt<std::int32_t>(writer, kEntityDepth));
    writer.expandingEntities(true);
    writer.endEntity(text(u"x"));
    EXPECT_EQ(-2, fieldAt<std::int32_t>(writer, kEntityDepth));
    writer.startDocument();
    EXPECT_EQ(0, fieldAt<std::int32_t>(writer, kEntityDepth));
}

// Locators

struct LocatorCase {
    const char* name;
    void (*event)(XmlWriter&);
    bool makesLocator;
};

class WriterLocatorTest : public WriterAbiTest, public testing::WithParamInterface<LocatorCase> {};

TEST_P(WriterLocatorTest, OwnLocatorIsMadeByTheEventsThatNeedOne) {
    GetParam().event(writer);
    EXPECT_EQ(GetParam().makesLocator, locator() != nullptr);
}

TEST_P(WriterLocatorTest, LocatorThatWasSetIsKept) {
    LocatorImpl set;
    writer.setDocumentLocator(&set);
    GetParam().event(writer);
    EXPECT_EQ(&set, locator());
}

const unsigned short kOneUnit[] = {u'a', 0};

const LocatorCase kLocatorCases[] = {
    {"StartDocument", [](XmlWriter& w) { w.startDocument(); }, true},
    {"StartElement",
     [](XmlWriter& w) { w.startElement(XmlString(), XmlString(), XmlString(), AttributesImpl()); }, true},
    {"Characters", [](XmlWriter& w) { w.characters(kOneUnit, 0, 1); }, true},
    {"NoCharacters", [](XmlWriter& w) { w.characters(kOneUnit, 0, 0); }, true},
    {"IgnorableWhitespace", [](XmlWriter& w) { w.ignorableWhitespace(kOneUnit, 0, 0); }, true},
    {"StartDTD", [](XmlWriter& w) { w.startDTD(XmlString(), XmlString(), XmlString()); }, true},
    {"Comment", [](XmlWriter& w) { w.comment(kOneUnit, 0, 1); }, true},
    {"CanonicalCommentInTheDoctype",
     [](XmlWriter& w) {
         w.setCanonical(true);
         w.inDoctype(true);
         w.comment(kOneUnit, 0, 1);
     },
     true},
    {"ProcessingInstruction", [](XmlWriter& w) { w.processingInstruction(XmlString(), XmlString()); }, true},
    {"StartCDATA", [](XmlWriter& w) { w.startCDATA(); }, true},
    {"CanonicalStartCDATA",
     [](XmlWriter& w) {
         w.setCanonical(true);
         w.startCDATA();
     },
     true},
    {"EndDocument", [](XmlWriter& w) { w.endDocument(); }, false},
    {"EndElement", [](XmlWriter& w) { w.endElement(XmlString(), XmlString(), XmlString()); }, false},
    {"StartPrefixMapping", [](XmlWriter& w) { w.startPrefixMapping(XmlString(), XmlString()); }, false},
    {"EndPrefixMapping", [](XmlWriter& w) { w.endPrefixMapping(XmlString()); }, false},
    {"SkippedEntity", [](XmlWriter& w) { w.skippedEntity(XmlString()); }, false},
    {"EndDTD", [](XmlWriter& w) { w.endDTD(); }, false},
    {"StartEntity", [](XmlWriter& w) { w.startEntity(XmlString()); }, false},
    {"EndEntity", [](XmlWriter& w) { w.endEntity(XmlString()); }, false},
    {"EndCDATA", [](XmlWriter& w) { w.endCDATA(); }, false},
    {"ElementDecl",
     [](XmlWriter& w) {
         w.startedDoctype(true);
         w.elementDecl(XmlString(), XmlString());
     },
     false},
    {"AttributeDecl",
     [](XmlWriter& w) {
         w.startedDoctype(true);
         w.attributeDecl(XmlString(), XmlString(), XmlString(), XmlString(), XmlString());
     },
     false},
    {"InternalEntityDecl",
     [](XmlWriter& w) {
         w.startedDoctype(true);
         w.internalEntityDecl(XmlString(), XmlString());
     },
     false},
    {"ExternalEntityDecl",
     [](XmlWriter& w) {
         w.startedDoctype(true);
         w.externalEntityDecl(XmlString(), XmlString(), XmlString());
     },
     false},
    {"UnparsedEntityDecl",
     [](XmlWriter& w) {
         w.startedDoctype(true);
         w.unparsedEntityDecl(XmlString(), XmlString(), XmlString(), XmlString());
     },
     false},
    {"NotationDecl",
     [](XmlWriter& w) {
         w.startedDoctype(true);
         w.notationDecl(XmlString(), XmlString(), XmlString());
     },
     false},
};

INSTANTIATE_TEST_SUITE_P(Table, WriterLocatorTest, testing::ValuesIn(kLocatorCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(WriterAbiTest, OwnLocatorIsAnEmptyLocatorImpl) {
    writer.startDocument();
    const auto* own = dynamic_cast<const LocatorImpl*>(locator());
    ASSERT_NE(nullptr, own);
    EXPECT_EQ("", show(own->getPublicId()));
    EXPECT_EQ("", show(own->getSystemId()));
    EXPECT_EQ(0, own->getLineNumber());
    EXPECT_EQ(0, own->getColumnNumber());
}

TEST_F(WriterAbiTest, OwnLocatorIsKeptAndShared) {
    writer.startDocument();
    Locator* const first = locator();
    writer.startDocument();
    EXPECT_EQ(first, locator());
    XmlWriter other(out);
    other.startCDATA();
    EXPECT_EQ(first, fieldAt<Locator*>(other, kLocator));
}

TEST_F(WriterAbiTest, OwnLocatorCostsNoMemoryInAnEvent) {
    writer.setCanonical(true); // the event itself writes nothing
    const std::size_t host = Testing::hostMemory().requests(), objects = Testing::newMemory().requests();
    writer.startDocument();
    EXPECT_NE(nullptr, locator());
    EXPECT_EQ(host, Testing::hostMemory().requests());
    EXPECT_EQ(objects, Testing::newMemory().requests());
}

TEST_F(WriterAbiTest, LocatorCanBeTakenAway) {
    LocatorImpl set;
    writer.setDocumentLocator(&set);
    EXPECT_EQ(&set, locator());
    writer.setDocumentLocator(nullptr);
    EXPECT_EQ(nullptr, locator());
}

// Virtual slots. The tables of one class follow one another: slots, then two words (the offset to the top and the
// type), then the slots of the next base.

/// Where the slots of the part at `offset` begin, in words.
template <class Object>
std::ptrdiff_t slotsOf(const Object& object, std::size_t offset) {
    return static_cast<std::ptrdiff_t>(fieldAt<std::uintptr_t>(object, offset) / kWord);
}

constexpr std::ptrdiff_t kHead = 2;
constexpr std::ptrdiff_t kDestructors = 2;
constexpr std::ptrdiff_t kContentSlots = 11;
constexpr std::ptrdiff_t kLexicalSlots = 7;
constexpr std::ptrdiff_t kDtdSlots = 2;
constexpr std::ptrdiff_t kDeclSlots = 4;
constexpr std::ptrdiff_t kWriterSlots = kDestructors + kContentSlots + kLexicalSlots + kDtdSlots + kDeclSlots;

TEST_F(WriterAbiTest, OnlyTheFourInterfacesAndTheDestructorAreVirtual) {
    const std::ptrdiff_t first = slotsOf(writer, 0);
    const std::ptrdiff_t second = slotsOf(writer, kWord);
    const std::ptrdiff_t third = slotsOf(writer, 2 * kWord);
    const std::ptrdiff_t fourth = slotsOf(writer, 3 * kWord);
    EXPECT_EQ(kWriterSlots + kHead, second - first);
    EXPECT_EQ(kDestructors + kLexicalSlots + kHead, third - second);
    EXPECT_EQ(kDestructors + kDtdSlots + kHead, fourth - third);
}

TEST_F(WriterAbiTest, TextConsumerAddsTheFourSlotsOfAConsumer) {
    const TextConsumer consumer(out);
    const std::ptrdiff_t first = slotsOf(consumer, 0);
    const std::ptrdiff_t second = slotsOf(consumer, kWord);
    const std::ptrdiff_t fourth = slotsOf(consumer, 3 * kWord);
    const std::ptrdiff_t fifth = slotsOf(consumer, sizeof(XmlWriter));
    EXPECT_EQ(kWriterSlots + 4 + kHead, second - first);
    EXPECT_EQ(kDestructors + kDeclSlots + kHead, fifth - fourth);
}

} // namespace
} // namespace Quillon::Xml::Sax
