#include "xml/sax/writer/XmlWriter.h"

#include "WriterFixture.h"
#include "xml/IllegalArgumentException.h"
#include "xml/ImmutableObjectWriteError.h"
#include "xml/sax/SaxException.h"
#include "xml/sax/SaxNotSupportedException.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <functional>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;
using Testing::units;

constexpr XmlWriter::EscapeContext kContexts[] = {XmlWriter::EntityValue, XmlWriter::AttributeValue,
                                                  XmlWriter::CharacterData, XmlWriter::UnescapedText};

class XmlWriterTest : public WriterFixture {};

static_assert(XmlWriter::EntityValue == 0 && XmlWriter::AttributeValue == 1 && XmlWriter::CharacterData == 2
              && XmlWriter::UnescapedText == 3);
static_assert(!std::is_copy_constructible_v<XmlWriter> && !std::is_copy_assignable_v<XmlWriter>);

// Construction and settings

TEST_F(XmlWriterTest, NewWriterIsUtf8) {
    EXPECT_STREQ("UTF-8", writer.getEncoding());
}

TEST_F(XmlWriterTest, NewWriterHasEveryFlagOff) {
    EXPECT_FALSE(writer.isCanonical());
    EXPECT_FALSE(writer.inCDATA());
    EXPECT_FALSE(writer.inEpilogue());
    EXPECT_FALSE(writer.inDoctype());
    EXPECT_FALSE(writer.startedDoctype());
    EXPECT_FALSE(writer.expandingEntities());
}

TEST_F(XmlWriterTest, ConstructionWritesNothing) {
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, DefaultWriterWritesToStandardOutput) {
    std::streambuf* const old = std::cout.rdbuf(&sink);
    {
        XmlWriter toStandardOutput;
        toStandardOutput.rawWrite(text(u"out"));
    }
    std::cout.rdbuf(old);
    EXPECT_EQ("out", written());
}

TEST_F(XmlWriterTest, DestructionNeitherFlushesNorCloses) {
    struct CountingSink : FixedSink {
        int sync() override { return ++syncs, 0; }
        int syncs = 0;
    } counting;
    std::ostream stream(&counting);
    {
        XmlWriter other(stream);
        other.rawWrite(text(u"x"));
    }
    EXPECT_EQ(0, counting.syncs);
    EXPECT_TRUE(stream.good());
    stream << 'y';
    EXPECT_EQ("xy", counting.written());
}

TEST_F(XmlWriterTest, EachFlagIsReadAsItWasSet) {
    using Setter = void (XmlWriter::*)(bool);
    using Getter = bool (XmlWriter::*)() const;
    const std::pair<Setter, Getter> flags[] = {
        {&XmlWriter::inCDATA, &XmlWriter::inCDATA},
        {&XmlWriter::inEpilogue, &XmlWriter::inEpilogue},
        {&XmlWriter::inDoctype, &XmlWriter::inDoctype},
        {&XmlWriter::startedDoctype, &XmlWriter::startedDoctype},
        {&XmlWriter::expandingEntities, &XmlWriter::expandingEntities}};
    for (const auto& [set, ignored] : flags) {
        (writer.*set)(true);
        for (const auto& [otherSet, get] : flags)
            EXPECT_EQ(otherSet == set, (writer.*get)());
        EXPECT_FALSE(writer.isCanonical());
        (writer.*set)(false);
        for (const auto& [otherSet, get] : flags)
            EXPECT_FALSE((writer.*get)());
    }
}

TEST_F(XmlWriterTest, CanonicalSwitchesExpandingEntitiesOn) {
    writer.setCanonical(true);
    EXPECT_TRUE(writer.isCanonical());
    EXPECT_TRUE(writer.expandingEntities());
}

TEST_F(XmlWriterTest, CanonicalOffKeepsExpandingEntities) {
    writer.setCanonical(true);
    writer.setCanonical(false);
    EXPECT_FALSE(writer.isCanonical());
    EXPECT_TRUE(writer.expandingEntities());
}

TEST_F(XmlWriterTest, CanonicalKeepsTheEncoding) {
    writer.setEncoding("ISO-8859-1");
    writer.setCanonical(true);
    EXPECT_STREQ("ISO-8859-1", writer.getEncoding());
    EXPECT_EQ("\xE9&;", escaped(u"\u00E9\u0100", XmlWriter::CharacterData));
}

TEST_F(XmlWriterTest, SettingTheErrorHandlerWritesNothing) {
    writer.setErrorHandler(nullptr);
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, EncodingNameIsKeptByPointer) {
    char name[] = "UTF-8";
    writer.setEncoding(name);
    EXPECT_EQ(name, writer.getEncoding());
    std::strcpy(name, "UTF-x"); // the text is not copied
    EXPECT_STREQ("UTF-x", writer.getEncoding());
}

// Encodings

struct EncodingCase {
    const char* name;
    const char* encoding;
    const char16_t* text;
    const char* bytes;
};

class XmlWriterEncodingTest : public WriterFixture, public testing::WithParamInterface<EncodingCase> {};

TEST_P(XmlWriterEncodingTest, CharacterDataBecomesBytes) {
    writer.setEncoding(GetParam().encoding);
    EXPECT_EQ(GetParam().bytes, escaped(GetParam().text, XmlWriter::CharacterData));
}

const EncodingCase kEncodingCases[] = {
    {"Utf8OneByte", "UTF-8", u"\u007F", "\x7F"},
    {"Utf8TwoBytes", "UTF-8", u"\u0080\u00E9\u07FF", "\xC2\x80\xC3\xA9\xDF\xBF"},
    {"Utf8ThreeBytes", "UTF-8", u"\u0800\u20AC\uFFFD", "\xE0\xA0\x80\xE2\x82\xAC\xEF\xBF\xBD"},
    {"Utf8FourBytes", "UTF-8", u"\U00010000\U0001F600\U0010FFFF",
     "\xF0\x90\x80\x80\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"},
    {"UsAsciiLast", "US-ASCII", u"\u007F", "\x7F"},
    {"UsAsciiFirstUnwritable", "US-ASCII", u"\u0080", "&;"},
    {"UsAsciiAcute", "US-ASCII", u"\u00E9", "&;"},
    {"UsAsciiLastUnwritable", "US-ASCII", u"\uFFFD", "&;"},
    {"UsAsciiPair", "US-ASCII", u"\U0001F600", "&;&;"},
    {"Iso88591Last", "ISO-8859-1", u"\u007F\u0080\u00E9\u00FF", "\x7F\x80\xE9\xFF"},
    {"Iso88591FirstUnwritable", "ISO-8859-1", u"\u0100", "&;"},
    {"Iso88591Euro", "ISO-8859-1", u"\u20AC", "&;"},
    {"Iso88591Pair", "ISO-8859-1", u"\U0001F600", "&;&;"},
    {"NameIsCaseSensitive", "us-ascii", u"a", "a"},
};

INSTANTIATE_TEST_SUITE_P(Table, XmlWriterEncodingTest, testing::ValuesIn(kEncodingCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(XmlWriterTest, EncodingCanBeChangedBack) {
    writer.setEncoding("US-ASCII");
    EXPECT_EQ("&;", escaped(u"\u00E9", XmlWriter::CharacterData));
    writer.setEncoding("UTF-8");
    EXPECT_EQ("\xC3\xA9", escaped(u"\u00E9", XmlWriter::CharacterData));
}

TEST_F(XmlWriterTest, UnknownEncodingKeepsWhatIsWritable) {
    writer.setEncoding("ISO-8859-1");
    writer.setEncoding("windows-1252"); // which has the euro sign
    EXPECT_EQ("\xE9&;", escaped(u"\u00E9\u20AC", XmlWriter::CharacterData));
    EXPECT_STREQ("windows-1252", writer.getEncoding());
}

TEST_F(XmlWriterTest, EncodingNamesInAnotherCaseChangeNoMask) {
    writer.setEncoding("US-ASCII");
    writer.setEncoding("utf-8");
    EXPECT_EQ("&;", escaped(u"\u00E9", XmlWriter::CharacterData));
}

TEST_F(XmlWriterTest, NullEncodingIsUtf8WithoutDeclaration) {
    writer.setEncoding(nullptr);
    EXPECT_EQ(nullptr, writer.getEncoding());
    writer.startDocument();
    EXPECT_EQ("", written());
    EXPECT_EQ("\xC3\xA9", escaped(u"\u00E9", XmlWriter::CharacterData));
}

TEST_F(XmlWriterTest, NullEncodingKeepsWhatIsWritable) {
    writer.setEncoding("ISO-8859-1");
    writer.setEncoding(nullptr);
    EXPECT_EQ("\xC3\xA9&;", escaped(u"\u00E9\u20AC", XmlWriter::CharacterData));
}

TEST_F(XmlWriterTest, Utf16IsCutAtTheFirstZeroByte) {
    writer.setEncoding("UTF-16LE");
    rawWrite(u"ab");
    EXPECT_EQ("a", written());
    rawWrite(u"\u4E2Da");
    EXPECT_EQ("\x2D\x4E"
              "a",
              written());
}

TEST_F(XmlWriterTest, Utf16KeepsThePreviousMask) {
    writer.setEncoding("US-ASCII");
    writer.setEncoding("UTF-16LE");
    EXPECT_EQ("&;", escaped(u"\u00E9", XmlWriter::CharacterData)); // each unit cut after its first byte
    writer.startDocument(); // what is left out follows the mask, not the name
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, Utf16DeclarationDoesNotComeOutWhole) {
    writer.setEncoding("UTF-16LE");
    writer.startDocument();
    EXPECT_EQ("<U\"?\n", written()); // the first byte of each of the five fragments
}

TEST_F(XmlWriterTest, EncodingThatNothingConvertsToIsNotSupported) {
    writer.setEncoding("X-No-Such");
    try {
        rawWrite(u"a");
        FAIL() << "nothing was thrown";
    } catch (const SaxNotSupportedException& e) {
        EXPECT_EQ("Encoding: X-No-Such", show(e.getMessage()));
    }
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, EncodingThatNothingConvertsToEndsAnEventWithSaxException) {
    writer.setEncoding("X-No-Such");
    try {
        writer.startDocument();
        FAIL() << "nothing was thrown";
    } catch (const SaxException& e) {
        EXPECT_NE(nullptr, dynamic_cast<const SaxNotSupportedException*>(&e));
        EXPECT_EQ("Encoding: X-No-Such", show(e.getMessage()));
    }
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, WriterGoesOnInAKnownEncodingAfterAnUnknownOne) {
    writer.setEncoding("X-No-Such");
    EXPECT_THROW(rawWrite(u"a"), SaxNotSupportedException);
    writer.setEncoding("UTF-8");
    rawWrite(u"a");
    EXPECT_EQ("a", written());
}

// Documents

TEST_F(XmlWriterTest, DocumentStartsWithADeclaration) {
    writer.startDocument();
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", written());
}

TEST_F(XmlWriterTest, DeclarationNamesTheEncoding) {
    writer.setEncoding("ISO-8859-1");
    writer.startDocument();
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n", written());
}

TEST_F(XmlWriterTest, DeclarationNamesAnEncodingOutsideTheTable) {
    writer.setEncoding("windows-1252");
    writer.startDocument();
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"windows-1252\"?>\n", written());
}

TEST_F(XmlWriterTest, UsAsciiDocumentHasNoDeclaration) {
    writer.setEncoding("US-ASCII");
    writer.startDocument();
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, CanonicalDocumentHasNoDeclaration) {
    writer.setCanonical(true);
    writer.startDocument();
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, DocumentEndsWithTwoLineFeeds) {
    writer.endDocument();
    EXPECT_EQ("\n\n", written());
}

TEST_F(XmlWriterTest, CanonicalDocumentEndsWithNothing) {
    writer.setCanonical(true);
    writer.endDocument();
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, StartDocumentResetsNoFlag) {
    writer.inCDATA(true);
    writer.inEpilogue(true);
    writer.inDoctype(true);
    writer.startedDoctype(true);
    writer.expandingEntities(true);
    writer.startDocument();
    EXPECT_TRUE(writer.inCDATA());
    EXPECT_TRUE(writer.inEpilogue());
    EXPECT_TRUE(writer.inDoctype());
    EXPECT_TRUE(writer.startedDoctype());
    EXPECT_TRUE(writer.expandingEntities());
    EXPECT_FALSE(writer.isCanonical());
}

TEST_F(XmlWriterTest, WholeDocument) {
    writer.startDocument();
    startElement(u"catalog", attributesOf({{u"id", u"7"}}));
    characters(u"a < b");
    startElement(u"part");
    endElement(u"part");
    endElement(u"catalog");
    writer.endDocument();
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
              "<catalog id=\"7\">a &lt; b<part></part></catalog>\n\n",
              written());
}

TEST_F(XmlWriterTest, OneWriterWritesManyDocuments) {
    for (int i = 0; i < 3; ++i) {
        writer.startDocument();
        startElement(u"a");
        endElement(u"a");
        writer.endDocument();
        EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a></a>\n\n", written());
    }
}

TEST_F(XmlWriterTest, WritersOnDifferentThreadsAreIndependent) {
    const auto writeManyDocuments = [](std::string& result) {
        for (int i = 0; i < 100; ++i) {
            FixedSink ownSink;
            std::ostream ownOut(&ownSink);
            XmlWriter own(ownOut);
            own.startDocument();
            own.startElement(XmlString(), XmlString(), text(u"e"), attributesOf({{u"a", u"<"}}));
            own.endElement(XmlString(), XmlString(), text(u"e"));
            result = ownSink.written();
        }
    };
    std::string results[4];
    std::vector<std::thread> threads;
    for (std::string& result : results)
        threads.emplace_back(writeManyDocuments, std::ref(result));
    for (std::thread& thread : threads)
        thread.join();
    for (const std::string& result : results)
        EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<e a=\"&lt;\"></e>", result);
}

TEST_F(XmlWriterTest, NestingIsNotChecked) {
    endElement(u"b");
    startElement(u"a");
    startElement(u"a");
    EXPECT_EQ("</b><a><a>", written());
}

TEST_F(XmlWriterTest, WriterNeverSetsInEpilogue) {
    writer.startDocument();
    startElement(u"a");
    endElement(u"a");
    EXPECT_FALSE(writer.inEpilogue());
    writer.endDocument();
    EXPECT_FALSE(writer.inEpilogue());
}

// Elements

TEST_F(XmlWriterTest, ElementWithoutContentIsTwoTags) {
    startElement(u"e");
    endElement(u"e");
    EXPECT_EQ("<e></e>", written());
}

TEST_F(XmlWriterTest, OnlyTheQualifiedNameIsWritten) {
    writer.startElement(text(u"urn:n"), text(u"local"), text(u"p:name"), AttributesImpl());
    writer.endElement(text(u"urn:n"), text(u"local"), text(u"p:name"));
    EXPECT_EQ("<p:name></p:name>", written());
}

TEST_F(XmlWriterTest, NullElementNameWritesNoName) {
    writer.startElement(XmlString(), XmlString(), XmlString(), AttributesImpl());
    writer.endElement(XmlString(), XmlString(), XmlString());
    EXPECT_EQ("<></>", written());
}

TEST_F(XmlWriterTest, NamesAreWrittenAsTheyStand) {
    startElement(u"a<&\"'>\nb");
    endElement(u"a<&>");
    EXPECT_EQ("<a<&\"'>\nb></a<&>>", written());
}

TEST_F(XmlWriterTest, NamesAreNotCheckedAgainstTheEncoding) {
    writer.setEncoding("US-ASCII");
    startElement(u"\u00E9");
    EXPECT_EQ("<?>", written());
}

TEST_F(XmlWriterTest, AttributesStandInOrderAfterOneSpaceEach) {
    startElement(u"e", attributesOf({{u"b", u"2"}, {u"a", u"1"}, {u"p:c", u"3"}}));
    EXPECT_EQ("<e b=\"2\" a=\"1\" p:c=\"3\">", written());
}

TEST_F(XmlWriterTest, AttributeWithEmptyOrNullValueIsEmpty) {
    startElement(u"e", attributesOf({{u"a", u""}, {u"b", nullptr}}));
    EXPECT_EQ("<e a=\"\" b=\"\">", written());
}

TEST_F(XmlWriterTest, AttributeValuesAreEscaped) {
    startElement(u"e", attributesOf({{u"a", u"<\u00E9\n>"}}));
    EXPECT_EQ("<e a=\"&lt;\xC3\xA9\n&gt;\">", written());
}

TEST_F(XmlWriterTest, LengthIsAskedForBeforeEachAttribute) {
    struct Shrinking : ForeignAttributes {
        unsigned int getLength() const override { return ++calls, calls < 3 ? 5U : 2U; }
        mutable int calls = 0;
    } shrinking;
    writer.writeStartTag(text(u"e"), shrinking);
    EXPECT_EQ("<e a=\"v\" a=\"v\">", written());
    EXPECT_EQ(3, shrinking.calls);
}

TEST_F(XmlWriterTest, ListMayGrowWhileItIsWritten) {
    struct Growing : ForeignAttributes {
        unsigned int getLength() const override { return calls < 3 ? ++calls : 3U; }
        mutable unsigned int calls = 0;
    } growing;
    writer.writeStartTag(text(u"e"), growing);
    EXPECT_EQ("<e a=\"v\" a=\"v\" a=\"v\">", written());
}

TEST_F(XmlWriterTest, ClassDerivedFromTheLibrarysListIsAsked) {
    struct Renaming : AttributesImpl {
        XmlString getQName(unsigned int) const override { return text(u"renamed"); }
        XmlString getValue(unsigned int) const override { return text(u"a&b"); }
    } renaming;
    renaming.addAttribute(text(u""), text(u"x"), text(u"x"), text(u"CDATA"), text(u"1"));
    writer.writeStartTag(text(u"e"), renaming);
    EXPECT_EQ("<e renamed=\"a&amp;b\">", written());
}

/// What lies behind the place of a stream may be a text that is written over: it is not scratch room.
TEST_F(XmlWriterTest, WhatLiesBehindThePlaceOfTheStreamStays) {
    const std::string old(6000, '#');
    for (const std::size_t length : {1, 3, 4, 8, 20, 32, 33, 100, 4096, 4097}) {
        std::stringstream stream(old);
        XmlWriter over(stream);
        over.writeStartTag(text(u"a"), AttributesImpl());
        std::u16string units(length, u'x');
        units.back() = 1;
        const XmlString bad = text(units);
        EXPECT_THROW(over.escapeChars(bad.data(), 0, bad.size(), XmlWriter::CharacterData),
                     IllegalCharacterException);
        EXPECT_EQ("<a>" + old.substr(3), stream.str());
        units.back() = u'<';
        const XmlString good = text(units);
        over.characters(good.data(), 0, good.size());
        const std::string now = "<a>" + std::string(length - 1, 'x') + "&lt;";
        EXPECT_EQ(now + old.substr(now.size()), stream.str());
    }
}

TEST_F(XmlWriterTest, StartElementEndsTheDoctype) {
    writer.startedDoctype(true);
    startElement(u"e");
    EXPECT_FALSE(writer.startedDoctype());
}

TEST_F(XmlWriterTest, WriteStartTagChangesNoState) {
    writer.startedDoctype(true);
    writer.writeStartTag(text(u"e"), attributesOf({{u"a", u"1"}}));
    EXPECT_EQ("<e a=\"1\">", written());
    EXPECT_TRUE(writer.startedDoctype());
}

/// The message of the IllegalArgumentException that writing a tag with these attributes ends with.
std::string illegalArgumentIn(XmlWriter& writer, const Attributes& attributes) {
    try {
        writer.writeStartTag(text(u"e"), attributes);
    } catch (const IllegalArgumentException& e) {
        return dynamic_cast<const System::UserException&>(e).getMessage();
    }
    return "nothing was thrown";
}

TEST_F(XmlWriterTest, AttributeWithoutANameIsRefused) {
    EXPECT_EQ("Illegal argument provided: no XML name.",
              illegalArgumentIn(writer, attributesOf({{u"a", u"1"}, {nullptr, u"2"}})));
    EXPECT_EQ("<e a=\"1\"", written());
}

TEST_F(XmlWriterTest, AttributeWithAnEmptyNameIsRefused) {
    EXPECT_EQ("Illegal argument provided: no XML name.",
              illegalArgumentIn(writer, attributesOf({{u"a", u"1"}, {u"b", u"2"}, {u"", u"3"}})));
    EXPECT_EQ("<e a=\"1\" b=\"2\"", written());
}

TEST_F(XmlWriterTest, PrefixMappingsWriteNothing) {
    writer.startPrefixMapping(text(u"p"), text(u"urn:n"));
    writer.endPrefixMapping(text(u"p"));
    writer.startPrefixMapping(XmlString(), XmlString());
    writer.endPrefixMapping(XmlString());
    EXPECT_EQ("", written());
}

// Text

TEST_F(XmlWriterTest, CharactersEscapeMarkupButNoQuotes) {
    characters(u"a<b & 'c' \"d\"");
    EXPECT_EQ("a&lt;b &amp; 'c' \"d\"", written());
}

TEST_F(XmlWriterTest, CharactersStartAtTheIndex) {
    const auto run = units(u"01<345");
    writer.characters(run.data(), 2, 3);
    EXPECT_EQ("&lt;34", written());
}

TEST_F(XmlWriterTest, CharactersInCDataAreNotEscaped) {
    writer.inCDATA(true);
    characters(u"a<b&c>'\"");
    EXPECT_EQ("a<b&c>'\"", written());
}

TEST_F(XmlWriterTest, CharactersOfLengthZeroWriteNothing) {
    const auto run = units(u"abc");
    writer.characters(run.data(), 1, 0);
    writer.characters(nullptr, 0, 0);
    writer.characters(nullptr, 7, 0);
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, IgnorableWhitespaceIsEscapedAlsoInCData) {
    ignorableWhitespace(u" \n\t<");
    writer.inCDATA(true);
    ignorableWhitespace(u" \n\t<");
    EXPECT_EQ(" \n\t&lt; \n\t&lt;", written());
}

TEST_F(XmlWriterTest, IgnorableWhitespaceStartsAtTheIndex) {
    const auto run = units(u"a \nb");
    writer.ignorableWhitespace(run.data(), 1, 2);
    EXPECT_EQ(" \n", written());
}

TEST_F(XmlWriterTest, MissingArrayEndsTheEventWithSaxException) {
    try {
        writer.characters(nullptr, 0, 1);
        FAIL() << "nothing was thrown";
    } catch (const SaxException& e) {
        EXPECT_EQ("characters expected at a null pointer", show(e.getMessage()));
    }
    EXPECT_THROW(writer.ignorableWhitespace(nullptr, 1, 1), SaxException);
    EXPECT_EQ("", written());
}

// The output primitives

TEST_F(XmlWriterTest, RawWriteEscapesNothing) {
    rawWrite(u"<a b='\"&\r\n\f>");
    EXPECT_EQ("<a b='\"&\r\n\f>", written());
}

TEST_F(XmlWriterTest, RawWriteStartsAtTheIndex) {
    const auto run = units(u"0123456");
    writer.rawWrite(run.data(), 2, 3);
    EXPECT_EQ("234", written());
}

TEST_F(XmlWriterTest, RawWriteStopsAtAZeroUnit) {
    const unsigned short run[] = {'a', 0, 'b'};
    writer.rawWrite(run, 0, 3);
    EXPECT_EQ("a", written());
    writer.rawWrite(XmlString(0, units(u"xy").data(), 5)); // two units and three zero ones
    EXPECT_EQ("xy", written());
}

TEST_F(XmlWriterTest, RawWriteOfAStringWritesAllOfIt) {
    writer.rawWrite(text(u"\u00E9\u20AC"));
    EXPECT_EQ("\xC3\xA9\xE2\x82\xAC", written());
}

TEST_F(XmlWriterTest, RawWriteOfAViewStopsAtItsSize) {
    const auto run = units(u"abcdef");
    writer.rawWrite(XmlString(Immutable | Borrowed, run.data(), 3));
    EXPECT_EQ("abc", written());
}

TEST_F(XmlWriterTest, RawWriteOfANullStringWritesNothing) {
    writer.rawWrite(XmlString());
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, RawWriteOfADroppedStringWritesNothing) {
    XmlString dropped = text(u"abc");
    dropped.dissociate();
    ASSERT_EQ(3U, dropped.size());
    writer.rawWrite(dropped);
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, RawWriteOfOneUnit) {
    writer.rawWrite(static_cast<unsigned short>(u'<'));
    writer.rawWrite(static_cast<unsigned short>(0x20AC));
    EXPECT_EQ("<\xE2\x82\xAC", written());
}

TEST_F(XmlWriterTest, RawWriteOfLengthZeroNeedsNoArray) {
    writer.rawWrite(nullptr, 0, 0);
    writer.rawWrite(nullptr, 5, 0);
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, RawWriteOfAMissingArrayIsRefused) {
    EXPECT_THROW(writer.rawWrite(nullptr, 0, 1), SaxException);
    EXPECT_THROW(writer.rawWrite(nullptr, 0xFFFFFFFF, 0xFFFFFFFF), SaxException);
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, SurrogatePairInOneRunIsOneCharacter) {
    rawWrite(u"a\U0001F600b");
    EXPECT_EQ("a\xF0\x9F\x98\x80"
              "b",
              written());
    EXPECT_EQ("<\xF0\x9F\x98\x80>", escaped(u"<\U0001F600>", XmlWriter::UnescapedText));
}

TEST_F(XmlWriterTest, HalvesInSeparateCallsAreReplaced) {
    writer.rawWrite(static_cast<unsigned short>(0xD83D));
    writer.rawWrite(static_cast<unsigned short>(0xDE00));
    EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD", written());
    const unsigned short pair[] = {0xD83D, 0xDE00};
    writer.characters(pair, 0, 1);
    writer.characters(pair, 1, 1);
    EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD", written());
}

TEST_F(XmlWriterTest, LoneSurrogatesPassUncheckedAndAreReplaced) {
    const unsigned short run[] = {'a', 0xDC00, 'b', 0xD800, 'c', 0xD800};
    for (XmlWriter::EscapeContext context : kContexts) {
        writer.escapeChars(run, 0, 6, context);
        EXPECT_EQ("a\xEF\xBF\xBD"
                  "b\xEF\xBF\xBD"
                  "c\xEF\xBF\xBD",
                  written());
    }
}

TEST_F(XmlWriterTest, EndOfLineIsAnImmutableLineFeed) {
    for (bool canonical : {false, true}) {
        writer.setCanonical(canonical);
        XmlString eol = writer.eol();
        EXPECT_EQ("\n", show(eol));
        EXPECT_EQ(1U, eol.size());
        EXPECT_EQ(u'\0', eol.data()[1]);
        EXPECT_THROW(eol += text(u"x"), ImmutableObjectWriteError);
    }
}

TEST_F(XmlWriterTest, EndOfLineIsOneStringPerMode) {
    const unsigned short* const ordinary = writer.eol().data();
    EXPECT_EQ(ordinary, writer.eol().data());
    writer.setCanonical(true);
    EXPECT_NE(ordinary, writer.eol().data());
}

TEST_F(XmlWriterTest, NewLineWritesALineFeed) {
    writer.newLine();
    writer.setCanonical(true);
    writer.newLine();
    EXPECT_EQ("\n\n", written());
}

TEST_F(XmlWriterTest, QuotedValueStandsBetweenQuotationMarks) {
    writer.writeQuotedValue(text(u"a<b & 'c' \"d\""), XmlWriter::AttributeValue);
    EXPECT_EQ("\"a&lt;b &amp; &apos;c&apos; &quot;d&quot;\"", written());
}

TEST_F(XmlWriterTest, CanonicalQuotedValueKeepsApostrophes) {
    writer.setCanonical(true);
    writer.writeQuotedValue(text(u"a<b & 'c' \"d\""), XmlWriter::AttributeValue);
    EXPECT_EQ("\"a&lt;b &amp; 'c' &quot;d&quot;\"", written());
}

TEST_F(XmlWriterTest, QuotedEntityValueKeepsMarkup) {
    writer.writeQuotedValue(text(u"a<b & \"d\""), XmlWriter::EntityValue);
    EXPECT_EQ("\"a<b & &quot;d&quot;\"", written());
}

TEST_F(XmlWriterTest, QuotedValueIsEscapedForItsContext) {
    writer.writeQuotedValue(text(u"<\"'"), XmlWriter::CharacterData);
    writer.writeQuotedValue(text(u"<\"'"), XmlWriter::UnescapedText);
    EXPECT_EQ("\"&lt;\"'\"\"<\"'\"", written());
}

TEST_F(XmlWriterTest, QuotedNullEmptyAndDroppedValuesAreEmpty) {
    XmlString dropped = text(u"abc");
    dropped.dissociate();
    for (const XmlString& value : {XmlString(), text(u""), dropped}) {
        writer.writeQuotedValue(value, XmlWriter::AttributeValue);
        EXPECT_EQ("\"\"", written());
    }
}

TEST_F(XmlWriterTest, QuotedValueLeavesItsStartWhenACharacterIsRefused) {
    EXPECT_THROW(writer.writeQuotedValue(text(u"a&b\u0001"), XmlWriter::AttributeValue),
                 IllegalCharacterException);
    EXPECT_EQ("\"a&amp;", written());
}

// Escaping

struct EscapeCase {
    const char* name;
    const char16_t* text;
    const char* written[4]; ///< by context
    const char* canonical;  ///< in entity and attribute values of canonical mode; null: as ever
};

class XmlWriterEscapeTest : public WriterFixture, public testing::WithParamInterface<EscapeCase> {};

TEST_P(XmlWriterEscapeTest, DependsOnTheContext) {
    for (XmlWriter::EscapeContext context : kContexts)
        EXPECT_EQ(GetParam().written[context], escaped(GetParam().text, context)) << "context " << context;
}

TEST_P(XmlWriterEscapeTest, DependsOnCanonicalMode) {
    writer.setCanonical(true);
    for (XmlWriter::EscapeContext context : kContexts) {
        const bool quotes = context == XmlWriter::EntityValue || context == XmlWriter::AttributeValue;
        const char* expected =
            quotes && GetParam().canonical ? GetParam().canonical : GetParam().written[context];
        EXPECT_EQ(expected, escaped(GetParam().text, context)) << "context " << context;
    }
}

const EscapeCase kEscapeCases[] = {
    {"QuotationMark", u"a\"b", {"a&quot;b", "a&quot;b", "a\"b", "a\"b"}, nullptr},
    {"Ampersand", u"a&b", {"a&b", "a&amp;b", "a&amp;b", "a&b"}, nullptr},
    {"Apostrophe", u"a'b", {"a&apos;b", "a&apos;b", "a'b", "a'b"}, "a'b"},
    {"Less", u"a<b", {"a<b", "a&lt;b", "a&lt;b", "a<b"}, nullptr},
    {"Greater", u"a>b", {"a>b", "a&gt;b", "a&gt;b", "a>b"}, nullptr},
    {"LineFeed", u"a\nb", {"a\nb", "a\nb", "a\nb", "a\nb"}, nullptr},
    {"CarriageReturn", u"a\rb", {"a\rb", "a\rb", "a\rb", "a\rb"}, nullptr},
    {"Tab", u"a\tb", {"a\tb", "a\tb", "a\tb", "a\tb"}, nullptr},
    {"First", u"\"x", {"&quot;x", "&quot;x", "\"x", "\"x"}, nullptr},
    {"Last", u"x<", {"x<", "x&lt;", "x&lt;", "x<"}, nullptr},
    {"Only", u"&", {"&", "&amp;", "&amp;", "&"}, nullptr},
    {"Neighbours",
     u"<<\n\n&&",
     {"<<\n\n&&", "&lt;&lt;\n\n&amp;&amp;", "&lt;&lt;\n\n&amp;&amp;", "<<\n\n&&"},
     nullptr},
    {"Reference", u"&lt;", {"&lt;", "&amp;lt;", "&amp;lt;", "&lt;"}, nullptr},
    {"EndOfCData", u"]]>", {"]]>", "]]&gt;", "]]&gt;", "]]>"}, nullptr},
    {"TwoHyphens", u"--", {"--", "--", "--", "--"}, nullptr},
    {"Percent", u"%a;", {"%a;", "%a;", "%a;", "%a;"}, nullptr},
    {"Empty", u"", {"", "", "", ""}, nullptr},
};

INSTANTIATE_TEST_SUITE_P(Table, XmlWriterEscapeTest, testing::ValuesIn(kEscapeCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(XmlWriterTest, TabAndCarriageReturnStayInEveryContext) {
    for (XmlWriter::EscapeContext context : kContexts)
        EXPECT_EQ("\t\r\r\n", escaped(u"\t\r\r\n", context));
}

TEST_F(XmlWriterTest, EscapeCharsStartsAtTheIndex) {
    const auto run = units(u"&&a&b&&");
    writer.escapeChars(run.data(), 2, 3, XmlWriter::CharacterData);
    EXPECT_EQ("a&amp;b", written());
}

TEST_F(XmlWriterTest, EscapeCharsOfLengthZeroLooksAtNothing) {
    writer.escapeChars(nullptr, 0, 0, XmlWriter::CharacterData);
    writer.escapeChars(nullptr, 3, 0, static_cast<XmlWriter::EscapeContext>(77));
    writer.setEncoding("X-No-Such");
    writer.escapeChars(units(u"a").data(), 0, 0, XmlWriter::CharacterData);
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, EscapeCharsRefusesAMissingArray) {
    EXPECT_THROW(writer.escapeChars(nullptr, 0, 1, XmlWriter::CharacterData), SaxException);
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, EscapeCharsRefusesAnUnknownContext) {
    for (int context : {-1, 4, 77}) {
        try {
            escape(u"a", static_cast<XmlWriter::EscapeContext>(context));
            FAIL() << "nothing was thrown";
        } catch (const IllegalArgumentException& e) {
            EXPECT_EQ("Illegal argument provided: unknown escape context.",
                      dynamic_cast<const System::UserException&>(e).getMessage());
        }
    }
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterTest, LastLegalCharacterPasses) {
    for (XmlWriter::EscapeContext context : kContexts)
        EXPECT_EQ("\xEF\xBF\xBD\x7F", escaped(u"\uFFFD\u007F", context));
}

std::string illegalCharacterMessage(unsigned int c) {
    char message[64];
    std::snprintf(message, sizeof message, "Illegal or non-writable character: U+%04X.", c);
    return message;
}

TEST_F(XmlWriterTest, EveryOtherControlIsIllegalInEveryContext) {
    for (unsigned short c = 0; c < 0x20; ++c) {
        if (c == '\t' || c == '\n' || c == '\r')
            continue;
        const unsigned short run[] = {'a', c, 'b'};
        for (XmlWriter::EscapeContext context : kContexts) {
            EXPECT_EQ(illegalCharacterMessage(c),
                      illegalCharacterIn([&] { writer.escapeChars(run, 0, 3, context); }));
            EXPECT_EQ("", written());
        }
    }
}

TEST_F(XmlWriterTest, TheTwoLastUnitsAreIllegalInEveryContextAndEncoding) {
    for (const char* encoding : {"UTF-8", "US-ASCII", "ISO-8859-1"}) {
        writer.setEncoding(encoding);
        for (unsigned short c : {0xFFFE, 0xFFFF}) {
            for (XmlWriter::EscapeContext context : kContexts) {
                EXPECT_EQ(illegalCharacterMessage(c),
                          illegalCharacterIn([&] { writer.escapeChars(&c, 0, 1, context); }));
                EXPECT_EQ("", written());
            }
        }
    }
}

TEST_F(XmlWriterTest, UnwritableUnitsBecomeAmpersandSemicolon) {
    writer.setEncoding("US-ASCII");
    for (XmlWriter::EscapeContext context :
         {XmlWriter::EntityValue, XmlWriter::AttributeValue, XmlWriter::CharacterData}) {
        EXPECT_EQ("a&;b&;&;c&;&;", escaped(u"a\u00E9b\u20AC\u20ACc\U0001F600", context));
        EXPECT_EQ("&;", escaped(u"\u0080", context));
    }
}

TEST_F(XmlWriterTest, UnwritableUnitIsRefusedWhereNothingIsEscaped) {
    writer.setEncoding("US-ASCII");
    EXPECT_EQ(illegalCharacterMessage(0xE9),
              illegalCharacterIn([&] { escape(u"a\u00E9", XmlWriter::UnescapedText); }));
    EXPECT_EQ(illegalCharacterMessage(0xD83D),
              illegalCharacterIn([&] { escape(u"a\U0001F600", XmlWriter::UnescapedText); }));
    writer.setEncoding("ISO-8859-1");
    EXPECT_EQ(illegalCharacterMessage(0x100),
              illegalCharacterIn([&] { escape(u"\u00E9\u0100", XmlWriter::UnescapedText); }));
    EXPECT_EQ("", written());
}

struct LeftCase {
    const char* name;
    const char* encoding;
    XmlWriter::EscapeContext context;
    const char16_t* text;
    const char* left;
};

class XmlWriterLeftTest : public WriterFixture, public testing::WithParamInterface<LeftCase> {};

TEST_P(XmlWriterLeftTest, WhatCameBeforeTheLastReplacementIsLeft) {
    writer.setEncoding(GetParam().encoding);
    EXPECT_THROW(escape(GetParam().text, GetParam().context), IllegalCharacterException);
    EXPECT_EQ(GetParam().left, written());
}

const LeftCase kLeftCases[] = {
    {"NothingBefore", "UTF-8", XmlWriter::CharacterData, u"\u0001", ""},
    {"PlainRunBefore", "UTF-8", XmlWriter::CharacterData, u"abc\u0001", ""},
    {"AfterAReplacement", "UTF-8", XmlWriter::CharacterData, u"ab&cd\uFFFE", "ab&amp;"},
    {"RightAfterAReplacement", "UTF-8", XmlWriter::AttributeValue, u"ab\"\u000C", "ab&quot;"},
    {"AfterALineFeed", "UTF-8", XmlWriter::UnescapedText, u"ab\ncd\u0001ef\ngh", "ab\n"},
    {"AfterWhatStays", "UTF-8", XmlWriter::UnescapedText, u"a&b<c\u0001", ""},
    {"AfterAnUnwritableUnit", "US-ASCII", XmlWriter::CharacterData, u"a\u00E9b\u0001", "a&;"},
    {"UnwritableItself", "US-ASCII", XmlWriter::UnescapedText, u"a\nb\u00E9c", "a\n"},
    {"SecondOfTwo", "UTF-8", XmlWriter::EntityValue, u"'\n'x\u0001", "&apos;\n&apos;"},
};

INSTANTIATE_TEST_SUITE_P(Table, XmlWriterLeftTest, testing::ValuesIn(kLeftCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(XmlWriterTest, WriterGoesOnAfterAnIllegalCharacter) {
    EXPECT_THROW(escape(u"a<\u0001", XmlWriter::CharacterData), IllegalCharacterException);
    characters(u"b");
    EXPECT_EQ("a&lt;b", written());
}

/// What a unit becomes, spelled out rule by rule; null when it is refused.
const char* replacementOf(unsigned int c, XmlWriter::EscapeContext context, bool canonical,
                          unsigned int firstUnwritable) {
    static const std::string kept = "kept";
    const bool value = context == XmlWriter::EntityValue || context == XmlWriter::AttributeValue;
    const bool markup = context == XmlWriter::AttributeValue || context == XmlWriter::CharacterData;
    if (c == '"' && value)
        return "&quot;";
    if (c == '\'' && value && !canonical)
        return "&apos;";
    if (c == '&' && markup)
        return "&amp;";
    if (c == '<' && markup)
        return "&lt;";
    if (c == '>' && markup)
        return "&gt;";
    if (c == 0xFFFE || c == 0xFFFF || (c < 0x20 && c != 9 && c != 10 && c != 13))
        return nullptr;
    if (c >= firstUnwritable)
        return context == XmlWriter::UnescapedText ? nullptr : "&;";
    return kept.c_str();
}

TEST_F(XmlWriterTest, EveryUnitIsKeptReplacedOrRefusedByTheRules) {
    const std::pair<const char*, unsigned int> encodings[] = {
        {"UTF-8", 0x10000}, {"US-ASCII", 0x80}, {"ISO-8859-1", 0x100}};
    for (const auto& [encoding, firstUnwritable] : encodings) {
        writer.setEncoding(encoding);
        for (unsigned int c = 0; c < 0x10000; c += c < 0x200 || c >= 0xFFF0 ? 1 : c % 16 == 0 ? 15 : 1) {
            for (int mode = 0; mode < 8; ++mode) {
                const auto context = static_cast<XmlWriter::EscapeContext>(mode / 2);
                writer.setCanonical(mode % 2 != 0);
                const auto unit = static_cast<unsigned short>(c);
                const char* expected = replacementOf(c, context, writer.isCanonical(), firstUnwritable);
                if (expected == nullptr) {
                    EXPECT_EQ(illegalCharacterMessage(c),
                              illegalCharacterIn([&] { writer.escapeChars(&unit, 0, 1, context); }));
                    continue;
                }
                writer.escapeChars(&unit, 0, 1, context);
                const std::string escapedUnit = written();
                writer.rawWrite(unit);
                const std::string kept = written();
                ASSERT_EQ(expected == std::string("kept") ? kept : expected, escapedUnit)
                    << encoding << ", context " << context << ", U+" << std::hex << c;
            }
        }
    }
}

} // namespace
} // namespace Quillon::Xml::Sax
