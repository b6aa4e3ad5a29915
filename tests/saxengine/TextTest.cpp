// Text: surrogates, line ends, sections, comments, and the same text however the input is cut.
#include "saxengine/ReadingFixture.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::StartsWith;

class TextTest : public ReadingFixture {};

/// Checks that no event of text begins or ends inside a pair.
class PairWatcher : public DefaultHandler2 {
public:
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override {
        ASSERT_NE(0u, length);
        EXPECT_NE(0xDC00, ch[start] & 0xFC00);
        EXPECT_NE(0xD800, ch[start + length - 1] & 0xFC00);
        units += length;
        ++events;
    }
    std::size_t units = 0, events = 0;
};

/// Pairs at every place of Expat's buffer of 1,024 units and of the reader's chunks.
TEST_F(TextTest, PairsAreNeverSplitOverTwoEvents) {
    PairWatcher watcher;
    reader().setContentHandler(&watcher);
    for (const std::size_t padding : {0u, 1u, 2u, 3u}) {
        std::u16string text16(padding, u'x');
        std::string text8(padding, 'x');
        for (int i = 0; i < 20000; ++i) {
            text16 += u"\U0001F600";
            text8 += "\xF0\x9F\x98\x80";
        }
        watcher.units = watcher.events = 0;
        EXPECT_FALSE(read("<a>" + text8 + "</a>").threw);
        EXPECT_EQ(40000 + padding, watcher.units);
        EXPECT_GT(watcher.events, 1u);
        for (const bool big : {false, true}) {
            watcher.units = 0;
            EXPECT_FALSE(read(utf16(u"\uFEFF<a>" + text16 + u"</a>", big)).threw);
            EXPECT_EQ(40000 + padding, watcher.units);
            watcher.units = 0;
            EXPECT_FALSE(read(utf16(u"\uFEFF<a><![CDATA[" + text16 + u"]]></a>", big)).threw);
            EXPECT_EQ(40000 + padding, watcher.units);
        }
    }
}

struct SurrogateCase {
    const char* name;
    const char16_t* before;
    const char16_t* after;
};

const SurrogateCase kSurrogateCases[] = {
    {"Text", u"<a>x", u"y</a>"},
    {"TextBeforeMarkup", u"<a>", u"</a>"},
    {"AttributeValue", u"<a b='", u"'/>"},
    {"ElementName", u"<a", u"b/>"},
    {"AttributeName", u"<a b", u"c=''/>"},
    {"Comment", u"<a><!--", u"--></a>"},
    {"Instruction", u"<a><?p ", u"?></a>"},
    {"InstructionTarget", u"<a><?p", u"q r?></a>"},
    {"Section", u"<a><![CDATA[", u"]]></a>"},
    {"EntityValue", u"<!DOCTYPE a [<!ENTITY e '", u"'>]><a/>"},
    {"DefaultValue", u"<!DOCTYPE a [<!ATTLIST a b CDATA '", u"'>]><a/>"},
    {"SystemIdentifier", u"<!DOCTYPE a SYSTEM '", u"'><a/>"},
    {"Prolog", u"<!--", u"--><a/>"},
    {"Epilog", u"<a/><!--", u"-->"},
};

class SurrogateTest : public TextTest, public ::testing::WithParamInterface<SurrogateCase> {};

TEST_P(SurrogateTest, UnpairedOnesAreFatalInUtf16) {
    for (const bool big : {false, true}) {
        for (const char16_t* bad : {u"\xD83D", u"\xDE00", u"\xDE00\xD83D", u"\xD83D\xD83D\xDE00"}) {
            const std::u16string document =
                std::u16string(u"\uFEFF") + GetParam().before + bad + GetParam().after;
            const Outcome outcome = refused(utf16(document, big));
            EXPECT_THAT(outcome.message, StartsWith("an unpaired surrogate"));
            EXPECT_EQ(1, outcome.line);
            EXPECT_EQ(std::u16string(GetParam().before).size() + 1, static_cast<std::size_t>(outcome.column));
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Places, SurrogateTest, ::testing::ValuesIn(kSurrogateCases),
                         [](const auto& info) { return info.param.name; });

TEST_F(TextTest, PairsAreFineWhereCharactersAre) {
    for (const bool big : {false, true}) {
        const std::u16string document =
            u"\uFEFF<!--\U0001F600--><!DOCTYPE a [<!ENTITY e '\U0001F600'>]><a b='\U0001F600'>"
            u"\U0001F600&e;<?p \U0001F600?><![CDATA[\U0001F600]]></a>";
        EXPECT_FALSE(read(utf16(document, big)).threw);
    }
}

TEST_F(TextTest, UnpairedSurrogatesInEntitiesAreFatal) {
    readExternalEntities();
    serveResources();
    resources["file:///e"] = utf16(u"\uFEFFx\xD83D", true);
    const Outcome outcome = refused("<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///e'>]><a>&e;</a>");
    EXPECT_THAT(outcome.message, StartsWith("an unpaired surrogate"));
    EXPECT_EQ("file:///e", outcome.systemId);
    EXPECT_EQ(2, outcome.column);
    resources["file:///d"] = utf16(u"\uFEFF<!ENTITY e '\xDE00'>", true);
    EXPECT_THAT(refused("<!DOCTYPE a SYSTEM 'file:///d'><a/>").message, StartsWith("an unpaired surrogate"));
}

TEST_F(TextTest, UnpairedSurrogatesAreFatalOverTheEndOfAChunk) {
    for (std::size_t padding = 32 * 1024 - 10; padding < 32 * 1024 + 2; ++padding) {
        const std::u16string document = u"\uFEFF<a>" + std::u16string(padding, u'x') + u"\xD83D" + u"yz</a>";
        const Outcome outcome = refused(utf16(document, false));
        EXPECT_EQ(static_cast<long long>(padding) + 4, outcome.column);
        EXPECT_FALSE(
            read(utf16(u"\uFEFF<a>" + std::u16string(padding, u'x') + u"\U0001F600y</a>", false)).threw);
    }
}

TEST_F(TextTest, CharacterReferencesToSurrogatesAreFatal) {
    for (const char* reference : {"&#xD83D;", "&#xD83D;&#xDE00;", "&#55357;"})
        EXPECT_EQ("reference to invalid character number",
                  refused("<a>" + std::string(reference) + "</a>").message);
    handler().joinText(true);
    EXPECT_THAT(events("<a>&#x1F600;</a>", "characters"), ElementsAre("characters(\"\xF0\x9F\x98\x80\")"));
}

TEST_F(TextTest, LineEndsAreLineFeeds) {
    handler().joinText(true);
    EXPECT_THAT(events("<a>1\r\n2\r3\n\r4&#13;</a>", "characters"),
                ElementsAre(R"(characters("1\n2\n3\n\n4\r"))"));
}

/// A carriage return that ends a chunk and its line feed are one line end, wherever they stand.
TEST_F(TextTest, LineEndsMayBeCut) {
    handler().joinText(true);
    for (std::size_t padding = 32 * 1024 - 10; padding < 32 * 1024 + 2; ++padding) {
        const std::string space(padding, ' ');
        EXPECT_THAT(events("<a>" + space + "\r\n</a>", "characters"),
                    ElementsAre("characters(\"" + space + "\\n\")"));
        const Outcome outcome = refused("<a/>" + space + "\r\n<");
        EXPECT_EQ(2, outcome.line) << padding;
        EXPECT_EQ(1, outcome.column) << padding;
    }
}

TEST_F(TextTest, SectionsAndCommentsAreReported) {
    handler().joinText(true);
    EXPECT_THAT(events("<a><![CDATA[<b>]]]]><![CDATA[>]]><!----><!-- - --></a>"),
                ElementsAre("setDocumentLocator(locator)", "startDocument()",
                            R"(startElement("", "a", "a", []))", "startCDATA()", R"(characters("<b>]]"))",
                            "endCDATA()", "startCDATA()", R"(characters(">"))", "endCDATA()",
                            R"(comment(""))", R"(comment(" - "))", R"(endElement("", "a", "a"))",
                            "endDocument()"));
}

TEST_F(TextTest, InstructionsAreReported) {
    EXPECT_THAT(events("<?a?><?b c d ?><a><?e  f?></a><?g?>", "processingInstruction"),
                ElementsAre(R"(processingInstruction("a", ""))", R"(processingInstruction("b", "c d "))",
                            R"(processingInstruction("e", "f"))", R"(processingInstruction("g", ""))"));
}

TEST_F(TextTest, LongTextOfAnyKindIsWhole) {
    handler().joinText(true);
    const std::string longText(100000, 'x');
    EXPECT_THAT(
        events("<a b='" + longText + "'><!--" + longText + "-->" + longText + "<?p " + longText + "?></a>"),
        ElementsAre("setDocumentLocator(locator)", "startDocument()",
                    "startElement(\"\", \"a\", \"a\", [(\"\", \"b\", \"b\", \"CDATA\", \"" + longText
                        + "\")])",
                    "comment(\"" + longText + "\")", "characters(\"" + longText + "\")",
                    "processingInstruction(\"p\", \"" + longText + "\")", R"(endElement("", "a", "a"))",
                    "endDocument()"));
}

/// A channel whose reads give `size` bytes each.
class CutChannel : public ReadableByteChannel {
public:
    CutChannel(std::string_view bytes, std::size_t size) : bytes_(bytes), size_(size) {}
    void close() override {}
    bool isOpen() const override { return true; }
    unsigned int read(unsigned char* buffer, unsigned int length) override {
        const std::size_t count =
            bytes_.copy(reinterpret_cast<char*>(buffer), std::min<std::size_t>(size_, length));
        bytes_.remove_prefix(count);
        return static_cast<unsigned int>(count);
    }

private:
    std::string_view bytes_;
    std::size_t size_;
};

TEST_F(TextTest, TextUpToMarkupIsOneEvent) {
    const std::string document = "<a>1\n  2\n\n3<b/>\n\t<b/>4\n</a>";
    for (const std::string& input : {document, utf16(u"\uFEFF<a>1\n  2\n\n3<b/>\n\t<b/>4\n</a>", false)})
        EXPECT_THAT(
            events(input, "characters"),
            ElementsAre(R"(characters("1\n  2\n\n3"))", R"(characters("\n\t"))", R"(characters("4\n"))"));
}

/// Only white space of it alone is ignorable.
TEST_F(TextTest, TextInElementContentIsTakenLineByLine) {
    EXPECT_THAT(events("<!DOCTYPE a [<!ELEMENT a (b)*>]><a>\n  x\n</a>", "characters"),
                ElementsAre(R"(characters("  x"))"));
    EXPECT_THAT(events("<!DOCTYPE a [<!ELEMENT a (b)*>]><a>\n  x\n</a>", "ignorableWhitespace").size(),
                ::testing::Ge(2u));
}

/// Notes the text, and for each event of it where it begins and where the locator says it does.
class TextPlaces : public DefaultHandler2 {
public:
    struct Event {
        std::size_t index;
        long long line, column;
    };
    void setDocumentLocator(Locator* locator) override { locator_ = locator; }
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override {
        events.push_back({text.size(), locator_->getLineNumber(), locator_->getColumnNumber()});
        text.append(ch + start, ch + start + length);
    }
    std::u16string text;
    std::vector<Event> events;

private:
    Locator* locator_ = nullptr;
};

/// A document of pieces that end a run of text, or do not, with what its text is and where each unit of it stands.
struct TextModel {
    struct Piece {
        const char* source;
        const char16_t* text;
    };
    static constexpr Piece kPieces[] = {
        {"x", u"x"},      {"\n", u"\n"},    {" ", u" "},
        {"]", u"]"},      {"\r\n", u"\n"},  {"\r", u"\n"},
        {"&amp;", u"&"},  {"<b/>", u""},    {"\xC3\xA4", u"\u00E4"},
        {"&#10;", u"\n"}, {"&e;", u"p\nq"}, {"\xF0\x9F\x98\x80", u"\U0001F600"}};

    explicit TextModel(std::mt19937& random) {
        for (int i = 0; i < 200; ++i)
            append(kPieces[random() % std::size(kPieces)]);
        source += "</a>";
    }

    void append(const Piece& piece) {
        const std::u16string_view added = piece.text;
        if (piece.source[0] == '\n' && source.back() == '\r')
            return; // it would be part of the line end
        for (std::size_t i = 0; i < added.size(); ++i)
            places.push_back({line, column});
        text += added;
        const bool endsLine = piece.source[0] == '\n' || piece.source[0] == '\r';
        line += endsLine;
        column = endsLine ? 1 : column + characters(piece.source);
        source += piece.source;
    }
    static long long characters(std::string_view bytes) {
        return std::count_if(bytes.begin(), bytes.end(), [](char c) { return (c & 0xC0) != 0x80; });
    }

    std::string source = "<!DOCTYPE a [<!ENTITY e 'p\nq'>]>\n<a>";
    std::u16string text;
    std::vector<std::pair<long long, long long>> places; ///< line and column of each unit
    long long line = 3, column = 4;
};

TEST_F(TextTest, TextIsWholeAndStandsWhereItBegins) {
    std::mt19937 random(20);
    for (int round = 0; round < 200; ++round) {
        const TextModel model(random);
        for (const std::size_t size : {1u, 7u, 1000u}) {
            TextPlaces handler;
            reader().setContentHandler(&handler);
            CutChannel channel(model.source, size);
            InputSource source(&channel);
            reader().parse(source);
            ASSERT_EQ(model.text, handler.text) << model.source;
            for (const TextPlaces::Event& event : handler.events)
                ASSERT_EQ(model.places[event.index], std::make_pair(event.line, event.column))
                    << model.source;
        }
    }
}

TEST_F(TextTest, EventsAreTheSameHoweverTheInputIsCut) {
    const std::string document =
        "<?xml version='1.0' encoding='UTF-8'?><!DOCTYPE a [<!ENTITY e 'x<b/>'>"
        "<!ATTLIST a b CDATA 'c'><!ELEMENT a (b|c)*>]><a xmlns='u' d=\"\xC3\xA4\">\r\n&e;"
        "<![CDATA[\xE2\x82\xAC]]><?p d?><!--\xF0\x9F\x98\x80--></a>\r\n<!--z-->";
    handler().joinText(true);
    const std::vector<std::string> whole = events(document);
    for (std::size_t size = 1; size < 40; ++size) {
        CutChannel channel(document, size);
        InputSource source(&channel);
        handler().clear();
        reader().parse(source);
        EXPECT_EQ(whole, handler().lines()) << size;
    }
}

} // namespace
} // namespace Quillon::Xml::Sax
