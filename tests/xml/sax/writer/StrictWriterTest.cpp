#include "xml/sax/writer/StrictWriter.h"

#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/SaxNotSupportedException.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <sstream>
#include <streambuf>
#include <string>
#include <tuple>
#include <vector>

namespace Quillon::Xml::Sax {
namespace {

using Testing::show;
using Testing::text;

/// A writer that is driven by literals.
class Driver {
public:
    explicit Driver(const char* encoding = "UTF-8") : writer(out) { writer.setEncoding(encoding); }

    std::ostringstream out;
    StrictWriter writer;

    struct Attribute {
        const char16_t *uri, *localName, *qName, *value;
        const char16_t* type = u"CDATA";
    };

    Driver& document() { return writer.startDocument(), *this; }
    Driver& end() { return writer.endDocument(), *this; }
    Driver& map(const char16_t* prefix, const char16_t* uri) {
        return writer.startPrefixMapping(text(prefix), text(uri)), *this;
    }
    Driver& unmap(const char16_t* prefix) { return writer.endPrefixMapping(text(prefix)), *this; }
    Driver& start(const char16_t* name, const std::vector<Attribute>& list = {}) {
        return start(u"", name, name, list);
    }
    Driver& start(const char16_t* uri, const char16_t* localName, const char16_t* qName,
                  const std::vector<Attribute>& list = {}) {
        AttributesImpl attributes;
        for (const Attribute& a : list)
            attributes.addAttribute(text(a.uri), text(a.localName), text(a.qName), text(a.type),
                                    text(a.value));
        writer.startElement(text(uri), text(localName), text(qName), attributes);
        return *this;
    }
    Driver& stop(const char16_t* name) { return stop(u"", name, name); }
    Driver& stop(const char16_t* uri, const char16_t* localName, const char16_t* qName) {
        return writer.endElement(text(uri), text(localName), text(qName)), *this;
    }
    Driver& chars(const std::u16string& units) {
        const std::vector<unsigned short> copy(units.begin(), units.end());
        return writer.characters(copy.data(), 0, static_cast<unsigned int>(copy.size())), *this;
    }
    Driver& comment(const std::u16string& units) {
        const std::vector<unsigned short> copy(units.begin(), units.end());
        return writer.comment(copy.data(), 0, static_cast<unsigned int>(copy.size())), *this;
    }
    Driver& pi(const char16_t* target, const char16_t* data) {
        return writer.processingInstruction(text(target), text(data)), *this;
    }
    Driver& dtd(const char16_t* name, const char16_t* publicId = nullptr,
                const char16_t* systemId = nullptr) {
        return writer.startDTD(text(name), text(publicId), text(systemId)), *this;
    }
    Driver& endDtd() { return writer.endDTD(), *this; }

    /// What came behind the XML declaration.
    std::string body() const {
        const std::string all = out.str();
        const std::size_t end = all.starts_with("<?xml ") ? all.find('\n') + 1 : 0;
        return all.substr(end);
    }
};

class StrictWriterTest : public Testing::HostFixture {
protected:
    /// The messages of exceptions; they and the state of streams come and go.
    void warmUp() override { Driver(); }

    /// `event` must be refused with `message`, and leave what was written as it was.
    static void expectRefused(Driver& driver, const std::string& message,
                              const std::function<void()>& event) {
        const std::string before = driver.out.str();
        try {
            event();
            ADD_FAILURE() << "not refused; expected: " << message << "\nwritten: " << driver.out.str();
        } catch (const SaxException& refusal) {
            EXPECT_EQ(message, show(refusal.getMessage()));
            EXPECT_EQ(before, driver.out.str()) << message;
        }
    }
};

TEST_F(StrictWriterTest, WritesADocument) {
    Driver d;
    d.document()
        .start(u"a", {{u"", u"b", u"b", u"1"}})
        .chars(u"x<&>\"'")
        .start(u"c")
        .stop(u"c")
        .stop(u"a")
        .end();
    EXPECT_EQ("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<a b=\"1\">x&lt;&amp;&gt;\"'<c></c></a>\n\n",
              d.out.str());
}

TEST_F(StrictWriterTest, UsAsciiHasNoDeclarationAndNullEncodingIsUtf8) {
    Driver ascii("US-ASCII");
    ascii.document().start(u"a").stop(u"a").end();
    EXPECT_EQ("<a></a>\n\n", ascii.out.str());
    Driver null(nullptr);
    null.document().start(u"a").chars(u"\u20AC").stop(u"a").end();
    EXPECT_EQ("<a>\xE2\x82\xAC</a>\n\n", null.out.str());
}

TEST_F(StrictWriterTest, AnyOtherEncodingIsNotSupported) {
    for (const char* name : {"UTF-16", "utf-8", "EUC-KR"}) {
        Driver d(name);
        try {
            d.document();
            ADD_FAILURE() << name;
        } catch (const SaxNotSupportedException& refusal) {
            EXPECT_EQ(std::string("startDocument: encoding ") + name, show(refusal.getMessage()));
        }
        EXPECT_EQ("", d.out.str());
    }
}

TEST_F(StrictWriterTest, CharactersThatTheEncodingLacksBecomeReferences) {
    Driver ascii("US-ASCII");
    ascii.document()
        .start(u"a", {{u"", u"b", u"b", u"\u00E9\U0001F600"}})
        .chars(u"\u00FF\u20AC\U0001F600")
        .stop(u"a");
    EXPECT_EQ("<a b=\"&#xE9;&#x1F600;\">&#xFF;&#x20AC;&#x1F600;</a>", ascii.body());
    Driver latin("ISO-8859-1");
    latin.document().start(u"a", {{u"", u"b", u"b", u"\u00E9\u0100"}}).chars(u"\u00FF\u20AC").stop(u"a");
    EXPECT_EQ("<a b=\"\xE9&#x100;\">\xFF&#x20AC;</a>", latin.body());
}

TEST_F(StrictWriterTest, WhatAParserWouldNormaliseBecomesReferences) {
    Driver d;
    d.document().start(u"a", {{u"", u"b", u"b", u" \t\n\r\"<&>' "}}).chars(u"\t\n\r").stop(u"a");
    EXPECT_EQ("<a b=\" &#9;&#10;&#13;&quot;&lt;&amp;&gt;' \">\t\n&#13;</a>", d.body());
}

TEST_F(StrictWriterTest, SectionsAreSplitWhereTheyMustBe) {
    Driver d("ISO-8859-1");
    d.document().start(u"a");
    d.writer.startCDATA();
    d.chars(u"a]]>b]").chars(u"]").chars(u">c\rd\u20ACe]]]>");
    d.writer.endCDATA();
    d.stop(u"a");
    EXPECT_EQ("<a><![CDATA[a]]]]><![CDATA[>b]]]]><![CDATA[>c]]>&#13;<![CDATA[d]]>&#x20AC;<![CDATA[e]]]]]><!["
              "CDATA[>]]></a>",
              d.body());
}

TEST_F(StrictWriterTest, BracketsBeforeASectionDoNotCount) {
    Driver d;
    d.document().start(u"a").chars(u"]]");
    d.writer.startCDATA();
    d.chars(u">");
    d.writer.endCDATA();
    EXPECT_EQ("<a>]]<![CDATA[>]]>", d.body());
}

TEST_F(StrictWriterTest, EntityValuesGoOutAsReplacementText) {
    Driver d("US-ASCII");
    d.document().dtd(u"a");
    d.writer.internalEntityDecl(text(u"e"), text(u"&x;%p;\"'<\r\n\u00E9"));
    d.writer.internalEntityDecl(text(u"%p"), text(u"<!-- -->"));
    d.endDtd();
    EXPECT_EQ("<!DOCTYPE a [\n<!ENTITY e \"&#38;x;&#37;p;&#34;'<&#13;\n&#xE9;\">\n"
              "<!ENTITY % p \"<!-- -->\">\n]>\n",
              d.body());
}

TEST_F(StrictWriterTest, DeclarationsHaveTheirSpaces) {
    Driver d;
    d.document().dtd(u"a", u"p", u"s");
    d.writer.externalEntityDecl(text(u"x"), text(u"-//P//EN"), text(u"x.ent"));
    d.writer.externalEntityDecl(text(u"%y"), text(nullptr), text(u"a\"b"));
    d.writer.unparsedEntityDecl(text(u"u"), text(u"p"), text(u"u.gif"), text(u"n"));
    d.writer.notationDecl(text(u"n"), text(u"p"), text(nullptr));
    d.writer.notationDecl(text(u"o"), text(u"p"), text(u"s"));
    d.writer.notationDecl(text(u"q"), text(nullptr), text(u"s"));
    d.writer.elementDecl(text(u"a"), text(u"(#PCDATA|b)*"));
    d.writer.attributeDecl(text(u"a"), text(u"b"), text(u"CDATA"), text(u"#IMPLIED"), text(nullptr));
    d.writer.attributeDecl(text(u"a"), text(u"c"), text(u"(x|y)"), text(nullptr), text(u"x"));
    d.writer.attributeDecl(text(u"a"), text(u"d"), text(u"CDATA"), text(u"#FIXED"), text(u"<\n"));
    d.endDtd();
    EXPECT_EQ("<!DOCTYPE a PUBLIC \"p\" \"s\" [\n"
              "<!ENTITY x PUBLIC \"-//P//EN\" \"x.ent\">\n"
              "<!ENTITY % y SYSTEM 'a\"b'>\n"
              "<!ENTITY u PUBLIC \"p\" \"u.gif\" NDATA n>\n"
              "<!NOTATION n PUBLIC \"p\">\n"
              "<!NOTATION o PUBLIC \"p\" \"s\">\n"
              "<!NOTATION q SYSTEM \"s\">\n"
              "<!ELEMENT a (#PCDATA|b)*>\n"
              "<!ATTLIST a b CDATA #IMPLIED>\n"
              "<!ATTLIST a c (x|y) \"x\">\n"
              "<!ATTLIST a d CDATA #FIXED \"&lt;&#10;\">\n"
              "]>\n",
              d.body());
}

TEST_F(StrictWriterTest, TheExternalSubsetStaysOutside) {
    Driver d;
    d.document().dtd(u"a", nullptr, u"a.dtd");
    d.writer.startEntity(text(u"[dtd]"));
    d.writer.elementDecl(text(u"a"), text(u"ANY"));
    d.comment(u" c ");
    d.writer.endEntity(text(u"[dtd]"));
    d.endDtd().start(u"a").stop(u"a");
    EXPECT_EQ("<!DOCTYPE a SYSTEM \"a.dtd\" [\n\n]>\n<a></a>", d.body());
}

TEST_F(StrictWriterTest, ExternalEntitiesAreReferences) {
    Driver d;
    d.document().dtd(u"a");
    d.writer.externalEntityDecl(text(u"%p"), text(nullptr), text(u"p.ent"));
    d.writer.startEntity(text(u"%p"));
    d.writer.externalEntityDecl(text(u"e"), text(nullptr), text(u"e.ent"));
    d.writer.endEntity(text(u"%p"));
    d.endDtd().start(u"a");
    d.writer.startEntity(text(u"e"));
    d.start(u"b").chars(u"hidden").stop(u"b");
    d.writer.startCDATA();
    d.writer.endCDATA();
    d.writer.endEntity(text(u"e"));
    d.writer.startCDATA(); // boundaries of entities silence nothing
    d.chars(u"<");
    d.writer.endCDATA();
    d.stop(u"a");
    EXPECT_EQ("<!DOCTYPE a [\n<!ENTITY % p SYSTEM \"p.ent\">\n%p;\n]>\n<a>&e;<![CDATA[<]]></a>", d.body());
}

TEST_F(StrictWriterTest, ExpandingEntitiesWritesTheirContent) {
    Driver d;
    d.writer.expandingEntities(true);
    d.document().dtd(u"a", nullptr, u"a.dtd");
    d.writer.startEntity(text(u"[dtd]"));
    d.writer.elementDecl(text(u"a"), text(u"ANY"));
    d.writer.endEntity(text(u"[dtd]"));
    d.endDtd().start(u"a");
    d.writer.startEntity(text(u"e"));
    d.start(u"b").stop(u"b");
    d.writer.endEntity(text(u"e"));
    d.stop(u"a");
    EXPECT_EQ("<!DOCTYPE a [\n<!ELEMENT a ANY>\n\n]>\n<a><b></b></a>", d.body());
}

TEST_F(StrictWriterTest, CanonicalModeWritesNoDocumentTypeAndNoSections) {
    Driver d;
    d.writer.setCanonical(true);
    d.document().dtd(u"a");
    d.writer.elementDecl(text(u"a"), text(u"ANY"));
    d.comment(u"c").pi(u"p", u"d").endDtd().start(u"a");
    d.writer.startCDATA();
    d.chars(u"<");
    d.writer.endCDATA();
    d.stop(u"a").end();
    EXPECT_EQ("<?p d?><a>&lt;</a>", d.out.str());
}

TEST_F(StrictWriterTest, MappingsWithoutAttributesAreWritten) {
    Driver d;
    d.document().map(u"p", u"urn:p&").map(u"", u"urn:d").start(u"urn:p&", u"a", u"p:a");
    d.start(u"urn:d", u"b", u"b").stop(u"urn:d", u"b", u"b");
    d.stop(u"urn:p&", u"a", u"p:a").unmap(u"p").unmap(u"").end();
    EXPECT_EQ("<p:a xmlns:p=\"urn:p&amp;\" xmlns=\"urn:d\"><b></b></p:a>\n\n", d.body());
}

TEST_F(StrictWriterTest, MappingsWithAttributesAreNotWrittenTwice) {
    Driver d;
    d.document().map(u"p", u"urn:p").start(u"urn:p", u"a", u"p:a", {{u"", u"", u"xmlns:p", u"urn:p"}});
    d.stop(u"urn:p", u"a", u"p:a").unmap(u"p").end();
    EXPECT_EQ("<p:a xmlns:p=\"urn:p\"></p:a>\n\n", d.body());
}

/// More prefixes than are looked through one by one: found, hidden, refused twice, and ended in any order.
TEST_F(StrictWriterTest, ManyPrefixesAreToldApart) {
    constexpr int kCount = 40;
    const auto prefix = [](int i) {
        return std::u16string{u'p', static_cast<char16_t>(u'0' + i / 10),
                              static_cast<char16_t>(u'0' + i % 10)};
    };
    Driver d;
    d.document();
    for (int i = 0; i < kCount; ++i)
        d.map(prefix(i).c_str(), (u"urn:" + prefix(i)).c_str());
    expectRefused(d, "startPrefixMapping: twice for one element, for the prefix p00",
                  [&] { d.map(u"p00", u"urn:x"); });
    d.start(u"urn:p07", u"a", u"p07:a");
    d.map(u"p07", u"urn:hiding").start(u"urn:hiding", u"b", u"p07:b");
    expectRefused(d, "startElement: another namespace is bound to the prefix of p07:c",
                  [&] { d.start(u"urn:p07", u"c", u"p07:c"); });
    d.start(u"urn:p08", u"c", u"p08:c").stop(u"urn:p08", u"c", u"p08:c");
    d.stop(u"urn:hiding", u"b", u"p07:b");
    expectRefused(d, "endPrefixMapping: no mapping is to be ended of the prefix p08",
                  [&] { d.unmap(u"p08"); });
    d.unmap(u"p07").start(u"urn:p07", u"c", u"p07:c").stop(u"urn:p07", u"c", u"p07:c");
    d.stop(u"urn:p07", u"a", u"p07:a");
    for (int i = 0; i < kCount; i += 2)
        d.unmap(prefix(i).c_str());
    expectRefused(d, "endPrefixMapping: no mapping is to be ended of the prefix p02",
                  [&] { d.unmap(u"p02"); });
    for (int i = kCount - 1; i > 0; i -= 2)
        d.unmap(prefix(i).c_str());
    d.end();
}

TEST_F(StrictWriterTest, NamesWithoutExpandedFormAreNotLookedUp) {
    Driver d;
    d.document().start(u"", u"", u"x:y:z", {{u"", u"", u"q:r", u"1"}}).stop(u"", u"", u"x:y:z").end();
    EXPECT_EQ("<x:y:z q:r=\"1\"></x:y:z>\n\n", d.body());
}

TEST_F(StrictWriterTest, ExpandedNamesAreThereForAllElementsOrForNone) {
    Driver d;
    d.document().start(u"", u"", u"a");
    expectRefused(d, "startElement: the root and this element do not both have expanded names: b",
                  [&] { d.start(u"", u"b", u"b"); });
    Driver e;
    e.document().start(u"", u"a", u"a");
    expectRefused(e, "startElement: the root and this element do not both have expanded names: b",
                  [&] { e.start(u"", u"", u"b"); });
}

TEST_F(StrictWriterTest, TextInElementContentIsASection) {
    Driver d;
    d.document().dtd(u"a");
    d.writer.elementDecl(text(u"a"), text(u"(b)"));
    d.endDtd().start(u"a").chars(u"x").chars(u" y]]>\n");
    const unsigned short space[] = {' ', '\r'};
    d.writer.ignorableWhitespace(space, 0, 2);
    expectRefused(d, "characters: U+000D cannot stand in the text of an element that holds elements only",
                  [&] { d.chars(u"\r"); });
    EXPECT_TRUE(d.body().ends_with("<a><![CDATA[x]]><![CDATA[ y]]]]><![CDATA[>\n]]> &#13;")) << d.body();
    d.start(u"b");
    expectRefused(d, "ignorableWhitespace: the element is not declared to hold elements only",
                  [&] { d.writer.ignorableWhitespace(space, 0, 1); });
    d.writer.spaceIsLayout(true);
    d.stop(u"b").chars(u"\n ");
    EXPECT_TRUE(d.body().ends_with("</b>\n ")) << d.body();
}

TEST_F(StrictWriterTest, SpaceIsLayoutWhenAsked) {
    Driver d;
    d.writer.spaceIsLayout(true);
    EXPECT_TRUE(d.writer.spaceIsLayout());
    d.document().chars(u"\n").start(u"a").stop(u"a").chars(u"\n\t ");
    EXPECT_EQ("\n<a></a>\n\t ", d.body());
    expectRefused(d, "characters: U+0078 cannot stand in text outside the root", [&] { d.chars(u"x"); });
}

TEST_F(StrictWriterTest, LayoutMayStandBetweenAMappingAndItsElement) {
    Driver d;
    d.writer.spaceIsLayout(true);
    d.document().map(u"p", u"urn:p").chars(u"\n").start(u"urn:p", u"a", u"p:a").map(u"q", u"urn:q");
    EXPECT_EQ("\n<p:a xmlns:p=\"urn:p\">", d.body());
    expectRefused(d, "characters: no element follows the mapping of the prefix q", [&] { d.chars(u"x"); });
}

struct RefusalCase {
    const char* message;
    std::function<void(Driver&)> before, event;
};

/// A document in whose root the next event comes, and one in whose document type it does.
void inRoot(Driver& d) {
    d.document().start(u"a");
}
void inDoctype(Driver& d) {
    d.document().dtd(u"a", nullptr, u"a.dtd");
}
void inProlog(Driver& d) {
    d.document();
}

TEST_F(StrictWriterTest, RefusesWhatWouldNotReadBack) {
    const RefusalCase cases[] = {
        // characters and names
        {"characters: U+0000 cannot stand in text", inRoot,
         [](Driver& d) {
             d.chars({u'a', 0});
         }},
        {"characters: U+000C cannot stand in text", inRoot, [](Driver& d) { d.chars(u"\f"); }},
        {"characters: U+D800 cannot stand in text", inRoot,
         [](Driver& d) {
             d.chars({u'a', 0xD800});
         }},
        {"characters: U+DC00 cannot stand in text", inRoot,
         [](Driver& d) {
             d.chars({0xDC00, u'a'});
         }},
        {"characters: U+FFFE cannot stand in text", inRoot, [](Driver& d) { d.chars({0xFFFE}); }},
        {"characters: no text, but a length", inRoot, [](Driver& d) { d.writer.characters(nullptr, 0, 1); }},
        {"ignorableWhitespace: U+0078 cannot stand in white space", inRoot,
         [](Driver& d) {
             const unsigned short x[] = {' ', 'x'};
             d.writer.ignorableWhitespace(x, 0, 2);
         }},
        {"startElement: U+0020 cannot stand in an element's name", inRoot,
         [](Driver& d) { d.start(u"a b"); }},
        {"startElement: U+0031 cannot stand in an element's name", inRoot, [](Driver& d) { d.start(u"1"); }},
        {"startElement: U+10000 cannot stand in an element's name", inRoot,
         [](Driver& d) { d.start(u"a\U00010000"); }},
        {"startElement: nothing cannot be an element's name", inRoot, [](Driver& d) { d.start(u""); }},
        {"startElement: nothing cannot be an element's name", inRoot, [](Driver& d) { d.start(nullptr); }},
        {"startElement: nothing cannot be an attribute's name", inRoot,
         [](Driver& d) {
             d.start(u"b", {{u"", u"", u"", u"1"}});
         }},
        {"startElement: U+003C cannot stand in an attribute's name", inRoot,
         [](Driver& d) {
             d.start(u"b", {{u"", u"a<", u"a<", u"1"}});
         }},
        {"startElement: U+0001 cannot stand in the value of an attribute", inRoot,
         [](Driver& d) {
             d.start(u"b", {{u"", u"a", u"a", u"\x01"}});
         }},
        {"startElement: twice the attribute x", inRoot,
         [](Driver& d) {
             d.start(u"b", {{u"", u"x", u"x", u"1"}, {u"", u"y", u"y", u"1"}, {u"", u"x", u"x", u"2"}});
         }},
        {"startElement: a type that was not declared, of the attribute x", inRoot,
         [](Driver& d) {
             d.start(u"b", {{u"", u"x", u"x", u"1", u"ID"}});
         }},
        // comments and instructions
        {"comment: U+002D cannot stand in a comment before a hyphen or at its end", inRoot,
         [](Driver& d) { d.comment(u"a--b"); }},
        {"comment: U+002D cannot stand in a comment before a hyphen or at its end", inRoot,
         [](Driver& d) { d.comment(u"a-"); }},
        {"comment: U+000D cannot stand in a comment", inRoot, [](Driver& d) { d.comment(u"\r"); }},
        {"processingInstruction: reserved is the target xMl", inRoot, [](Driver& d) { d.pi(u"xMl", u""); }},
        {"processingInstruction: U+003E cannot stand in an instruction behind a U+003F", inRoot,
         [](Driver& d) { d.pi(u"p", u"a?>"); }},
        {"processingInstruction: U+0020 cannot stand in the first place of an instruction", inRoot,
         [](Driver& d) { d.pi(u"p", u" a"); }},
        {"processingInstruction: nothing cannot be the target of an instruction", inRoot,
         [](Driver& d) { d.pi(nullptr, u"a"); }},
        // structure
        {"startElement: no document has been started", [](Driver&) {}, [](Driver& d) { d.start(u"a"); }},
        {"startElement: behind the end of the root element",
         [](Driver& d) { d.document().start(u"a").stop(u"a"); }, [](Driver& d) { d.start(u"b"); }},
        {"startElement: inside the document type", inDoctype, [](Driver& d) { d.start(u"a"); }},
        {"endElement: the open element is a", inRoot, [](Driver& d) { d.stop(u"b"); }},
        {"endElement: no element is open", inProlog, [](Driver& d) { d.stop(u"a"); }},
        {"endDocument: the root element is missing or still open", inRoot, [](Driver& d) { d.end(); }},
        {"endDocument: the root element is missing or still open", inProlog, [](Driver& d) { d.end(); }},
        {"endDocument: no document has been started",
         [](Driver& d) { d.document().start(u"a").stop(u"a").end(); }, [](Driver& d) { d.end(); }},
        {"characters: U+0020 cannot stand in text outside the root", inProlog,
         [](Driver& d) { d.chars(u" "); }},
        {"characters: U+0078 cannot stand in text outside the root", inDoctype,
         [](Driver& d) { d.chars(u"x"); }},
        {"startCDATA: outside the root element", inProlog, [](Driver& d) { d.writer.startCDATA(); }},
        {"endCDATA: no CDATA section is open", inRoot, [](Driver& d) { d.writer.endCDATA(); }},
        {"startElement: a CDATA section holds text only",
         [](Driver& d) {
             inRoot(d);
             d.writer.startCDATA();
         },
         [](Driver& d) { d.start(u"b"); }},
        {"startCDATA: a CDATA section holds text only",
         [](Driver& d) {
             inRoot(d);
             d.writer.startCDATA();
         },
         [](Driver& d) { d.writer.startCDATA(); }},
        // namespaces
        {"startElement: no namespace is bound to the prefix of p:b", inRoot,
         [](Driver& d) { d.start(u"urn:p", u"b", u"p:b"); }},
        {"startElement: another namespace is bound to the prefix of b", inRoot,
         [](Driver& d) { d.start(u"urn:p", u"b", u"b"); }},
        {"startElement: the local name is not that of b", inRoot,
         [](Driver& d) { d.start(u"", u"c", u"b"); }},
        {"startElement: no namespace is bound to the prefix of p:x", inRoot,
         [](Driver& d) {
             d.start(u"b", {{u"", u"", u"p:x", u"1"}});
         }},
        {"startElement: another namespace is bound to the prefix of x", inRoot,
         [](Driver& d) {
             d.start(u"b", {{u"urn:x", u"x", u"x", u"1"}});
         }},
        {"startElement: U+003A cannot stand in a local name", inRoot,
         [](Driver& d) { d.start(u"", u"b:c", u"xml:b:c"); }},
        {"startElement: twice, by two prefixes, the attribute x",
         [](Driver& d) {
             inRoot(d);
             d.map(u"p", u"urn:x").map(u"q", u"urn:x");
         },
         [](Driver& d) {
             d.start(u"", u"b", u"b", {{u"urn:x", u"x", u"p:x", u"1"}, {u"urn:x", u"x", u"q:x", u"1"}});
         }},
        {"startElement: an attribute declares something else, for the prefix p",
         [](Driver& d) {
             inRoot(d);
             d.map(u"p", u"urn:x");
         },
         [](Driver& d) {
             d.start(u"", u"b", u"b", {{u"", u"", u"xmlns:p", u"urn:y"}});
         }},
        {"startElement: reserved or empty names, for the prefix p", inRoot,
         [](Driver& d) {
             d.start(u"", u"b", u"b", {{u"", u"", u"xmlns:p", u""}});
         }},
        {"startPrefixMapping: reserved or empty names, for the prefix xmlns", inRoot,
         [](Driver& d) { d.map(u"xmlns", u"urn:x"); }},
        {"startPrefixMapping: twice for one element, for the prefix p",
         [](Driver& d) {
             inRoot(d);
             d.map(u"p", u"urn:x");
         },
         [](Driver& d) { d.map(u"p", u"urn:x"); }},
        {"characters: no element follows the mapping of the prefix p",
         [](Driver& d) {
             inRoot(d);
             d.map(u"p", u"urn:x");
         },
         [](Driver& d) { d.chars(u"x"); }},
        {"endElement: the mapping has not been ended of the prefix p",
         [](Driver& d) {
             inRoot(d);
             d.map(u"p", u"urn:x").start(u"b").stop(u"b");
         },
         [](Driver& d) { d.stop(u"a"); }},
        {"endPrefixMapping: no mapping is to be ended of the prefix p", inRoot,
         [](Driver& d) { d.unmap(u"p"); }},
        // the document type
        {"startDTD: behind another one, or behind the start of the root element", inRoot,
         [](Driver& d) { d.dtd(u"a"); }},
        {"startDTD: a public identifier without a system identifier", inProlog,
         [](Driver& d) { d.dtd(u"a", u"p"); }},
        {"startDTD: U+005B cannot stand in a public identifier here", inProlog,
         [](Driver& d) { d.dtd(u"a", u"[", u"s"); }},
        {"startDTD: U+0020 cannot stand in a public identifier here", inProlog,
         [](Driver& d) { d.dtd(u"a", u"p  q", u"s"); }},
        {"startDTD: a system identifier cannot hold both U+0022 and U+0027", inProlog,
         [](Driver& d) { d.dtd(u"a", nullptr, u"\"'"); }},
        {"endDTD: no document type is open", inRoot, [](Driver& d) { d.endDtd(); }},
        {"elementDecl: outside the document type", inRoot,
         [](Driver& d) { d.writer.elementDecl(text(u"a"), text(u"ANY")); }},
        {"elementDecl: no content model: (a)b", inDoctype,
         [](Driver& d) { d.writer.elementDecl(text(u"a"), text(u"(a)b")); }},
        {"attributeDecl: no type of an attribute: ANY", inDoctype,
         [](Driver& d) {
             d.writer.attributeDecl(text(u"a"), text(u"b"), text(u"ANY"), text(u"#IMPLIED"), text(nullptr));
         }},
        {"attributeDecl: no mode of an attribute: IMPLIED", inDoctype,
         [](Driver& d) {
             d.writer.attributeDecl(text(u"a"), text(u"b"), text(u"ID"), text(u"IMPLIED"), text(nullptr));
         }},
        {"attributeDecl: the value does not go with the mode", inDoctype,
         [](Driver& d) {
             d.writer.attributeDecl(text(u"a"), text(u"b"), text(u"ID"), text(u"#FIXED"), text(nullptr));
         }},
        {"attributeDecl: spaces that would be taken away, in the default of b", inDoctype,
         [](Driver& d) {
             d.writer.attributeDecl(text(u"a"), text(u"b"), text(u"NMTOKENS"), text(nullptr), text(u"x  y"));
         }},
        {"internalEntityDecl: a parser does not report the declaration of lt", inDoctype,
         [](Driver& d) { d.writer.internalEntityDecl(text(u"lt"), text(u"&#60;")); }},
        {"internalEntityDecl: twice the entity e",
         [](Driver& d) {
             inDoctype(d);
             d.writer.internalEntityDecl(text(u"e"), text(u"1"));
         },
         [](Driver& d) { d.writer.internalEntityDecl(text(u"e"), text(u"2")); }},
        {"externalEntityDecl: an external entity without a system identifier", inDoctype,
         [](Driver& d) { d.writer.externalEntityDecl(text(u"e"), text(u"p"), text(nullptr)); }},
        {"externalEntityDecl: U+0023 cannot stand in the system identifier of an entity", inDoctype,
         [](Driver& d) { d.writer.externalEntityDecl(text(u"e"), text(nullptr), text(u"a#b")); }},
        {"notationDecl: no identifier for n", inDoctype,
         [](Driver& d) { d.writer.notationDecl(text(u"n"), text(nullptr), text(nullptr)); }},
        {"unparsedEntityDecl: U+0025 cannot stand in the name of an unparsed entity", inDoctype,
         [](Driver& d) { d.writer.unparsedEntityDecl(text(u"%u"), text(nullptr), text(u"s"), text(u"n")); }},
        // entities
        {"skippedEntity: no declaration would make a parser skip the entity e", inRoot,
         [](Driver& d) { d.writer.skippedEntity(text(u"e")); }},
        {"skippedEntity: outside the root element", inProlog,
         [](Driver& d) { d.writer.skippedEntity(text(u"e")); }},
        {"startEntity: not declared as an external entity: e", inRoot,
         [](Driver& d) { d.writer.startEntity(text(u"e")); }},
        {"startEntity: not the place for the entity [dtd]", inRoot,
         [](Driver& d) { d.writer.startEntity(text(u"[dtd]")); }},
        {"endEntity: not the entity that began last: e", inRoot,
         [](Driver& d) { d.writer.endEntity(text(u"e")); }},
    };
    for (const RefusalCase& c : cases) {
        Driver driver;
        c.before(driver);
        expectRefused(driver, c.message, [&] { c.event(driver); });
    }
}

TEST_F(StrictWriterTest, NamesAndCommentsThatTheEncodingLacksAreRefused) {
    Driver d("US-ASCII");
    d.document().start(u"a");
    expectRefused(d, "startElement: U+00E9 cannot stand in an element's name", [&] { d.start(u"\u00E9"); });
    expectRefused(d, "comment: U+20AC cannot stand in a comment", [&] { d.comment(u"\u20AC"); });
    expectRefused(d, "processingInstruction: U+1F600 cannot stand in an instruction",
                  [&] { d.pi(u"p", u"\U0001F600"); });
    d.stop(u"a").end();
}

TEST_F(StrictWriterTest, ARefusedEventCanBeLeftOut) {
    Driver d;
    d.document().map(u"p", u"urn:p");
    expectRefused(d, "startElement: no namespace is bound to the prefix of q:a",
                  [&] { d.start(u"urn:q", u"a", u"q:a"); });
    d.start(u"urn:p", u"a", u"p:a").stop(u"urn:p", u"a", u"p:a").unmap(u"p").end();
    EXPECT_EQ("<p:a xmlns:p=\"urn:p\"></p:a>\n\n", d.body());
}

TEST_F(StrictWriterTest, DeclaredDefaultsAndTypesMustShow) {
    const auto declared = [](Driver& d) {
        d.document().dtd(u"a");
        d.writer.attributeDecl(text(u"a"), text(u"x"), text(u"NMTOKENS"), text(nullptr), text(u"1"));
        d.writer.attributeDecl(text(u"a"), text(u"y"), text(u"(p|q)"), text(u"#IMPLIED"), text(nullptr));
        d.endDtd();
    };
    Driver d;
    declared(d);
    expectRefused(d, "startElement: an attribute is missing that has a default, in the element a",
                  [&] { d.start(u"a"); });
    expectRefused(d, "startElement: a type that was not declared, of the attribute x", [&] {
        d.start(u"a", {{u"", u"x", u"x", u"1"}});
    });
    expectRefused(d, "startElement: spaces that would be taken away, in the attribute x", [&] {
        d.start(u"a", {{u"", u"x", u"x", u"1  2", u"NMTOKENS"}});
    });
    d.start(u"a", {{u"", u"x", u"x", u"2", u"NMTOKENS"}, {u"", u"y", u"y", u"p", u"NMTOKEN"}});
    EXPECT_TRUE(d.body().ends_with("<a x=\"2\" y=\"p\">")) << d.body();
}

TEST_F(StrictWriterTest, SkippedEntitiesNeedADeclarationThatIsNotRead) {
    Driver d;
    inDoctype(d);
    d.writer.internalEntityDecl(text(u"i"), text(u"1"));
    d.writer.externalEntityDecl(text(u"x"), text(nullptr), text(u"x.ent"));
    d.endDtd().start(u"a");
    d.writer.skippedEntity(text(u"x"));
    d.writer.skippedEntity(text(u"inTheExternalSubset"));
    expectRefused(d, "skippedEntity: no declaration would make a parser skip the entity i",
                  [&] { d.writer.skippedEntity(text(u"i")); });
    EXPECT_TRUE(d.body().ends_with("<a>&x;&inTheExternalSubset;")) << d.body();
}

TEST_F(StrictWriterTest, EntitiesNestLikeElements) {
    Driver d;
    inDoctype(d);
    d.writer.externalEntityDecl(text(u"e"), text(nullptr), text(u"e.ent"));
    d.endDtd().start(u"a");
    d.writer.startEntity(text(u"e"));
    expectRefused(d, "endElement: the element began outside the entity e", [&] { d.stop(u"a"); });
    d.start(u"b");
    expectRefused(d, "endEntity: an element is open that began inside the entity e",
                  [&] { d.writer.endEntity(text(u"e")); });
    d.stop(u"b");
    d.writer.endEntity(text(u"e"));
    d.stop(u"a").end();
}

TEST_F(StrictWriterTest, ContentModelsAreTakenInTheirPlainForm) {
    for (const char16_t* model : {u"EMPTY", u"ANY", u"(#PCDATA)", u"(#PCDATA)*", u"(#PCDATA|a|b:c)*", u"(a)",
                                  u"(a?,b*,(c|d)+)*", u"((a))", u"(a|(b,c))"}) {
        Driver d;
        inDoctype(d);
        EXPECT_NO_THROW(d.writer.elementDecl(text(u"a"), text(model))) << show(text(model));
    }
    for (const char16_t* model :
         {u"", u"empty", u"a", u"()", u"(a", u"(a))", u"(a,b|c)", u"(a,)", u"( a)", u"(#PCDATA|a)",
          u"(#PCDATA|)*", u"(a,#PCDATA)", u"(a)**", u"(a)>", u"(1)"}) {
        Driver d;
        inDoctype(d);
        EXPECT_THROW(d.writer.elementDecl(text(u"a"), text(model)), SaxException) << show(text(model));
    }
}

TEST_F(StrictWriterTest, AttributeTypesAreTakenInTheirPlainForm) {
    for (const char16_t* type : {u"CDATA", u"ID", u"IDREF", u"IDREFS", u"ENTITY", u"ENTITIES", u"NMTOKEN",
                                 u"NMTOKENS", u"(a)", u"(1|-2|a.b)", u"NOTATION (a|b)"}) {
        Driver d;
        inDoctype(d);
        EXPECT_NO_THROW(
            d.writer.attributeDecl(text(u"a"), text(u"b"), text(type), text(u"#IMPLIED"), text(nullptr)))
            << show(text(type));
    }
    for (const char16_t* type :
         {u"", u"cdata", u"()", u"(a|)", u"(a", u"(a )", u"NOTATION(a)", u"NOTATION (1)", u"(a)b"}) {
        Driver d;
        inDoctype(d);
        EXPECT_THROW(
            d.writer.attributeDecl(text(u"a"), text(u"b"), text(type), text(u"#IMPLIED"), text(nullptr)),
            SaxException)
            << show(text(type));
    }
}

TEST_F(StrictWriterTest, TheNextDocumentForgetsTheLast) {
    Driver d;
    d.document().dtd(u"a");
    d.writer.internalEntityDecl(text(u"e"), text(u"1"));
    d.document().dtd(u"a");
    EXPECT_NO_THROW(d.writer.internalEntityDecl(text(u"e"), text(u"1")));
}

TEST_F(StrictWriterTest, MemoryRunsOutWithoutALeak) {
    const auto scenario = [] {
        Driver d;
        d.document().dtd(u"a");
        d.writer.internalEntityDecl(text(u"e"), text(u"1"));
        d.endDtd().map(u"p", u"urn:p").start(u"urn:p", u"a", u"p:a", {{u"", u"x", u"x", u"1"}}).chars(u"x");
        d.stop(u"urn:p", u"a", u"p:a").unmap(u"p").end();
    };
    Testing::everyAllocationFails(scenario);
}

/// Takes what is written, and memory for nothing.
class Nowhere : public std::streambuf {
protected:
    std::streamsize xsputn(const char*, std::streamsize count) override { return count; }
    int_type overflow(int_type c) override { return c; }
};

/// The attributes of an application's own: those of a list, as copies.
class CopiedAttributes : public Attributes {
public:
    explicit CopiedAttributes(const AttributesImpl& list) : list_(list) {}

    unsigned int getLength() const override { return list_.getLength(); }
    XmlString getURI(unsigned int i) const override { return list_.getURI(i); }
    XmlString getLocalName(unsigned int i) const override { return list_.getLocalName(i); }
    XmlString getQName(unsigned int i) const override { return list_.getQName(i); }
    XmlString getType(unsigned int i) const override { return list_.getType(i); }
    XmlString getValue(unsigned int i) const override { return list_.getValue(i); }
    int getIndex(const XmlString&, const XmlString&) const override { return -1; }
    int getIndex(const XmlString&) const override { return -1; }
    XmlString getType(const XmlString&, const XmlString&) const override { return XmlString(); }
    XmlString getType(const XmlString&) const override { return XmlString(); }
    XmlString getValue(const XmlString&, const XmlString&) const override { return XmlString(); }
    XmlString getValue(const XmlString&) const override { return XmlString(); }

private:
    const AttributesImpl& list_;
};

TEST_F(StrictWriterTest, ElementsAndTextsAllocateNothingOnceThereWereSome) {
    Nowhere nowhere;
    std::ostream out(&nowhere);
    StrictWriter writer(out);
    const XmlString none, root = text(u"root"), qName = text(u"p:item"), local = text(u"item"),
                          p = text(u"p"), uri = text(u"urn:p"), cdata = text(u"CDATA"),
                          idref = text(u"IDREF");
    const XmlString content = text(u"some <text>, caf\u00E9 \u4E2D]]>\r");
    AttributesImpl list;
    list.addAttribute(uri, text(u"a"), text(u"p:a"), cdata, content);
    list.addAttribute(uri, text(u"b"), text(u"p:b"), cdata, content);
    list.addAttribute(XmlString(), text(u"c"), text(u"c"), idref, text(u"x"));
    const CopiedAttributes copied(list);
    const auto events = [&] {
        for (const Attributes* attributes :
             {static_cast<const Attributes*>(&list), static_cast<const Attributes*>(&copied)}) {
            writer.startElement(uri, local, qName, *attributes);
            writer.characters(content.data(), 0, content.size());
            writer.startCDATA();
            writer.characters(content.data(), 0, content.size());
            writer.endCDATA();
            writer.endElement(uri, local, qName);
        }
    };
    writer.startDocument();
    writer.startDTD(root, XmlString(), XmlString());
    writer.elementDecl(root, text(u"ANY"));
    writer.elementDecl(qName, text(u"ANY"));
    writer.attributeDecl(qName, text(u"c"), idref, text(u"#IMPLIED"), XmlString());
    writer.endDTD();
    writer.startPrefixMapping(p, uri);
    writer.startElement(none, root, root, AttributesImpl());
    events();
    const std::size_t ofHost = Testing::hostMemory().requests(), ofNew = Testing::newMemory().requests();
    events();
    EXPECT_EQ(ofHost, Testing::hostMemory().requests());
    EXPECT_EQ(ofNew, Testing::newMemory().requests());
}

/// It may do so, however little sense it makes.
class CallingAttributes : public CopiedAttributes {
public:
    CallingAttributes(const AttributesImpl& list, StrictWriter& writer)
        : CopiedAttributes(list), writer_(writer) {}

    XmlString getQName(unsigned int i) const override {
        const XmlString inner = text(u"inner");
        AttributesImpl other;
        other.addAttribute(XmlString(), text(u"z"), text(u"z"), text(u"CDATA"), text(u"9"));
        writer_.startElement(XmlString(), inner, inner, CopiedAttributes(other));
        writer_.endElement(XmlString(), inner, inner);
        return CopiedAttributes::getQName(i);
    }

private:
    StrictWriter& writer_;
};

TEST_F(StrictWriterTest, AForeignListMayCallTheWriterThatAsksIt) {
    Driver d;
    d.document().start(u"root");
    AttributesImpl list;
    for (const char16_t* name : {u"a", u"b", u"c"})
        list.addAttribute(XmlString(), text(name), text(name), text(u"CDATA"), text(name));
    const XmlString e = text(u"e");
    d.writer.startElement(XmlString(), e, e, CallingAttributes(list, d.writer));
    const std::string inner = "<inner z=\"9\"></inner>";
    EXPECT_EQ("<root>" + inner + inner + inner + "<e a=\"a\" b=\"b\" c=\"c\">", d.body());
}

class ThrowingAttributes : public CopiedAttributes {
public:
    using CopiedAttributes::CopiedAttributes;
    XmlString getValue(unsigned int) const override { throw SaxException(text(u"no value")); }
};

TEST_F(StrictWriterTest, AForeignListThatThrowsCostsTheNextOneNothing) {
    Nowhere nowhere;
    std::ostream out(&nowhere);
    StrictWriter writer(out);
    const XmlString none, name = text(u"e");
    AttributesImpl list;
    list.addAttribute(none, name, name, text(u"CDATA"), text(u"1"));
    const CopiedAttributes copied(list);
    const auto element = [&] {
        writer.startElement(none, name, name, copied);
        writer.endElement(none, name, name);
    };
    writer.startDocument();
    writer.startElement(none, name, name, AttributesImpl());
    element();
    EXPECT_THROW(writer.startElement(none, name, name, ThrowingAttributes(list)), SaxException);
    const std::size_t ofHost = Testing::hostMemory().requests(), ofNew = Testing::newMemory().requests();
    element();
    EXPECT_EQ(ofHost, Testing::hostMemory().requests());
    EXPECT_EQ(ofNew, Testing::newMemory().requests());
}

/// A stream buffer that has room for a few bytes at a time.
class SmallPutArea : public std::streambuf {
public:
    explicit SmallPutArea(std::size_t size) : area_(size) { setp(area_.data(), area_.data() + size); }

    std::string written() const { return taken_ + std::string(pbase(), pptr()); }

protected:
    int_type overflow(int_type c) override {
        taken_ += std::string(pbase(), pptr());
        setp(area_.data(), area_.data() + area_.size());
        return traits_type::eq_int_type(c, traits_type::eof()) ? traits_type::not_eof(c)
                                                               : sputc(traits_type::to_char_type(c));
    }

private:
    std::vector<char> area_;
    std::string taken_;
};

TEST_F(StrictWriterTest, TheSizeOfThePutAreaMakesNoDifference) {
    const XmlString none, name = text(u"name"),
                          content = text(u"x < y, caf\u00E9 and a few words more than go there");
    AttributesImpl list;
    list.addAttribute(none, text(u"attribute"), text(u"attribute"), text(u"CDATA"), text(u"a \"value\""));
    list.addAttribute(none, text(u"b"), text(u"b"), text(u"CDATA"), text(u"1"));
    for (std::size_t size = 1; size <= 80; ++size) {
        SmallPutArea strictArea(size), plainArea(size);
        std::ostream strictOut(&strictArea), plainOut(&plainArea);
        StrictWriter strict(strictOut);
        XmlWriter plain(plainOut);
        for (XmlWriter* writer : {static_cast<XmlWriter*>(&strict), &plain}) {
            writer->setEncoding("US-ASCII"); // has no declaration
            writer->startDocument();
            writer->startElement(none, name, name, list);
            writer->characters(content.data(), 0, content.size());
            writer->characters(name.data(), 0, name.size());
            writer->endElement(none, name, name);
            writer->endDocument();
        }
        const std::string tag = "<name attribute=\"a &quot;value&quot;\" b=\"1\">x &lt; y, caf",
                          rest = " and a few words more than go therename</name>\n\n";
        ASSERT_EQ(tag + "&#xE9;" + rest, strictArea.written()) << size;
        ASSERT_EQ(tag + "&;" + rest, plainArea.written()) << size;
    }
}

TEST_F(StrictWriterTest, EndsAreComparedWithTheNamesThatTheirElementsHave) {
    Driver d;
    d.document().map(u"p", u"urn:p").start(u"urn:p", u"a", u"p:a");
    d.map(u"p", u"urn:q").start(u"urn:q", u"a", u"p:a");
    expectRefused(d, "endElement: another namespace is bound to the prefix of p:a",
                  [&] { d.stop(u"urn:p", u"a", u"p:a"); });
    expectRefused(d, "endElement: the local name is not that of p:a",
                  [&] { d.stop(u"urn:q", u"b", u"p:a"); });
    d.stop(u"urn:q", u"a", u"p:a").unmap(u"p");
    expectRefused(d, "endElement: another namespace is bound to the prefix of p:a",
                  [&] { d.stop(u"urn:q", u"a", u"p:a"); });
    d.stop(u"", u"", u"p:a").unmap(u"p").end();
    EXPECT_EQ("<p:a xmlns:p=\"urn:p\"><p:a xmlns:p=\"urn:q\"></p:a></p:a>\n\n", d.body());
}

/// Where a text is looked at and converted in one go: in registers, by a kernel, in several pieces.
constexpr std::size_t kTextLengths[] = {1, 3, 4, 7, 8, 16, 17, 32, 33, 100, 4096, 4097, 9000};

TEST_F(StrictWriterTest, NothingOfARefusedTextIsWritten) {
    for (const std::size_t length : kTextLengths) {
        for (const std::size_t place : {std::size_t{0}, length / 2, length - 1}) {
            Driver d;
            d.document().start(u"a");
            std::u16string bad(length, u'x');
            bad[place] = 0xFFFE;
            expectRefused(d, "characters: U+FFFE cannot stand in text", [&] { d.chars(bad); });
            if (place != 0)
                bad[place / 2] = u'<';
            expectRefused(d, "characters: U+FFFE cannot stand in text", [&] { d.chars(bad); });
        }
    }
}

TEST_F(StrictWriterTest, TextIsTheSameHoweverLongItIs) {
    const struct {
        const char16_t* units;
        const char *utf8, *ascii;
    } cases[] = {{u"<", "&lt;", "&lt;"},
                 {u"\r", "&#13;", "&#13;"},
                 {u"\n\t", "\n\t", "\n\t"},
                 {u"\u00E9", "\xC3\xA9", "&#xE9;"},
                 {u"\uE000", "\xEE\x80\x80", "&#xE000;"},
                 {u"\U0001F600", "\xF0\x9F\x98\x80", "&#x1F600;"}};
    for (const auto& c : cases) {
        for (const std::size_t length : kTextLengths) {
            for (const std::size_t place : {std::size_t{0}, length / 2, length}) {
                Driver utf8, ascii("US-ASCII");
                const std::string before(place, 'x'), behind(length - place, 'y');
                for (Driver* d : {&utf8, &ascii})
                    d->document().start(u"a").chars(std::u16string(place, u'x') + c.units
                                                    + std::u16string(length - place, u'y'));
                EXPECT_EQ("<a>" + before + c.utf8 + behind, utf8.body());
                EXPECT_EQ("<a>" + before + c.ascii + behind, ascii.body());
            }
        }
    }
}

TEST_F(StrictWriterTest, ANameThatWasChangedInPlaceIsAnotherName) {
    Driver d;
    const auto units = Testing::units(u"name");
    unsigned short name[4];
    std::copy_n(units.begin(), 4, name);
    const XmlString view(Immutable | Borrowed, name, 4), none;
    AttributesImpl list;
    list.addAttribute(none, view, view, text(u"CDATA"), text(u"1"));
    d.document();
    d.writer.startElement(none, view, view, AttributesImpl());
    d.writer.startElement(none, view, view, list);
    name[1] = u'&';
    expectRefused(d, "startElement: U+0026 cannot stand in an element's name",
                  [&] { d.writer.startElement(none, view, view, AttributesImpl()); });
    expectRefused(d, "endElement: the open element is name", [&] { d.writer.endElement(none, view, view); });
    name[1] = u'o';
    d.writer.startElement(none, view, view, AttributesImpl());
    d.writer.endElement(none, view, view);
    d.stop(u"name").stop(u"name").end();
    EXPECT_EQ("<name><name name=\"1\"><nome></nome></name></name>\n\n", d.body());
}

TEST_F(StrictWriterTest, KnownNamesAreLookedUpInTheDeclarationsOfTheirDocument) {
    Driver d;
    d.document().start(u"a").chars(u"x").stop(u"a").end();
    d.document();
    expectRefused(d, "startElement: nothing cannot be an attribute's name", [&] {
        d.start(u"a", {{u"", u"", u"", u"1"}}); // its own name is known by now
    });
    d.dtd(u"a");
    d.writer.elementDecl(text(u"a"), text(u"(b)"));
    d.writer.attributeDecl(text(u"a"), text(u"x"), text(u"NMTOKEN"), text(nullptr), text(u"1"));
    d.endDtd();
    expectRefused(d, "startElement: an attribute is missing that has a default, in the element a",
                  [&] { d.start(u"a"); });
    d.start(u"a", {{u"", u"x", u"x", u"1", u"NMTOKEN"}}).chars(u" ");
    EXPECT_TRUE(d.body().ends_with("<a x=\"1\"><![CDATA[ ]]>")) << d.body();
}

TEST_F(StrictWriterTest, KnownNamesAreCheckedAgainForAnotherEncoding) {
    Driver d;
    d.document().start(u"\u00E9").stop(u"\u00E9").end();
    d.writer.setEncoding("US-ASCII");
    d.document();
    expectRefused(d, "startElement: U+00E9 cannot stand in an element's name", [&] { d.start(u"\u00E9"); });
}

/// More names than any table holds, and some longer than any place in it.
TEST_F(StrictWriterTest, ARepeatedAttributeIsFoundAmongAny) {
    const XmlString none, value = text(u"1"), type = text(u"CDATA"), e = text(u"e");
    const auto name = [](std::size_t number, std::size_t length) {
        std::u16string result = u"n";
        for (const char c : std::to_string(number))
            result.push_back(static_cast<char16_t>(c));
        return text(result + std::u16string(length, u'x'));
    };
    for (const std::size_t length : {0, 5, 20, 40}) {
        for (const std::size_t count : {1, 2, 9, 130, 1000}) {
            AttributesImpl list;
            for (std::size_t i = 0; i < count; ++i)
                list.addAttribute(none, name(i, length), name(i, length), type, value);
            Driver d;
            d.document();
            for (const std::size_t repeated : {std::size_t{0}, count / 2, count - 1}) {
                AttributesImpl twice(list);
                twice.addAttribute(none, name(repeated, length), name(repeated, length), type, value);
                expectRefused(d, "startElement: twice the attribute " + show(name(repeated, length)),
                              [&] { d.writer.startElement(none, e, e, twice); });
            }
            d.writer.startElement(none, e, e, list);
        }
    }
}

/// A list of the library's own with getters of somebody else's.
class RenamingAttributes : public AttributesImpl {
public:
    XmlString getQName(unsigned int) const override { return text(u"renamed"); }
    XmlString getLocalName(unsigned int) const override { return text(u"renamed"); }
    XmlString getValue(unsigned int) const override { return text(u"a&b"); }
};

TEST_F(StrictWriterTest, AClassDerivedFromTheLibrarysListIsAsked) {
    RenamingAttributes list;
    list.addAttribute(XmlString(), text(u"x"), text(u"x"), text(u"CDATA"), text(u"1"));
    Driver d;
    d.document();
    d.writer.startElement(XmlString(), text(u"e"), text(u"e"), list);
    EXPECT_EQ("<e renamed=\"a&amp;b\">", d.body());
}

/// A stream may stand in the middle of a text that is written over, so what lies behind its place is not scratch room.
TEST_F(StrictWriterTest, WhatLiesBehindThePlaceOfTheStreamStays) {
    const std::string old(6000, '#');
    for (const std::size_t length : kTextLengths) {
        if (length > 4097)
            continue;
        std::stringstream out(old);
        StrictWriter writer(out);
        writer.setEncoding("US-ASCII"); // has no declaration
        writer.startDocument();
        writer.startElement(XmlString(), text(u"a"), text(u"a"), AttributesImpl());
        std::u16string units(length, u'x');
        units.back() = 1;
        const XmlString bad = text(units);
        EXPECT_THROW(writer.characters(bad.data(), 0, bad.size()), SaxException);
        EXPECT_EQ("<a>" + old.substr(3), out.str());
        units.back() = u'<';
        const XmlString good = text(units);
        writer.characters(good.data(), 0, good.size());
        const std::string written = "<a>" + std::string(length - 1, 'x') + "&lt;";
        EXPECT_EQ(written + old.substr(written.size()), out.str());
    }
}

} // namespace
} // namespace Quillon::Xml::Sax
