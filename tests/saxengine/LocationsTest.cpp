// Where events and errors stand: the start of their markup or text, counted in lines and characters from 1.
#include "saxengine/ReadingFixture.h"
#include "support/SharedData.h"
#include "xml/sax/Locator2.h"

#include <gmock/gmock.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::ElementsAre;

/// One line per event: where it stands and what it is.
class PlaceRecorder : public DefaultHandler2 {
public:
    std::vector<std::string> places;

    void setDocumentLocator(Locator* locator) override { locator_ = dynamic_cast<Locator2*>(locator); }
    void startDocument() override { add("startDocument"); }
    void endDocument() override { add("endDocument"); }
    void startPrefixMapping(const XmlString&, const XmlString&) override { add("startPrefixMapping"); }
    void endPrefixMapping(const XmlString&) override { add("endPrefixMapping"); }
    void startElement(const XmlString&, const XmlString&, const XmlString& name, const Attributes&) override {
        add("<" + show(name) + ">");
    }
    void endElement(const XmlString&, const XmlString&, const XmlString& name) override {
        add("</" + show(name) + ">");
    }
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override {
        add(show(XmlString(0, ch + start, length)));
    }
    void processingInstruction(const XmlString&, const XmlString&) override { add("instruction"); }
    void skippedEntity(const XmlString& name) override { add("&" + show(name) + ";"); }
    void notationDecl(const XmlString& name, const XmlString&, const XmlString&) override {
        add("notation " + show(name));
    }
    void unparsedEntityDecl(const XmlString& name, const XmlString&, const XmlString&,
                            const XmlString&) override {
        add("unparsed " + show(name));
    }
    void startDTD(const XmlString&, const XmlString&, const XmlString&) override { add("startDTD"); }
    void endDTD() override { add("endDTD"); }
    void startEntity(const XmlString& name) override { add("startEntity " + show(name)); }
    void endEntity(const XmlString& name) override { add("endEntity " + show(name)); }
    void startCDATA() override { add("startCDATA"); }
    void endCDATA() override { add("endCDATA"); }
    void comment(const unsigned short*, unsigned int, unsigned int) override { add("comment"); }
    void elementDecl(const XmlString& name, const XmlString&) override { add("element " + show(name)); }
    void attributeDecl(const XmlString&, const XmlString& name, const XmlString&, const XmlString&,
                       const XmlString&) override {
        add("attribute " + show(name));
    }
    void internalEntityDecl(const XmlString& name, const XmlString&) override { add("entity " + show(name)); }
    void externalEntityDecl(const XmlString& name, const XmlString&, const XmlString&) override {
        add("external " + show(name));
    }

private:
    void add(const std::string& what) {
        const std::string systemId = show(locator_->getSystemId());
        const std::string in = systemId.find("z.xml") == std::string::npos ? systemId + ":" : "";
        places.push_back(in + std::to_string(locator_->getLineNumber()) + ":"
                         + std::to_string(locator_->getColumnNumber()) + " " + what);
    }
    Locator2* locator_ = nullptr;
};

class LocationsTest : public ReadingFixture {
protected:
    std::vector<std::string> places(std::string_view document, const char16_t* encoding = nullptr) {
        PlaceRecorder recorder;
        listenTo(recorder);
        const Outcome outcome = read(document, u"file:///x/z.xml", encoding);
        EXPECT_FALSE(outcome.threw) << outcome.message;
        listen(reader(), handler());
        return recorder.places;
    }

private:
    void listenTo(PlaceRecorder& recorder) {
        reader().setContentHandler(&recorder);
        reader().setDTDHandler(&recorder);
        reader().setProperty(SC_Properties_LexicalHandler(), static_cast<LexicalHandler*>(&recorder));
        reader().setProperty(SC_Properties_DeclarationHandler(), static_cast<DeclHandler*>(&recorder));
        serveResources();
    }
};

TEST_F(LocationsTest, ContentEventsStandAtTheStartOfTheirMarkup) {
    EXPECT_THAT(places("<a>\n  <b/>x&amp;y<c\n d=''></c\n><!--e--><?f?><![CDATA[g]]></a>\n"),
                ElementsAre("1:1 startDocument", "1:1 <a>", "1:4 \n  ", "2:3 <b>", "2:3 </b>", "2:7 x",
                            "2:8 &", "2:13 y", "2:14 <c>", "3:7 </c>", "4:2 comment", "4:10 instruction",
                            "4:15 startCDATA", "4:24 g", "4:25 endCDATA", "4:28 </a>", "5:1 endDocument"));
}

TEST_F(LocationsTest, PrefixesStandWithTheirElement) {
    EXPECT_THAT(places(" <a xmlns='u'>\n<b xmlns:p='v'/></a>"),
                ElementsAre("1:1 startDocument", "1:2 startPrefixMapping", "1:2 <a>", "1:15 \n",
                            "2:1 startPrefixMapping", "2:1 <b>", "2:1 </b>", "2:1 endPrefixMapping",
                            "2:17 </a>", "2:17 endPrefixMapping", "2:21 endDocument"));
}

TEST_F(LocationsTest, DeclarationsStandAtTheirStart) {
    EXPECT_THAT(
        places(
            "<!-- -->\n <!DOCTYPE a [\n<!ELEMENT a\n (b)>  <!ATTLIST a b CDATA 'c'\nd ID #IMPLIED>\n"
            " <!ENTITY e\n'f'><!ENTITY % g\nSYSTEM 'h'> <!NOTATION i PUBLIC\n'j'><!NOTATION i2 SYSTEM 'j'>\n"
            "<!ENTITY k SYSTEM 'l'\nNDATA i><!ENTITY k 'm'>\n<!ENTITY n 'o'><!ATTLIST p><!ATTLIST p q CDATA "
            "''>"
            "<!--r--><?s?>]  ><a/>"),
        ElementsAre("1:1 startDocument", "1:1 comment", "2:2 startDTD", "3:1 element a", "4:8 attribute b",
                    "4:8 attribute d", "6:2 entity e", "7:5 external %g", "8:13 notation i",
                    "9:5 notation i2", "10:1 unparsed k", "12:1 entity n", "12:28 attribute q",
                    "12:51 comment", "12:59 instruction", "12:67 endDTD", "12:68 <a>", "12:68 </a>",
                    "12:72 endDocument"));
}

TEST_F(LocationsTest, DeclarationsOfUtf16StandAtTheirStart) {
    for (const bool big : {false, true})
        EXPECT_THAT(places(utf16(u"\uFEFF<!DOCTYPE a [\n <!ENTITY e 'f'><!ENTITY g SYSTEM 'h'>]><a/>", big)),
                    ElementsAre("1:1 startDocument", "1:1 startDTD", "2:2 entity e", "2:17 external g",
                                "2:40 endDTD", "2:41 <a>", "2:41 </a>", "2:45 endDocument"));
}

TEST_F(LocationsTest, InternalEntitiesStandAtTheirReference) {
    EXPECT_THAT(places("<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x<b/>\">'>\n%p;]><a>\n &e;</a>"),
                ElementsAre("1:1 startDocument", "1:1 startDTD", "1:14 entity %p", "2:1 entity e",
                            "2:5 endDTD", "2:6 <a>", "2:9 \n ", "3:2 x", "3:2 <b>", "3:2 </b>", "3:5 </a>",
                            "3:9 endDocument"));
}

TEST_F(LocationsTest, ExternalEntitiesHaveTheirOwnPlaces) {
    readExternalEntities();
    resources["file:///x/d"] = "\n<!ENTITY e SYSTEM 'e'>";
    resources["file:///x/e"] = "<?xml encoding='UTF-8'?>\n<b/>x";
    EXPECT_THAT(places("<!DOCTYPE a SYSTEM 'd' [\n]><a>\n &e;</a>"),
                ElementsAre("1:1 startDocument", "1:1 startDTD", "2:2 startEntity [dtd]",
                            "file:///x/d:2:1 external e", "2:2 endEntity [dtd]", "2:2 endDTD", "2:3 <a>",
                            "2:6 \n ", "3:2 startEntity e", "file:///x/e:1:25 \n", "file:///x/e:2:1 <b>",
                            "file:///x/e:2:1 </b>", "file:///x/e:2:5 x", "3:2 endEntity e", "3:5 </a>",
                            "3:9 endDocument"));
}

TEST_F(LocationsTest, ColumnsCountCharacters) {
    const std::vector<std::string> wanted = {
        "1:1 startDocument", "1:1 <a>",  "1:4 \xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80",
        "1:7 <b>",           "1:7 </b>", "1:11 </a>",
        "1:15 endDocument"};
    const std::u16string document = u"<a>\u00E4\u20AC\U0001F600<b/></a>";
    EXPECT_EQ(wanted, places("<a>\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80<b/></a>"));
    EXPECT_EQ(wanted, places(utf16(document, false)));
    EXPECT_EQ(wanted, places(utf16(document, true)));
    // The same characters in GB18030, which is recoded.
    EXPECT_EQ(wanted, places("<a>\x81\x30\x8A\x31\xA2\xE3\x94\x39\xFC\x36<b/></a>", u"GB18030"));
}

TEST_F(LocationsTest, MarkCountsNothing) {
    const std::vector<std::string> wanted = {"1:1 startDocument", "1:1 <a>", "1:1 </a>", "1:5 endDocument"};
    EXPECT_EQ(wanted, places("\xEF\xBB\xBF<a/>"));
    EXPECT_EQ(wanted, places(utf16(u"\uFEFF<a/>", false)));
    EXPECT_EQ(wanted, places(utf16(u"\uFEFF<a/>", true)));
    EXPECT_EQ(wanted, places(std::string("\xFF\xFE\0\0<\0\0\0a\0\0\0/\0\0\0>\0\0\0", 20)));
    EXPECT_EQ(wanted, places("\x84\x31\x95\x33<a/>", u"GB18030"));
}

TEST_F(LocationsTest, EveryKindOfLineEndCountsOnce) {
    EXPECT_THAT(places("<a\r\n>\r<b/>\n\r<c/></a>"),
                ElementsAre("1:1 startDocument", "1:1 <a>", "2:2 \n", "3:1 <b>", "3:1 </b>", "3:5 \n",
                            "4:1 \n", "5:1 <c>", "5:1 </c>", "5:5 </a>", "5:9 endDocument"));
}

/// The text of one token comes in pieces of at most 1,024 units.
TEST_F(LocationsTest, PiecesOfLongTextStandWhereTheyBegin) {
    std::size_t column = 4, pieces = 0;
    for (const std::string& place : places("<a>" + std::string(5000, 'x') + "</a>")) {
        const std::string what = place.substr(place.find(' ') + 1);
        if (what[0] != 'x')
            continue;
        EXPECT_EQ("1:" + std::to_string(column) + " " + what, place);
        column += what.size();
        ++pieces;
    }
    EXPECT_EQ(5004u, column);
    EXPECT_GT(pieces, 1u);
}

TEST_F(LocationsTest, PairThatIsPutTogetherStandsAtItsStart) {
    for (const bool big : {false, true})
        for (const std::size_t padding : {1022u, 1023u, 1024u, 1025u}) {
            const std::vector<std::string> all =
                places(utf16(u"\uFEFF<a>" + std::u16string(padding, u'x') + u"\U0001F600z<b/></a>", big));
            EXPECT_THAT(all, ::testing::Contains("1:" + std::to_string(padding + 6) + " <b>")) << padding;
            for (const std::string& place : all)
                if (place.ends_with("\xF0\x9F\x98\x80") && place.find("xx") == std::string::npos) {
                    EXPECT_EQ("1:" + std::to_string(padding + 4) + " \xF0\x9F\x98\x80", place);
                }
        }
}

struct ErrorCase {
    const char* name;
    const char* document;
    const char* message;
    int line, column;
};

const ErrorCase kErrorCases[] = {
    {"Empty", "", "no element found", 1, 1},
    {"MismatchedTag", "<a>\n<b></c></a>", "mismatched tag", 2, 6},
    {"Unclosed", "<a>\n<b>", "no element found", 2, 4},
    {"BadToken", "<a>\n <1/></a>", "not well-formed", 2, 3},
    {"TwoRoots", "<a/>\n<b/>", "junk after document element", 2, 1},
    {"DuplicateAttribute", "<a b='' b=''/>", "duplicate attribute", 1, 9},
    {"UndefinedEntity", "<a>\n x&y;</a>", "undefined entity", 2, 3},
    {"BadReference", "<a>&#0;</a>", "reference to invalid character number", 1, 4},
    {"UnboundPrefix", "<a>\n <p:b/></a>", "the prefix p is not bound", 2, 2},
    {"TextOutside", "x <a/>", "syntax error", 1, 1},
    {"LateDeclaration", " <?xml version='1.0'?><a/>", "XML or text declaration not at start of entity", 1, 2},
    {"UnclosedSection", "<a><![CDATA[x", "unclosed CDATA section", 1, 14},
};

class ErrorPlaceTest : public LocationsTest, public ::testing::WithParamInterface<ErrorCase> {};

TEST_P(ErrorPlaceTest, IsToldWithItsMessage) {
    const Outcome outcome = refused(GetParam().document);
    EXPECT_EQ(GetParam().message, outcome.message);
    EXPECT_EQ(GetParam().line, outcome.line);
    EXPECT_EQ(GetParam().column, outcome.column);
}

INSTANTIATE_TEST_SUITE_P(All, ErrorPlaceTest, ::testing::ValuesIn(kErrorCases),
                         [](const auto& info) { return info.param.name; });

TEST_F(LocationsTest, ErrorsCarryTheIdentifiersOfTheirEntity) {
    MemoryByteChannel channel("<a>", 3);
    InputSource source(&channel);
    source.setPublicId(text(u"-//p//"));
    source.setSystemId(text(u"dir/doc.xml"));
    try {
        reader().parse(source);
        FAIL();
    } catch (const SaxParseException& e) {
        EXPECT_EQ("-//p//", show(e.getPublicId()));
        EXPECT_EQ("dir/doc.xml", show(e.getSystemId())) << "as the application wrote it";
    }
    try {
        MemoryByteChannel again("<a>", 3);
        InputSource bare(&again);
        reader().parse(bare);
        FAIL();
    } catch (const SaxParseException& e) {
        EXPECT_TRUE(e.getPublicId().isNull());
        EXPECT_TRUE(e.getSystemId().isNull());
    }
}

TEST_F(LocationsTest, LocatorTellsVersionAndEncoding) {
    class Noter : public DefaultHandler2 {
    public:
        std::vector<std::string> seen;
        void setDocumentLocator(Locator* locator) override { locator_ = dynamic_cast<Locator2*>(locator); }
        void startElement(const XmlString&, const XmlString&, const XmlString&, const Attributes&) override {
            seen.push_back(show(locator_->getXMLVersion()) + " " + show(locator_->getEncoding()));
        }

    private:
        Locator2* locator_ = nullptr;
    } noter;
    reader().setContentHandler(&noter);
    readExternalEntities();
    serveResources();
    resources["file:///e"] = "<?xml version='1.0' encoding='ISO-8859-1'?><b/>";
    read("<?xml version='1.1' encoding='utf-8'?><!DOCTYPE a [<!ENTITY e SYSTEM 'file:///e'>]><a>&e;<c/></a>");
    EXPECT_THAT(noter.seen, ElementsAre("1.1 utf-8", "1.0 ISO-8859-1", "1.1 utf-8"));
}

/// Gives the same bytes again and again.
class RepeatingChannel : public ReadableByteChannel {
public:
    RepeatingChannel(std::string begin, std::string middle, long long times, std::string end)
        : begin_(std::move(begin)), middle_(std::move(middle)), end_(std::move(end)), times_(times) {}
    void close() override {}
    bool isOpen() const override { return true; }
    unsigned int read(unsigned char* buffer, unsigned int) override {
        std::string next;
        next.swap(begin_);
        if (next.empty() && times_ > 0) {
            next = middle_;
            --times_;
        } else if (next.empty()) {
            next.swap(end_);
        }
        return static_cast<unsigned int>(next.copy(reinterpret_cast<char*>(buffer), next.size()));
    }

private:
    std::string begin_, middle_, end_;
    long long times_;
};

/// Expat counts in 32 bits on i386; both numbers go beyond that here.
TEST_F(LocationsTest, PlacesHave64Bits) {
    DefaultHandler2 quiet;
    reader().setContentHandler(&quiet);
    const auto end = [&](const std::string& middle, long long times) {
        RepeatingChannel channel("<a><!--", middle, times, "--></a><");
        InputSource source(&channel);
        return outcomeOf([&] { reader().parse(source); });
    };
    // Comments end up in Expat's buffer as a whole, so there are many of them.
    const std::string lines = "-->" + std::string(4000, '\n') + "<!--";
    const Outcome manyLines = end(lines, 1000);
    EXPECT_EQ(4000001, manyLines.line);
    const Outcome wide = end("-->" + std::string(4000, 'x') + "<!--", 1000);
    EXPECT_EQ(1, wide.line);
    EXPECT_EQ(1000 * 4007 + 15, wide.column);
}

} // namespace
} // namespace Quillon::Xml::Sax
