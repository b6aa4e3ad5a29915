// Encodings of documents and entities: by mark, by declaration, by what the application says, by default.
#include "runtime/HostServices.h"
#include "runtime/Transcoding.h"
#include "saxengine/ReadingFixture.h"
#include "support/SharedData.h"
#include "xml/sax/Locator2.h"

#include <cstring>
#include <gmock/gmock.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using namespace std::string_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// Notes the encoding that the locator tells at the first element.
class EncodingsTest : public ReadingFixture {
protected:
    void SetUp() override {
        ReadingFixture::SetUp();
        handler().joinText(true);
        serveResources();
        readExternalEntities();
    }
    /// The text of a document, and nothing else of it.
    std::string textOf(std::string_view bytes, const char16_t* encoding = nullptr) {
        const Outcome outcome = read(bytes, u"file:///x/z.xml", encoding);
        if (outcome.threw)
            return "(" + outcome.message + " at " + std::to_string(outcome.line) + ":"
                   + std::to_string(outcome.column) + ")";
        std::string all;
        for (const std::string& line : handler().linesOf("characters"))
            all += line.substr(12, line.size() - 14);
        return all;
    }
    std::string encodingOf(std::string_view bytes, const char16_t* encoding = nullptr) {
        class Noter : public DefaultHandler2 {
        public:
            void setDocumentLocator(Locator* locator) override {
                locator_ = dynamic_cast<Locator2*>(locator);
            }
            void startElement(const XmlString&, const XmlString&, const XmlString&,
                              const Attributes&) override {
                encoding = show(locator_->getEncoding());
            }
            std::string encoding;

        private:
            Locator2* locator_ = nullptr;
        } noter;
        reader().setContentHandler(&noter);
        const Outcome outcome = read(bytes, nullptr, encoding);
        reader().setContentHandler(&handler());
        return outcome.threw ? "(" + outcome.message + ")" : noter.encoding;
    }
    /// The units of `text` in an encoding that iconv knows.
    static std::string encoded(const char* encoding, std::u16string_view text) {
        std::string result = encodedWhole(encoding, std::u16string(text) + u"\u0001");
        result.resize(result.size() - encodedWhole(encoding, u"\u0001").size());
        return result;
    }

private:
    /// utf16ToEncoding ends its text with a zero byte, which says nothing where characters hold zero bytes themselves:
    /// so each unit is encoded alone.
    static std::string encodedWhole(const char* encoding, const std::u16string& text) {
        std::string result;
        std::vector<unsigned short> units(text.begin(), text.end());
        char* bytes = Runtime::utf16ToEncoding(encoding, units.data(), units.size());
        EXPECT_NE(nullptr, bytes) << encoding;
        if (bytes)
            result = bytes;
        Runtime::release(bytes);
        return result;
    }
};

const char kUmlauts[] = "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80"; // ä, €, a character beyond U+FFFF

TEST_F(EncodingsTest, Utf8IsTheDefault) {
    EXPECT_EQ(kUmlauts, textOf("<a>"s + kUmlauts + "</a>"));
    EXPECT_EQ(kUmlauts, textOf("\xEF\xBB\xBF<a>"s + kUmlauts + "</a>"));
    EXPECT_EQ(kUmlauts, textOf("\xEF\xBB\xBF<?xml version='1.0' encoding='utf-8'?><a>"s + kUmlauts + "</a>"));
    EXPECT_EQ("UTF-8", encodingOf("<a/>"));
    EXPECT_EQ("UTF-8", encodingOf("\xEF\xBB\xBF<a/>"));
    EXPECT_EQ("utf-8", encodingOf("<?xml version='1.0' encoding='utf-8'?><a/>"));
}

class Utf16Test : public EncodingsTest, public ::testing::WithParamInterface<bool> {};

TEST_P(Utf16Test, IsReadWithAndWithoutMarkAndDeclaration) {
    const bool big = GetParam();
    const std::u16string body = u"<a>\u00E4\u20AC\U0001F600</a>";
    for (const std::u16string& mark : {std::u16string(u"\uFEFF"), std::u16string()}) {
        EXPECT_EQ(kUmlauts, textOf(utf16(mark + body, big)));
        EXPECT_EQ(kUmlauts, textOf(utf16(mark + u"<?xml version='1.0' encoding='UTF-16'?>" + body, big)));
        const std::u16string named = big ? u"UTF-16BE" : u"utf-16le";
        EXPECT_EQ(kUmlauts,
                  textOf(utf16(mark + u"<?xml version='1.0' encoding='" + named + u"'?>" + body, big)));
        EXPECT_EQ(kUmlauts,
                  textOf(utf16(mark + u"<?xml version='1.0' encoding='ISO-10646-UCS-2'?>" + body, big)));
        EXPECT_EQ(kUmlauts, textOf(utf16(mark + body, big), u"UTF-16"));
        EXPECT_EQ(kUmlauts, textOf(utf16(mark + body, big), big ? u"UTF-16BE" : u"UTF-16LE"));
        EXPECT_EQ(kUmlauts, textOf(utf16(mark + u"<?xml version='1.0' encoding='ISO-8859-1'?>" + body, big),
                                   u"UTF-16"));
    }
    EXPECT_EQ(kUmlauts, textOf(utf16(u"\n" + body, big)));
    EXPECT_EQ(big ? "UTF-16BE" : "UTF-16LE", encodingOf(utf16(u"\uFEFF<a/>", big)));
    EXPECT_EQ("UTF-16", encodingOf(utf16(u"<?xml version='1.0' encoding='UTF-16'?><a/>", big)));
}

TEST_P(Utf16Test, ContradictionIsFatal) {
    const bool big = GetParam();
    for (const char16_t* name :
         {u"UTF-8", u"ISO-8859-1", u"UTF-32", u"EUC-KR", big ? u"UTF-16LE" : u"UTF-16BE"}) {
        const std::u16string document = u"<?xml version='1.0' encoding='" + std::u16string(name) + u"'?><a/>";
        EXPECT_THAT(textOf(utf16(u"\uFEFF" + document, big)), HasSubstr("but the text is in UTF-16"));
        EXPECT_THAT(textOf(utf16(document, big)), HasSubstr("but the text is in UTF-16"));
    }
    EXPECT_THAT(textOf(utf16(u"\uFEFF<a/>", big), big ? u"UTF-16LE" : u"UTF-16BE"),
                HasSubstr("that the application named"));
    EXPECT_THAT(textOf(utf16(u"<a/>", big), big ? u"UTF-16LE" : u"UTF-16BE"),
                HasSubstr("that the application named"));
    for (const char16_t* name : {u"UTF-8", u"ISO-8859-1", u"US-ASCII"}) {
        EXPECT_THAT(textOf(utf16(u"\uFEFF<a/>", big), name), HasSubstr("that the application named"));
        EXPECT_THAT(textOf(utf16(u"<a/>", big), name), HasSubstr("that the application named"));
    }
}

INSTANTIATE_TEST_SUITE_P(Orders, Utf16Test, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "BigEndian" : "LittleEndian"; });

TEST_F(EncodingsTest, Latin1AndAsciiAreRead) {
    EXPECT_EQ("\xC3\xA4\xC2\x80", textOf("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE4\x80</a>"));
    EXPECT_EQ("\xC3\xA4", textOf("<?xml version='1.0' encoding='iso-8859-1' ?><a>\xE4</a>"));
    EXPECT_EQ("\xC3\xA4", textOf("<a>\xE4</a>", u"ISO-8859-1"));
    EXPECT_EQ("x\xC3\xA4", textOf("<?xml version='1.0' encoding='US-ASCII'?><a>x&#xE4;</a>"));
    EXPECT_EQ("x", textOf("<a>x</a>", u"us-ascii"));
    EXPECT_EQ("ISO-8859-1", encodingOf("<?xml version='1.0' encoding='ISO-8859-1'?><a/>"));
}

struct IconvCase {
    const char* name;
    const char16_t* text;
};

const IconvCase kIconvCases[] = {
    {"EUC-KR", u"\uB3D9\uC801"},
    {"Shift_JIS", u"\u65E5\u672C\uFF76"},
    {"GB18030", u"\u4E2D\u20AC\U0001F600"},
    {"windows-1252", u"\u20AC\u201C"},
    {"EUC-JP", u"\u65E5\u672C"},
    {"ISO-2022-JP", u"\u65E5\u672C"},
    {"KOI8-R", u"\u0416\u044F"},
    {"ISO-8859-15", u"\u20AC"},
    {"Big5", u"\u4E2D"},
    {"windows-1258", u"\u1EA5\u00E2"},
    {"UTF8", u"\u20AC"},
    {"latin1", u"\u00E4"},
};

class IconvTest : public EncodingsTest, public ::testing::WithParamInterface<IconvCase> {};

TEST_P(IconvTest, IsReadAsDeclaredAndAsSaid) {
    const std::string name = GetParam().name;
    const std::string wanted = show(text(GetParam().text));
    std::u16string declaration = u"<?xml version='1.0' encoding='";
    declaration.append(name.begin(), name.end());
    const std::u16string body = u"<a>" + std::u16string(GetParam().text) + u"</a>";
    EXPECT_EQ(wanted, textOf(encoded(name.c_str(), declaration + u"'?>" + body)));
    EXPECT_EQ(name, encodingOf(encoded(name.c_str(), declaration + u"'?>" + body)));
    const std::u16string external(name.begin(), name.end());
    EXPECT_EQ(wanted, textOf(encoded(name.c_str(), body), external.c_str()));
    resources["file:///x/e.ent"] = encoded(name.c_str(), declaration + u"'?>" + GetParam().text);
    EXPECT_EQ(wanted, textOf("<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>"));
    resources["file:///x/a.dtd"] =
        encoded(name.c_str(), declaration + u"'?><!ENTITY e '" + GetParam().text + u"'>");
    EXPECT_EQ(wanted, textOf("<!DOCTYPE a SYSTEM 'a.dtd'><a>&e;</a>"));
}

INSTANTIATE_TEST_SUITE_P(Encodings, IconvTest, ::testing::ValuesIn(kIconvCases), [](const auto& info) {
    std::string name = info.param.name;
    std::erase_if(name, [](char c) { return !std::isalnum(static_cast<unsigned char>(c)); });
    return name;
});

/// The bytes of UTF-32.
std::string utf32(std::u32string_view text, bool bigEndian) {
    std::string bytes;
    for (const char32_t c : text)
        for (int i = 0; i < 4; ++i)
            bytes += static_cast<char>(c >> (bigEndian ? 24 - 8 * i : 8 * i));
    return bytes;
}

TEST_F(EncodingsTest, Utf32IsReadWithAndWithoutMark) {
    for (const bool big : {false, true}) {
        const std::u32string body = U"<a>\u00E4\u20AC\U0001F600</a>";
        EXPECT_EQ(kUmlauts, textOf(utf32(U"\uFEFF" + body, big)));
        EXPECT_EQ(kUmlauts, textOf(utf32(body, big)));
        EXPECT_EQ(kUmlauts, textOf(utf32(U"<?xml version='1.0' encoding='UTF-32'?>" + body, big)));
        EXPECT_EQ(kUmlauts, textOf(utf32(U"\uFEFF<?xml version='1.0' encoding='UCS-4'?>" + body, big)));
        EXPECT_EQ(kUmlauts, textOf(utf32(body, big), u"UTF-32"));
        EXPECT_EQ(kUmlauts, textOf(utf32(U"\uFEFF" + body, big), big ? u"UTF-32BE" : u"UTF-32LE"));
        EXPECT_THAT(textOf(utf32(U"<?xml version='1.0' encoding='UTF-8'?><a/>", big)),
                    HasSubstr("but the text is in UTF-32"));
        EXPECT_THAT(textOf(utf32(U"<a>" + std::u32string(1, 0xD800) + U"</a>", big)),
                    HasSubstr("ill-formed in the encoding"));
        EXPECT_THAT(textOf(utf32(U"<a>" + std::u32string(1, 0x110000) + U"</a>", big)),
                    HasSubstr("ill-formed in the encoding"));
    }
}

TEST_F(EncodingsTest, EbcdicIsReadAsDeclared) {
    for (const char* name : {"IBM037", "IBM500", "IBM1047", "IBM273"}) {
        std::u16string declaration = u"<?xml version='1.0' encoding='";
        declaration.append(name, name + std::strlen(name));
        const std::string document = encoded(name, declaration + u"'?><a b='c'>\u00E4[x]</a>");
        EXPECT_EQ("\xC3\xA4[x]", textOf(document)) << name;
    }
    EXPECT_THAT(textOf(encoded("IBM037", u"<?xml version='1.0'?><a/>")), HasSubstr("EBCDIC"));
    EXPECT_THAT(textOf(encoded("IBM037", u"<?xml version='1.0' encoding='UTF-8'?><a/>")),
                HasSubstr("declared as \"UTF-8\""));
    EXPECT_THAT(textOf(encoded("IBM037", u"<?xml version='1.0' encoding='KOI8-R'?><a/>")),
                HasSubstr("EBCDIC"));
    EXPECT_EQ("x", textOf(encoded("IBM037", u"<a>x</a>"), u"IBM037"));
}

TEST_F(EncodingsTest, UnknownEncodingIsFatalAndNamed) {
    EXPECT_EQ("(the encoding \"no-such\" is not known at 1:1)",
              textOf("<?xml version='1.0' encoding='no-such'?><a/>"));
    EXPECT_EQ("(the encoding \"no-such\" is not known at 1:1)", textOf("<a/>", u"no-such"));
    EXPECT_EQ("(the encoding \"UTF-8//IGNORE\" is not known at 1:1)", textOf("<a/>", u"UTF-8//IGNORE"));
    EXPECT_EQ("(the encoding \"../x\" is not known at 1:1)", textOf("<a/>", u"../x"));
    EXPECT_EQ("(the encoding \"\xC3\xA4\" is not known at 1:1)", textOf("<a/>", u"\u00E4"));
    EXPECT_THAT(textOf("<?xml version='1.0' encoding='a//b'?><a/>"),
                HasSubstr("XML declaration not well-formed"));
    EXPECT_THAT(textOf("<?xml version='1.0' encoding=''?><a/>"),
                HasSubstr("XML declaration not well-formed"));
    resources["file:///x/e.ent"] = "<?xml encoding='no-such'?>";
    const Outcome outcome = read("<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>", u"file:///x/z.xml");
    EXPECT_EQ("the encoding \"no-such\" is not known", outcome.message);
    EXPECT_EQ("file:///x/e.ent", outcome.systemId);
}

TEST_F(EncodingsTest, IllFormedBytesAreFatalAndTheEncodingIsNamed) {
    EXPECT_EQ("(bytes that are ill-formed in the encoding \"UTF-8\" at 2:3)", textOf("<a>\nxy\xFF</a>"));
    EXPECT_EQ("(bytes that are ill-formed in the encoding \"UTF-8\" at 1:5)", textOf("<a>x\xC3</a>"));
    EXPECT_EQ("(bytes that are ill-formed in the encoding \"UTF-8\" at 1:4)",
              textOf("<a>\xED\xA0\x80</a>")); // U+D800
    EXPECT_EQ("(bytes that are ill-formed in the encoding \"UTF-8\" at 1:4)", textOf("<a>\xC0\xAF</a>"));
    EXPECT_EQ("(bytes that are ill-formed in the encoding \"UTF-8\" at 1:7)", textOf("<a b='\xFE'/>"));
    EXPECT_EQ("(bytes that are ill-formed in the encoding \"US-ASCII\" at 1:43)",
              textOf("<?xml version='1.0' encoding='US-ASCII'?><\xE4/>"));
    EXPECT_EQ("(bytes that are ill-formed in the encoding \"EUC-KR\" at 2:4)",
              textOf("<?xml version='1.0' encoding='EUC-KR'?>\n<a>\xB5\xFF</a>"));
    EXPECT_EQ("(bytes that are ill-formed in the encoding \"windows-1252\" at 2:4)",
              textOf("<?xml version='1.0' encoding='windows-1252'?>\n<a>\x81</a>"));
    EXPECT_THAT(textOf("<a>\x01</a>"), HasSubstr("the character U+0001 is not allowed"));
    EXPECT_THAT(textOf("<a>\xEF\xBF\xBE</a>"), HasSubstr("the character U+FFFE is not allowed"));
    EXPECT_THAT(textOf("<a>\xEF\xBF\xBF</a>"), HasSubstr("the character U+FFFF is not allowed"));
    for (const bool big : {false, true})
        EXPECT_THAT(textOf(utf16(u"\uFEFF<a>\u0001</a>", big)),
                    HasSubstr("the character U+0001 is not allowed"));
}

/// Around the place where the reader's chunks of a document in UTF-8 end.
TEST_F(EncodingsTest, IllFormedBytesAreFoundAtTheEndOfAChunk) {
    for (std::size_t size = 32 * 1024 - 6; size < 32 * 1024 + 4; ++size) {
        const std::string document = "<a>\n" + std::string(size - 4, 'x');
        for (const char* bad : {"\xC3", "\xE2\x82", "\xF0\x9F\x98", "\xFF"}) {
            const Outcome outcome = refused(document + bad + "x</a>");
            EXPECT_EQ("bytes that are ill-formed in the encoding \"UTF-8\"", outcome.message);
            EXPECT_EQ(2, outcome.line);
            EXPECT_EQ(static_cast<long long>(size) - 3, outcome.column);
        }
        EXPECT_FALSE(read(document + "\xF0\x9F\x98\x80</a>").threw);
    }
}

/// Expat is given UTF-16: there, these characters at the beginning would be taken for a mark of the other byte order,
/// or for another encoding.
TEST_F(EncodingsTest, FirstCharacterIsNotTakenForAMark) {
    EXPECT_EQ("(the character U+FFFE is not allowed at 1:1)", textOf("\xEF\xBF\xBE<a/>"));
    EXPECT_THAT(textOf("\xEB\xAF\xAF\xC2\xBF<a/>"), HasSubstr("not well-formed at 1:1)")); // U+BBEF U+00BF
    readExternalEntities();
    serveResources();
    handler().joinText(true);
    const std::string document = "<!DOCTYPE a [<!ENTITY e SYSTEM 'file:///e'>]><a>&e;</a>";
    for (const char* text : {"\xC4\x80", "\xC4\x80x", "\xEB\xAF\xAF\xC2\xBF", "\xE3\xB0\x80"}) { // U+3C00
        resources["file:///e"] = text;
        EXPECT_THAT(events(document, "characters"), ElementsAre("characters(\"" + std::string(text) + "\")"));
    }
    resources["file:///e"] = "\xEF\xBF\xBE\xE4\xB8\xAD";
    const Outcome outcome = refused(document);
    EXPECT_EQ("the character U+FFFE is not allowed", outcome.message);
    EXPECT_EQ("file:///e", outcome.systemId);
    EXPECT_EQ(1, outcome.column);
}

/// Each would be a document if its bytes were taken for those of another encoding, as Expat by itself does.
TEST_F(EncodingsTest, TextIsNotReadInAnotherEncodingThanItsOwn) {
    const std::u16string swapped = u"\u3C00\u6100\u2F00\u3E00", packed = u"\uBBEF\u3CBF\u2F61\u203E";
    EXPECT_EQ("(not well-formed at 1:1)", textOf("\xE3\xB0\x80\xE6\x84\x80\xE2\xBC\x80\xE3\xB8\x80"));
    EXPECT_EQ("(not well-formed at 1:1)",
              textOf("\xEF\xBB\xBF\xE3\xB0\x80\xE6\x84\x80\xE2\xBC\x80\xE3\xB8\x80"));
    EXPECT_EQ("(not well-formed at 1:1)", textOf("\xEB\xAF\xAF\xE3\xB2\xBF\xE2\xBD\xA1\xE2\x80\xBE"));
    for (const bool big : {false, true})
        EXPECT_EQ("(not well-formed at 1:1)", textOf(utf16(u"\uFEFF" + swapped, big)));
    EXPECT_EQ("(not well-formed at 1:1)", textOf(utf16(u"\uFEFF" + packed, false)));
    const std::string zeros("<\0\0\0\0\0\0\0a\0\0\0\0\0\0\0/\0\0\0\0\0\0\0>\0\0\0\0\0\0\0", 32);
    EXPECT_EQ("(the character U+0000 is not allowed at 1:2)", textOf(zeros)); // in UTF-32
    resources["file:///d"] = "\xE3\xB0\x80\xE2\x84\x80";
    readExternalEntities();
    serveResources();
    EXPECT_EQ("file:///d", refused("<!DOCTYPE a SYSTEM 'file:///d'><a/>").systemId);
}

TEST_F(EncodingsTest, InputThatEndsInsideACharacterIsFatal) {
    EXPECT_EQ("(the input ends inside a character of the encoding \"UTF-8\" at 1:5)", textOf("<a/>\xC3"));
    EXPECT_EQ("(the input ends inside a character of the encoding \"UTF-8\" at 2:1)",
              textOf("<a>\n\xF0\x9F\x98"));
    EXPECT_EQ("(the input ends inside a character of UTF-16 at 1:5)",
              textOf(utf16(u"\uFEFF<a/>", true) + '\0'));
    EXPECT_EQ("(the input ends inside a character of the encoding \"EUC-KR\" at 1:44)",
              textOf("<?xml version='1.0' encoding='EUC-KR'?><a/>\xB5"));
}

TEST_F(EncodingsTest, MarkOfUtf8WithAnotherDeclarationIsFatal) {
    for (const char* name : {"ISO-8859-1", "US-ASCII", "UTF-16", "windows-1252", "EUC-KR"}) {
        const std::string document = "\xEF\xBB\xBF<?xml version='1.0' encoding='"s + name + "'?><a/>";
        EXPECT_THAT(textOf(document), HasSubstr("the encoding is declared as \""s + name + "\"")) << name;
    }
    resources["file:///x/e.ent"] = "\xEF\xBB\xBF<?xml encoding='ISO-8859-1'?>x";
    EXPECT_THAT(textOf("<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>"),
                HasSubstr("declared as \"ISO-8859-1\""));
    EXPECT_EQ("x", textOf("\xEF\xBB\xBF<?xml version='1.0' encoding='ISO-8859-1'?><a>x</a>", u"UTF-8"));
}

TEST_F(EncodingsTest, DeclarationOfAWideEncodingInNarrowTextIsFatal) {
    for (const char* name : {"UTF-16", "UTF-16LE", "ISO-10646-UCS-2", "UTF-32", "UCS-4"})
        EXPECT_THAT(textOf("<?xml version='1.0' encoding='"s + name + "'?><a/>"),
                    HasSubstr("characters of one byte"))
            << name;
    EXPECT_THAT(textOf("<?xml version='1.0' encoding='IBM037'?><a/>"),
                HasSubstr("but the text is in another encoding"));
}

TEST_F(EncodingsTest, WhatTheApplicationSaysGoesBeforeTheDeclaration) {
    EXPECT_EQ("\xC3\xA4", textOf("<?xml version='1.0' encoding='UTF-8'?><a>\xE4</a>", u"ISO-8859-1"));
    EXPECT_EQ("\xC3\xA4", textOf("<?xml version='1.0' encoding='ISO-8859-1'?><a>\xC3\xA4</a>", u"UTF-8"));
    EXPECT_EQ("\xE2\x82\xAC",
              textOf("<?xml version='1.0' encoding='ISO-8859-1'?><a>\x80</a>", u"windows-1252"));
    EXPECT_EQ("\xC3\xA4", textOf("<?xml version='1.0' encoding='no-such'?><a>\xE4</a>", u"ISO-8859-1"));
    EXPECT_EQ("UTF-8", encodingOf("<?xml version='1.0' encoding='ISO-8859-1'?><a/>", u"UTF-8"));
}

TEST_F(EncodingsTest, DeclarationThatIsTooLongIsFatal) {
    const std::string space(10000, ' ');
    EXPECT_EQ("x", textOf("<?xml version='1.0'" + std::string(3000, ' ') + "encoding='EUC-KR'?><a>x</a>"));
    EXPECT_THAT(textOf("<?xml version='1.0'" + space + "encoding='EUC-KR'?><a>x</a>"),
                HasSubstr("its declaration is too long"));
}

/// Gives one byte at a time.
class SlowChannel : public ReadableByteChannel {
public:
    explicit SlowChannel(std::string_view bytes) : bytes_(bytes) {}
    void close() override {}
    bool isOpen() const override { return true; }
    unsigned int read(unsigned char* buffer, unsigned int) override {
        if (bytes_.empty())
            return 0;
        *buffer = static_cast<unsigned char>(bytes_[0]);
        bytes_.remove_prefix(1);
        return 1;
    }

private:
    std::string_view bytes_;
};

TEST_F(EncodingsTest, BytesMayArriveOneByOne) {
    const std::u16string body = u"<a>\u00E4\r\n\u20AC\U0001F600</a>\r\n";
    const std::u16string declaration = u"<?xml version='1.0' encoding='";
    const std::string wanted = "\xC3\xA4\\n\xE2\x82\xAC\xF0\x9F\x98\x80";
    for (const std::string& document :
         {encoded("UTF-8", body), utf16(u"\uFEFF" + body, true), utf16(body, false),
          encoded("GB18030", declaration + u"GB18030'?>" + body),
          utf32(U"<a>\u00E4\r\n\u20AC\U0001F600</a>", true)}) {
        SlowChannel channel(document);
        InputSource source(&channel);
        handler().clear();
        reader().parse(source);
        EXPECT_THAT(handler().linesOf("characters"), ElementsAre("characters(\"" + wanted + "\")"));
    }
}

TEST_F(EncodingsTest, SecondMarkIsACharacter) {
    EXPECT_TRUE(read("\xEF\xBB\xBF\xEF\xBB\xBF<a/>").isParseException);
    EXPECT_TRUE(read(utf16(u"\uFEFF\uFEFF<a/>", true)).isParseException);
    resources["file:///x/e.ent"] = "\xEF\xBB\xBF\xEF\xBB\xBFx";
    EXPECT_EQ("\xEF\xBB\xBFx", textOf("<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>"));
}

/// Only in a document must the first bytes be those of markup.
TEST_F(EncodingsTest, TextOfAnEntityMayLookLikeAMark) {
    handler().joinText(true);
    std::string entity = "\xFE\xFFx";
    reader().setEntityResolver(&handler());
    std::unique_ptr<MemoryByteChannel> channel;
    handler().resolveWith([&](const XmlString&, const XmlString&) {
        channel = std::make_unique<MemoryByteChannel>(entity.data(), entity.size());
        auto* source = new InputSource(channel.get());
        source->setEncoding(text(u"ISO-8859-1"));
        return source;
    });
    const char* document = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>";
    EXPECT_EQ("\xC3\xBE\xC3\xBFx", textOf(document));
    entity = "\xEF\xBB\xBFx";
    EXPECT_EQ("\xC3\xAF\xC2\xBB\xC2\xBFx", textOf(document));
    EXPECT_TRUE(read(entity + "<a/>", nullptr, u"ISO-8859-1").isParseException);
    handler().resolveWith({});
}

TEST_F(EncodingsTest, StressDataIsRefusedLineByLine) {
    if (!hasSharedData("ill-formed UTF-8 and UTF-16"))
        return;
    int refused = 0;
    for (const std::vector<std::string>& row : tableRows(sharedData("utf/wpt-invalid.tsv"))) {
        const bool isUtf8 = row.at(0).find("16") == std::string::npos;
        std::string bytes;
        for (std::size_t k = 0; k + 1 < row.at(1).size(); k += 2)
            bytes += static_cast<char>(std::stoi(row.at(1).substr(k, 2), nullptr, 16));
        const std::string document =
            isUtf8 ? "<a>" + bytes + "</a>" : utf16(u"\uFEFF<a>", false) + bytes + utf16(u"</a>", false);
        EXPECT_TRUE(read(document).isParseException) << row.at(0) << " " << row.at(1);
        ++refused;
    }
    EXPECT_EQ(39, refused);
}

} // namespace
} // namespace Quillon::Xml::Sax
