#include "xml/sax/XmlFilterFormat.h"

#include "support/FakeReader.h"
#include "support/HostFixture.h"
#include "support/RecordingHandler.h"
#include "support/Text.h"
#include "system/OutOfRangeException.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/EventTables.h"
#include "xml/sax/FieldAt.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::FakeReader;
using Testing::fieldAt;
using Testing::kWord;
using Testing::RecordingHandler;
using Testing::text;

using Lines = std::vector<std::string>;

constexpr std::size_t kBuffer = kWord == 4 ? 56 : 104;
constexpr std::size_t kBufferSize = kBuffer + kWord;
constexpr std::size_t kDepth = kBufferSize + 4;

constexpr auto kNone = XmlFilterFormat::AlignNone;
constexpr auto kNewline = XmlFilterFormat::AlignNewline;
constexpr auto kIndent = XmlFilterFormat::AlignIndent;
constexpr auto kTabs = XmlFilterFormat::TabTabs;
constexpr auto kSpaces = XmlFilterFormat::TabSpaces;

/// Shows what only subclasses see, and makes the events of elements easy to play.
class OpenFormat : public XmlFilterFormat {
public:
    using XmlFilterFormat::doIndent;
    using XmlFilterFormat::validateWsBufSize;
    using XmlFilterFormat::XmlFilterFormat;

    void start() { startElement(name_, name_, name_, AttributesImpl()); }
    void end() { endElement(name_, name_, name_); }
    void startMany(unsigned int count) {
        for (unsigned int i = 0; i < count; ++i)
            start();
    }

    const unsigned short* buffer() const { return fieldAt<const unsigned short*>(*this, kBuffer); }
    std::uint32_t bufferSize() const { return fieldAt<std::uint32_t>(*this, kBufferSize); }
    std::uint32_t depth() const { return fieldAt<std::uint32_t>(*this, kDepth); }

private:
    XmlString name_ = text(u"e");
};

/// The buffer holds a newline, then nothing but `indentation`.
void expectFilledWith(const OpenFormat& filter, unsigned short indentation) {
    ASSERT_NE(nullptr, filter.buffer());
    EXPECT_EQ(u'\n', filter.buffer()[0]);
    for (std::uint32_t i = 1; i < filter.bufferSize(); ++i)
        ASSERT_EQ(indentation, filter.buffer()[i]) << i;
}

using XmlFilterFormatTest = Testing::HostFixture;

/// The events of <a><b/></a> behind a filter with these settings.
Lines formatted(XmlFilterFormat::AlignmentStyle alignment, XmlFilterFormat::TabMode tabMode,
                unsigned int width) {
    FakeReader reader;
    reader.startElement(u"", u"a", u"a").startElement(u"", u"b", u"b");
    reader.endElement(u"", u"b", u"b").endElement(u"", u"a", u"a");
    XmlFilterFormat filter(&reader, alignment, tabMode, width);
    RecordingHandler handler;
    filter.setContentHandler(&handler);
    filter.parse(text(u"doc.xml"));
    return handler.lines();
}

const char* const kStartA = "startElement(\"\", \"a\", \"a\", [])";
const char* const kStartB = "startElement(\"\", \"b\", \"b\", [])";
const char* const kEndA = "endElement(\"\", \"a\", \"a\")";
const char* const kEndB = "endElement(\"\", \"b\", \"b\")";
const char* const kLineFeed = "characters(\"\\n\")";

// What is injected

TEST_F(XmlFilterFormatTest, EnumerationsHaveTheirValues) {
    EXPECT_EQ(0, XmlFilterFormat::AlignNone);
    EXPECT_EQ(1, XmlFilterFormat::AlignNewline);
    EXPECT_EQ(2, XmlFilterFormat::AlignIndent);
    EXPECT_EQ(0, XmlFilterFormat::TabTabs);
    EXPECT_EQ(1, XmlFilterFormat::TabSpaces);
}

TEST_F(XmlFilterFormatTest, IndentsWithSpaces) {
    EXPECT_EQ((Lines{kLineFeed, kStartA, "characters(\"\\n  \")", kStartB, "characters(\"\\n  \")", kEndB,
                     kLineFeed, kEndA}),
              formatted(kIndent, kSpaces, 2));
    EXPECT_EQ("characters(\"\\n       \")", formatted(kIndent, kSpaces, 7)[2]);
}

/// Keeps the bounds of the runs that it receives.
class RunBounds : public RecordingHandler {
public:
    void characters(const unsigned short* units, unsigned int start, unsigned int length) override {
        firstUnits += units[0] == u'\n' ? "n" : "?";
        bounds.push_back(std::to_string(start) + "+" + std::to_string(length));
    }
    std::string firstUnits;
    Lines bounds;
};

TEST_F(XmlFilterFormatTest, WhatIsInjectedStartsAtTheFirstUnit) {
    RunBounds handler;
    OpenFormat indenting(nullptr, kIndent, kSpaces, 2), breaking(nullptr, kNewline, kSpaces, 2);
    for (OpenFormat* filter : {&indenting, &breaking}) {
        filter->setContentHandler(&handler);
        filter->startMany(2);
        filter->end();
    }
    EXPECT_EQ((Lines{"0+1", "0+3", "0+3", "0+1", "0+1", "0+1"}), handler.bounds);
    EXPECT_EQ("nnnnnn", handler.firstUnits);
}

TEST_F(XmlFilterFormatTest, IndentsWithTabsWhateverTheWidth) {
    for (const unsigned int width : {0u, 1u, 8u, 0xFFFFFFFFu}) {
        EXPECT_EQ((Lines{kLineFeed, kStartA, "characters(\"\\n\\t\")", kStartB, "characters(\"\\n\\t\")",
                         kEndB, kLineFeed, kEndA}),
                  formatted(kIndent, kTabs, width));
    }
}

TEST_F(XmlFilterFormatTest, EveryTabModeButZeroMeansSpaces) {
    for (const int mode : {2, -1, 0x7FFFFFFF}) {
        EXPECT_EQ(formatted(kIndent, kSpaces, 2),
                  formatted(kIndent, static_cast<XmlFilterFormat::TabMode>(mode), 2));
    }
}

TEST_F(XmlFilterFormatTest, WidthZeroInjectsNewlinesOnly) {
    const Lines expected{kLineFeed, kStartA, kLineFeed, kStartB, kLineFeed, kEndB, kLineFeed, kEndA};
    EXPECT_EQ(expected, formatted(kIndent, kSpaces, 0));
}

TEST_F(XmlFilterFormatTest, NewlineStyleInjectsLoneNewlines) {
    const Lines expected{kLineFeed, kStartA, kLineFeed, kStartB, kLineFeed, kEndB, kLineFeed, kEndA};
    EXPECT_EQ(expected, formatted(kNewline, kSpaces, 4));
    EXPECT_EQ(expected, formatted(kNewline, kTabs, 4));
}

TEST_F(XmlFilterFormatTest, NoneLeavesTheStreamAlone) {
    EXPECT_EQ((Lines{kStartA, kStartB, kEndB, kEndA}), formatted(kNone, kSpaces, 4));
    EXPECT_EQ((Lines{kStartA, kStartB, kEndB, kEndA}), formatted(kNone, kTabs, 4));
}

TEST_F(XmlFilterFormatTest, UnknownStyleInjectsNothing) {
    EXPECT_EQ((Lines{kStartA, kStartB, kEndB, kEndA}),
              formatted(static_cast<XmlFilterFormat::AlignmentStyle>(3), kSpaces, 4));
}

TEST_F(XmlFilterFormatTest, EveryTagIsTreatedAlike) {
    FakeReader reader;
    reader.startElement(u"", u"a", u"a").characters(u"text").endElement(u"", u"a", u"a");
    reader.ignorableWhitespace(u" ").characters(u" ");
    XmlFilterFormat filter(&reader, kIndent, kSpaces, 2);
    RecordingHandler handler;
    filter.setContentHandler(&handler);
    filter.parse(text(u"doc.xml"));
    EXPECT_EQ((Lines{kLineFeed, kStartA, "characters(\"text\")", kLineFeed, kEndA,
                     "ignorableWhitespace(\" \")", "characters(\" \")"}),
              handler.lines());
}

TEST_F(XmlFilterFormatTest, EveryOtherEventPasses) {
    RecordingHandler handler;
    XmlFilterFormat filter(nullptr, kNone, kTabs, 0);
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

TEST_F(XmlFilterFormatTest, ParentIsKept) {
    FakeReader reader;
    EXPECT_EQ(&reader, XmlFilterFormat(&reader, kIndent, kTabs, 0).getParent());
    EXPECT_EQ(nullptr, XmlFilterFormat(nullptr, kIndent, kTabs, 0).getParent());
}

TEST_F(XmlFilterFormatTest, WithoutHandlerOnlyTheDepthChanges) {
    OpenFormat filter(nullptr, kIndent, kTabs, 0);
    filter.startMany(3);
    EXPECT_EQ(3u, filter.depth());
    filter.end();
    EXPECT_EQ(2u, filter.depth());
}

TEST_F(XmlFilterFormatTest, InjectionIsNotSeenByASubclass) {
    struct Subclass : OpenFormat {
        using OpenFormat::OpenFormat;
        void characters(const unsigned short*, unsigned int, unsigned int) override { ++seen; }
        int seen = 0;
    };
    Subclass filter(nullptr, kIndent, kTabs, 0);
    RecordingHandler handler;
    filter.setContentHandler(&handler);
    filter.start();
    filter.end();
    EXPECT_EQ(0, filter.seen);
    EXPECT_EQ(2u, handler.linesOf("characters").size());
}

TEST_F(XmlFilterFormatTest, DoIndentFollowsTheStyle) {
    RecordingHandler handler;
    for (const auto alignment : {kNone, kNewline, kIndent}) {
        OpenFormat filter(nullptr, alignment, kTabs, 0);
        filter.startMany(2);
        filter.setContentHandler(&handler);
        filter.doIndent();
    }
    EXPECT_EQ((Lines{kLineFeed, "characters(\"\\n\\t\\t\")"}), handler.lines());
}

// The buffer

TEST_F(XmlFilterFormatTest, BufferStartsWithRoomForDepthTwo) {
    EXPECT_EQ(4u, OpenFormat(nullptr, kIndent, kTabs, 9).bufferSize());    // 3 units
    EXPECT_EQ(8u, OpenFormat(nullptr, kIndent, kSpaces, 2).bufferSize());  // 5 units
    EXPECT_EQ(32u, OpenFormat(nullptr, kIndent, kSpaces, 8).bufferSize()); // 17 units
    EXPECT_EQ(1u, OpenFormat(nullptr, kIndent, kSpaces, 0).bufferSize());
    EXPECT_EQ(4u, OpenFormat(nullptr, kNone, kTabs, 0).bufferSize()); // also where it is not used
}

TEST_F(XmlFilterFormatTest, BufferGrowsByPowersOfTwo) {
    OpenFormat filter(nullptr, kIndent, kTabs, 0);
    filter.startMany(8);
    EXPECT_EQ(8u, filter.bufferSize()); // depth 7 needed 8 units
    filter.start();
    EXPECT_EQ(16u, filter.bufferSize()); // depth 8 needed 9
    filter.startMany(8);
    EXPECT_EQ(32u, filter.bufferSize());
}

TEST_F(XmlFilterFormatTest, SpacesTakeTheirWidthPerLevel) {
    OpenFormat filter(nullptr, kIndent, kSpaces, 3);
    EXPECT_EQ(8u, filter.bufferSize()); // 2 * 3 + 1
    filter.startMany(6);
    EXPECT_EQ(16u, filter.bufferSize()); // 5 * 3 + 1 fits exactly
    filter.start();
    EXPECT_EQ(32u, filter.bufferSize()); // 6 * 3 + 1
}

TEST_F(XmlFilterFormatTest, BufferIsANewlineAndIndentation) {
    OpenFormat tabs(nullptr, kIndent, kTabs, 0), spaces(nullptr, kIndent, kSpaces, 5);
    expectFilledWith(tabs, u'\t');
    expectFilledWith(spaces, u' ');
    tabs.startMany(100);
    spaces.startMany(100);
    EXPECT_EQ(128u, tabs.bufferSize());
    EXPECT_EQ(512u, spaces.bufferSize());
    expectFilledWith(tabs, u'\t');
    expectFilledWith(spaces, u' ');
}

TEST_F(XmlFilterFormatTest, BufferNeverShrinksAndIsReused) {
    OpenFormat filter(nullptr, kIndent, kTabs, 0);
    filter.startMany(20);
    const unsigned short* buffer = filter.buffer();
    for (int i = 0; i < 20; ++i)
        filter.end();
    filter.startMany(20);
    EXPECT_EQ(buffer, filter.buffer());
    EXPECT_EQ(32u, filter.bufferSize());
}

TEST_F(XmlFilterFormatTest, LargerOfDepthAndRequestCounts) {
    OpenFormat filter(nullptr, kNone, kTabs, 0);
    filter.validateWsBufSize(1);
    EXPECT_EQ(4u, filter.bufferSize());
    filter.startMany(9);
    EXPECT_EQ(4u, filter.bufferSize());
    filter.validateWsBufSize(1);
    EXPECT_EQ(16u, filter.bufferSize()); // for the depth
    filter.validateWsBufSize(40);
    EXPECT_EQ(64u, filter.bufferSize()); // for the request
}

TEST_F(XmlFilterFormatTest, BufferIsTheHosts) {
    const std::ptrdiff_t blocks = Testing::hostMemory().liveBlocks();
    {
        XmlFilterFormat filter(nullptr, kIndent, kTabs, 0);
        EXPECT_EQ(blocks + 1, Testing::hostMemory().liveBlocks());
    }
    EXPECT_EQ(blocks, Testing::hostMemory().liveBlocks());
}

// The depth

TEST_F(XmlFilterFormatTest, DepthGrowsOnlyWhenTheHandlerReturned) {
    RecordingHandler handler;
    OpenFormat filter(nullptr, kNone, kTabs, 0);
    filter.setContentHandler(&handler);
    handler.throwAt(1);
    EXPECT_THROW(filter.start(), SaxException);
    EXPECT_EQ(0u, filter.depth());
    filter.start();
    EXPECT_EQ(1u, filter.depth());
}

TEST_F(XmlFilterFormatTest, DepthFallsAlsoWhenTheHandlerThrows) {
    RecordingHandler handler;
    OpenFormat filter(nullptr, kIndent, kTabs, 0);
    filter.startMany(2);
    filter.setContentHandler(&handler);
    handler.throwAt(2); // at the end tag, behind its indentation
    EXPECT_THROW(filter.end(), SaxException);
    EXPECT_EQ(1u, filter.depth());
    handler.throwAt(1); // at the indentation
    EXPECT_THROW(filter.end(), SaxException);
    EXPECT_EQ(0u, filter.depth());
}

TEST_F(XmlFilterFormatTest, TagIsNotDeliveredWhenItsIndentationThrows) {
    RecordingHandler handler;
    OpenFormat filter(nullptr, kIndent, kTabs, 0);
    filter.setContentHandler(&handler);
    handler.throwAt(1);
    EXPECT_THROW(filter.start(), SaxException);
    EXPECT_EQ(Lines{kLineFeed}, handler.lines());
    EXPECT_EQ(0u, filter.depth());
}

TEST_F(XmlFilterFormatTest, DepthIsKeptOverDocuments) {
    FakeReader reader;
    reader.startDocument().startElement(u"", u"a", u"a").endDocument();
    XmlFilterFormat filter(&reader, kIndent, kTabs, 0);
    RecordingHandler handler;
    filter.setContentHandler(&handler);
    filter.parse(text(u"one.xml"));
    filter.parse(text(u"two.xml"));
    EXPECT_EQ((Lines{kLineFeed, "characters(\"\\n\\t\")"}), handler.linesOf("characters"));
}

TEST_F(XmlFilterFormatTest, UnmatchedEndWrapsTheDepth) {
    OpenFormat filter(nullptr, kNone, kTabs, 0);
    filter.end();
    EXPECT_EQ(0xFFFFFFFFu, filter.depth());
    filter.start();
    EXPECT_EQ(0u, filter.depth());
}

TEST_F(XmlFilterFormatTest, UnmatchedEndIsHarmlessWithoutIndentation) {
    RecordingHandler handler;
    OpenFormat newlines(nullptr, kNewline, kSpaces, 4), widthless(nullptr, kIndent, kSpaces, 0);
    newlines.setContentHandler(&handler);
    widthless.setContentHandler(&handler);
    newlines.end();
    widthless.end();
    EXPECT_EQ(
        (Lines{kLineFeed, "endElement(\"e\", \"e\", \"e\")", kLineFeed, "endElement(\"e\", \"e\", \"e\")"}),
        handler.lines());
}

TEST_F(XmlFilterFormatTest, UnmatchedEndCannotBeIndented) {
    for (const auto tabMode : {kTabs, kSpaces}) {
        RecordingHandler handler;
        OpenFormat filter(nullptr, kIndent, tabMode, 1);
        filter.setContentHandler(&handler);
        EXPECT_THROW(filter.end(), System::OutOfRangeException);
        EXPECT_EQ(Lines(), handler.lines());
        EXPECT_EQ(4u, filter.bufferSize());
        EXPECT_THROW(filter.start(), System::OutOfRangeException);
        EXPECT_EQ(0xFFFFFFFFu, filter.depth()); // so the start tag, which was not delivered, does not count
    }
}

// Sizes beyond what can be

TEST_F(XmlFilterFormatTest, IndentationBeyondAPowerOfTwoIsOutOfRange) {
    for (const unsigned int width : {0x40000000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFFu})
        EXPECT_THROW(XmlFilterFormat(nullptr, kIndent, kSpaces, width), System::OutOfRangeException);
    OpenFormat filter(nullptr, kIndent, kSpaces, 1);
    for (const unsigned int depth : {0x80000000u, 0xFFFFFFFFu}) // 2^31 + 1 units, 2^32 units
        EXPECT_THROW(filter.validateWsBufSize(depth), System::OutOfRangeException);
    EXPECT_EQ(4u, filter.bufferSize());
    expectFilledWith(filter, u' ');
}

TEST_F(XmlFilterFormatTest, LargestBufferIsAQuestionOfMemory) {
    OpenFormat filter(nullptr, kIndent, kTabs, 0);
    Testing::hostMemory().failRequest(1);
    EXPECT_THROW(filter.validateWsBufSize(0x7FFFFFFF),
                 System::OutOfMemoryException); // 2^31 units, 2^32 bytes
    // A host with 32 bits cannot even be asked for it.
    EXPECT_EQ(sizeof(std::size_t) == 4, Testing::hostMemory().failureIsPending());
    Testing::hostMemory().failRequest(0);
    EXPECT_EQ(4u, filter.bufferSize());
}

// Memory

TEST_F(XmlFilterFormatTest, WithoutMemoryThereIsNoFilter) {
    Testing::everyAllocationFails([] { const XmlFilterFormat filter(nullptr, kIndent, kTabs, 0); });
}

TEST_F(XmlFilterFormatTest, FailedGrowthKeepsTheOldBuffer) {
    OpenFormat filter(nullptr, kIndent, kTabs, 0);
    filter.startMany(4);
    const unsigned short* buffer = filter.buffer();
    const AttributesImpl attributes;
    const XmlString name = text(u"e");
    Testing::everyAllocationFails([&] { filter.startElement(name, name, name, attributes); },
                                  [&] {
                                      EXPECT_EQ(buffer, filter.buffer());
                                      EXPECT_EQ(4u, filter.bufferSize());
                                      EXPECT_EQ(4u, filter.depth());
                                  });
    EXPECT_EQ(8u, filter.bufferSize());
    EXPECT_EQ(5u, filter.depth());
}

TEST_F(XmlFilterFormatTest, DeepNestingIsIndentedInFull) {
    OpenFormat filter(nullptr, kIndent, kTabs, 0);
    filter.startMany(1000);
    RecordingHandler handler;
    filter.setContentHandler(&handler);
    filter.start();
    std::string expected = "characters(\"\\n";
    for (int i = 0; i < 1000; ++i)
        expected += "\\t";
    EXPECT_EQ(expected + "\")", handler.lines().front());
}

} // namespace
} // namespace Quillon::Xml::Sax
