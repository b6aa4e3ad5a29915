// The document type declaration: its events, and what it does to attributes and white space.
#include "saxengine/ReadingFixture.h"
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/IllegalArgumentException.h"

#include <gmock/gmock.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DeclarationsTest : public ReadingFixture {
protected:
    /// The events with that name of a document with this internal subset.
    std::vector<std::string> declared(const std::string& subset, const char* name) {
        return events("<!DOCTYPE a [" + subset + "]><a/>", name);
    }
};

TEST_F(DeclarationsTest, DoctypeBeginsAndEnds) {
    EXPECT_THAT(events("<!DOCTYPE a><a/>"),
                ElementsAre("setDocumentLocator(locator)", "startDocument()", R"(startDTD("a", null, null))",
                            "endDTD()", R"(startElement("", "a", "a", []))", R"(endElement("", "a", "a"))",
                            "endDocument()"));
    EXPECT_THAT(events("<!DOCTYPE a SYSTEM 'x.dtd'><a/>", "startDTD"),
                ElementsAre(R"(startDTD("a", null, "x.dtd"))"));
    EXPECT_THAT(events("<!DOCTYPE a PUBLIC '-//p//' 'x.dtd' []><a/>", "startDTD"),
                ElementsAre(R"(startDTD("a", "-//p//", "x.dtd"))"));
}

struct ModelCase {
    const char* name;
    const char* declared;
    const char* reported;
};

const ModelCase kModelCases[] = {
    {"Empty", "EMPTY", "EMPTY"},
    {"Any", "ANY", "ANY"},
    {"Text", "( #PCDATA )", "(#PCDATA)"},
    {"TextRepeated", "(#PCDATA)*", "(#PCDATA)*"},
    {"Mixed", "( #PCDATA | b | c )*", "(#PCDATA|b|c)*"},
    {"One", "( b )", "(b)"},
    {"Quantifiers", "(b?,c*,d+,e)", "(b?,c*,d+,e)"},
    {"Choice", "( b | c )+", "(b|c)+"},
    {"Nested", "((b|c)?, (d, (e | f*)+)*)?", "((b|c)?,(d,(e|f*)+)*)?"},
    {"Redundant", "(((b)))", "(((b)))"},
};

class ContentModelTest : public DeclarationsTest, public ::testing::WithParamInterface<ModelCase> {};

TEST_P(ContentModelTest, IsReportedWithoutWhiteSpace) {
    EXPECT_THAT(declared("<!ELEMENT a " + std::string(GetParam().declared) + ">", "elementDecl"),
                ElementsAre("elementDecl(\"a\", \"" + std::string(GetParam().reported) + "\")"));
}

INSTANTIATE_TEST_SUITE_P(All, ContentModelTest, ::testing::ValuesIn(kModelCases),
                         [](const auto& info) { return info.param.name; });

TEST_F(DeclarationsTest, DeepContentModelNeedsNoStack) {
    constexpr int kDepth = 20000;
    const std::string model = std::string(kDepth, '(') + "b" + std::string(kDepth, ')');
    EXPECT_THAT(declared("<!ELEMENT a " + model + ">", "elementDecl"),
                ElementsAre("elementDecl(\"a\", \"" + model + "\")"));
}

struct AttributeCase {
    const char* name;
    const char* declared;
    const char* reported;
};

const AttributeCase kAttributeCases[] = {
    {"Implied", "b CDATA #IMPLIED", R"(attributeDecl("a", "b", "CDATA", "#IMPLIED", null))"},
    {"Required", "b ID #REQUIRED", R"(attributeDecl("a", "b", "ID", "#REQUIRED", null))"},
    {"Fixed", "b CDATA #FIXED 'x'", R"(attributeDecl("a", "b", "CDATA", "#FIXED", "x"))"},
    {"Default", "b CDATA 'x'", R"(attributeDecl("a", "b", "CDATA", null, "x"))"},
    {"EmptyDefault", "b CDATA ''", R"(attributeDecl("a", "b", "CDATA", null, ""))"},
    {"NormalizedDefault", "b NMTOKENS '  x   y '", R"(attributeDecl("a", "b", "NMTOKENS", null, "x y"))"},
    {"IdRef", "b IDREF #IMPLIED", R"(attributeDecl("a", "b", "IDREF", "#IMPLIED", null))"},
    {"IdRefs", "b IDREFS #IMPLIED", R"(attributeDecl("a", "b", "IDREFS", "#IMPLIED", null))"},
    {"Entity", "b ENTITY #IMPLIED", R"(attributeDecl("a", "b", "ENTITY", "#IMPLIED", null))"},
    {"Entities", "b ENTITIES #IMPLIED", R"(attributeDecl("a", "b", "ENTITIES", "#IMPLIED", null))"},
    {"NmToken", "b NMTOKEN #IMPLIED", R"(attributeDecl("a", "b", "NMTOKEN", "#IMPLIED", null))"},
    {"Enumeration", "b ( x | y|z ) 'y'", R"~(attributeDecl("a", "b", "(x|y|z)", null, "y"))~"},
    {"Notation", "b NOTATION ( n | m ) #IMPLIED",
     R"~(attributeDecl("a", "b", "NOTATION (n|m)", "#IMPLIED", null))~"},
};

class AttributeDeclarationTest : public DeclarationsTest,
                                 public ::testing::WithParamInterface<AttributeCase> {};

TEST_P(AttributeDeclarationTest, IsReportedAsDeclared) {
    EXPECT_THAT(declared("<!ATTLIST a " + std::string(GetParam().declared) + ">", "attributeDecl"),
                ElementsAre(GetParam().reported));
}

INSTANTIATE_TEST_SUITE_P(All, AttributeDeclarationTest, ::testing::ValuesIn(kAttributeCases),
                         [](const auto& info) { return info.param.name; });

TEST_F(DeclarationsTest, FirstDeclarationOfAnAttributeCounts) {
    EXPECT_THAT(declared("<!ATTLIST a b ID #IMPLIED b CDATA 'x'><!ATTLIST a b NMTOKEN 'y' c CDATA #IMPLIED>"
                         "<!ATTLIST d b CDATA #IMPLIED>",
                         "attributeDecl"),
                ElementsAre(R"(attributeDecl("a", "b", "ID", "#IMPLIED", null))",
                            R"(attributeDecl("a", "c", "CDATA", "#IMPLIED", null))",
                            R"(attributeDecl("d", "b", "CDATA", "#IMPLIED", null))"));
}

TEST_F(DeclarationsTest, EmptyAttributeListDeclaresNothing) {
    EXPECT_THAT(declared("<!ATTLIST a><!ATTLIST a ><!ATTLIST a b CDATA 'c'>", "attributeDecl"),
                ElementsAre(R"(attributeDecl("a", "b", "CDATA", null, "c"))"));
}

TEST_F(DeclarationsTest, EntitiesAreReported) {
    EXPECT_THAT(declared("<!ENTITY e 'x&#60;y'><!ENTITY % p \"q\"><!ENTITY f '&e;'>", "internalEntityDecl"),
                ElementsAre(R"(internalEntityDecl("e", "x<y"))", R"(internalEntityDecl("%p", "q"))",
                            R"(internalEntityDecl("f", "&e;"))"));
    EXPECT_THAT(declared("<!ENTITY e ''>", "internalEntityDecl"),
                ElementsAre(R"(internalEntityDecl("e", ""))"));
    EXPECT_THAT(declared("<!ENTITY e SYSTEM 's'><!ENTITY f PUBLIC 'p' 's'><!ENTITY % g SYSTEM 't'>",
                         "externalEntityDecl"),
                ElementsAre(R"(externalEntityDecl("e", null, "s"))", R"(externalEntityDecl("f", "p", "s"))",
                            R"(externalEntityDecl("%g", null, "t"))"));
}

TEST_F(DeclarationsTest, SecondDeclarationOfAnEntityIsNone) {
    const char* subset = "<!ENTITY e '1'><!ENTITY e '2'><!ENTITY e SYSTEM '3'><!ENTITY e PUBLIC 'p' '4'>"
                         "<!ENTITY % e '5'><!ENTITY % e SYSTEM '6'><!ENTITY f '7'><!ENTITY lt '&#38;#60;'>";
    EXPECT_THAT(declared(subset, "internalEntityDecl"),
                ElementsAre(R"(internalEntityDecl("e", "1"))", R"(internalEntityDecl("%e", "5"))",
                            R"(internalEntityDecl("f", "7"))"));
    EXPECT_THAT(declared(subset, "externalEntityDecl"), IsEmpty());
}

TEST_F(DeclarationsTest, NotationsAndUnparsedEntitiesAreReported) {
    EXPECT_THAT(declared("<!NOTATION n SYSTEM 's'><!NOTATION m PUBLIC 'p'><!NOTATION o PUBLIC 'p' 's'>",
                         "notationDecl"),
                ElementsAre(R"(notationDecl("n", null, "s"))", R"(notationDecl("m", "p", null))",
                            R"(notationDecl("o", "p", "s"))"));
    EXPECT_THAT(
        declared("<!ENTITY e SYSTEM 's' NDATA n><!ENTITY f PUBLIC 'p' 's' NDATA n>", "unparsedEntityDecl"),
        ElementsAre(R"(unparsedEntityDecl("e", null, "s", "n"))",
                    R"(unparsedEntityDecl("f", "p", "s", "n"))"));
}

TEST_F(DeclarationsTest, PublicIdentifiersAreNormalized) {
    EXPECT_THAT(declared("<!NOTATION n PUBLIC ' a \n  b '>", "notationDecl"),
                ElementsAre(R"(notationDecl("n", "a b", null))"));
}

TEST_F(DeclarationsTest, SystemIdentifiersAreResolvedUnlessTurnedOff) {
    const char* document =
        "<!DOCTYPE a SYSTEM 'a.dtd' [<!NOTATION n SYSTEM '../n'><!ENTITY u SYSTEM 'u' NDATA n>"
        "<!ENTITY e SYSTEM 'd/e.ent'><!ENTITY h SYSTEM 'http://h/'>]><a/>";
    const auto identifiers = [&] {
        EXPECT_FALSE(read(document, u"file:///x/y/z.xml").threw);
        return std::vector<std::string>{
            handler().linesOf("startDTD").at(0), handler().linesOf("notationDecl").at(0),
            handler().linesOf("unparsedEntityDecl").at(0), handler().linesOf("externalEntityDecl").at(0),
            handler().linesOf("externalEntityDecl").at(1)};
    };
    EXPECT_THAT(identifiers(),
                ElementsAre(R"(startDTD("a", null, "a.dtd"))", R"(notationDecl("n", null, "file:///x/n"))",
                            R"(unparsedEntityDecl("u", null, "file:///x/y/u", "n"))",
                            R"(externalEntityDecl("e", null, "file:///x/y/d/e.ent"))",
                            R"(externalEntityDecl("h", null, "http://h/"))"));
    set(SC_Features_ResolveDtdUris, false);
    EXPECT_THAT(identifiers(),
                ElementsAre(R"(startDTD("a", null, "a.dtd"))", R"(notationDecl("n", null, "../n"))",
                            R"(unparsedEntityDecl("u", null, "u", "n"))",
                            R"(externalEntityDecl("e", null, "d/e.ent"))",
                            R"(externalEntityDecl("h", null, "http://h/"))"));
}

TEST_F(DeclarationsTest, CommentsAndInstructionsOfTheSubsetAreReported) {
    EXPECT_THAT(declared("<!--x--><?p d?>", "comment"), ElementsAre(R"(comment("x"))"));
    EXPECT_THAT(handler().linesOf("processingInstruction"),
                ElementsAre(R"(processingInstruction("p", "d"))"));
}

/// Names longer than Expat's buffer are shown to the reader in pieces.
TEST_F(DeclarationsTest, LongNamesLoseNoDeclaration) {
    const std::string name(3000, 'n');
    const std::string subset = "<!ENTITY " + name + " 'x'><!ENTITY " + name + " '" + std::string(3000, 'y')
                               + "'>" + "<!ATTLIST " + name + "><!ATTLIST " + name + " " + name
                               + " CDATA 'z' b ID #IMPLIED>" + "<!ATTLIST c d CDATA ''><!NOTATION " + name
                               + " SYSTEM 's'><!ELEMENT " + name + " (" + name + ")><!ENTITY e 'f'>";
    declared(subset, "");
    EXPECT_THAT(
        handler().linesOf("internalEntityDecl"),
        ElementsAre("internalEntityDecl(\"" + name + "\", \"x\")", R"(internalEntityDecl("e", "f"))"));
    EXPECT_THAT(handler().linesOf("attributeDecl"),
                ElementsAre("attributeDecl(\"" + name + "\", \"" + name + "\", \"CDATA\", null, \"z\")",
                            "attributeDecl(\"" + name + "\", \"b\", \"ID\", \"#IMPLIED\", null)",
                            R"(attributeDecl("c", "d", "CDATA", null, ""))"));
    EXPECT_THAT(handler().linesOf("notationDecl"),
                ElementsAre("notationDecl(\"" + name + "\", null, \"s\")"));
    EXPECT_THAT(handler().linesOf("elementDecl"),
                ElementsAre("elementDecl(\"" + name + "\", \"(" + name + ")\")"));
}

TEST_F(DeclarationsTest, AttributeTypesAreThoseOfTheDeclaration) {
    EXPECT_THAT(
        events("<!DOCTYPE a [<!ATTLIST a b ID #IMPLIED c (x|y) #IMPLIED d NOTATION (n) #IMPLIED e IDREFS "
               "#IMPLIED "
               "f NMTOKENS #IMPLIED g ENTITY #IMPLIED h CDATA #IMPLIED>]>"
               "<a b='i' c='x' d='n' e='j k' f='l' g='m' h='o' z='p'/>",
               "startElement"),
        ElementsAre(
            R"(startElement("", "a", "a", [("", "b", "b", "ID", "i"), ("", "c", "c", "NMTOKEN", "x"), )"
            R"(("", "d", "d", "NOTATION", "n"), ("", "e", "e", "IDREFS", "j k"), )"
            R"(("", "f", "f", "NMTOKENS", "l"), ("", "g", "g", "ENTITY", "m"), )"
            R"(("", "h", "h", "CDATA", "o"), ("", "z", "z", "CDATA", "p")]))"));
}

TEST_F(DeclarationsTest, ValuesAreNormalizedByTheirType) {
    EXPECT_THAT(events("<!DOCTYPE a [<!ATTLIST a b NMTOKENS #IMPLIED>]><a b=' x \n y ' c=' x \n\t&#10;y '/>",
                       "startElement"),
                ElementsAre(R"(startElement("", "a", "a", [("", "b", "b", "NMTOKENS", "x y"), )"
                            R"(("", "c", "c", "CDATA", " x   \ny ")]))"));
}

TEST_F(DeclarationsTest, FlagsSayWhatIsDeclaredAndWhatIsSpecified) {
    handler().recordFlags(true);
    EXPECT_THAT(
        events("<!DOCTYPE a [<!ATTLIST a b CDATA 'x' c CDATA 'y' d CDATA #IMPLIED>]><a c='z' e=''/>",
               "startElement"),
        ElementsAre(R"(startElement("", "a", "a", [("", "c", "c", "CDATA", "z" declared specified), )"
                    R"(("", "e", "e", "CDATA", "" specified), ("", "b", "b", "CDATA", "x" declared)]))"));
}

/// Asks an attribute list for everything.
class Questioner : public DefaultHandler2 {
public:
    std::function<void(const Attributes&)> ask;
    void startElement(const XmlString&, const XmlString&, const XmlString&,
                      const Attributes& attributes) override {
        ask(attributes);
    }
};

TEST_F(DeclarationsTest, AttributesAreFoundByName) {
    Questioner questioner;
    reader().setContentHandler(&questioner);
    questioner.ask = [](const Attributes& attributes) {
        const auto& list = dynamic_cast<const Attributes2&>(attributes);
        EXPECT_EQ(2u, list.getLength());
        EXPECT_EQ(1, list.getIndex(text(u"p:c")));
        EXPECT_EQ(1, list.getIndex(text(u"urn:p"), text(u"c")));
        EXPECT_EQ(0, list.getIndex(text(u""), text(u"b")));
        EXPECT_EQ(-1, list.getIndex(text(u"c")));
        EXPECT_EQ(-1, list.getIndex(text(u""), text(u"c")));
        EXPECT_EQ("2", show(list.getValue(text(u"p:c"))));
        EXPECT_EQ("2", show(list.getValue(text(u"urn:p"), text(u"c"))));
        EXPECT_EQ("NMTOKEN", show(list.getType(text(u"p:c"))));
        EXPECT_EQ("CDATA", show(list.getType(text(u""), text(u"b"))));
        EXPECT_TRUE(list.getValue(text(u"x")).isNull());
        EXPECT_TRUE(list.getType(text(u"x"), text(u"y")).isNull());
        EXPECT_TRUE(list.isDeclared(text(u"p:c")));
        EXPECT_FALSE(list.isDeclared(text(u""), text(u"b")));
        EXPECT_TRUE(list.isSpecified(text(u"b")));
        EXPECT_FALSE(list.isSpecified(text(u"urn:p"), text(u"c")));
    };
    EXPECT_FALSE(read("<!DOCTYPE a [<!ATTLIST a p:c NMTOKEN '2'>]><a xmlns:p='urn:p' b='1'/>").threw);
}

TEST_F(DeclarationsTest, WhatIsNotInTheListIsNullOrRefused) {
    Questioner questioner;
    reader().setContentHandler(&questioner);
    questioner.ask = [](const Attributes& attributes) {
        const auto& list = dynamic_cast<const Attributes2&>(attributes);
        for (const unsigned int index : {1u, 0xFFFFFFFFu}) {
            EXPECT_TRUE(list.getURI(index).isNull());
            EXPECT_TRUE(list.getLocalName(index).isNull());
            EXPECT_TRUE(list.getQName(index).isNull());
            EXPECT_TRUE(list.getType(index).isNull());
            EXPECT_TRUE(list.getValue(index).isNull());
            EXPECT_THROW(list.isDeclared(index), ArrayIndexOutOfBoundsException);
            EXPECT_THROW(list.isSpecified(index), ArrayIndexOutOfBoundsException);
        }
        EXPECT_THROW(list.isDeclared(text(u"x")), IllegalArgumentException);
        EXPECT_THROW(list.isSpecified(text(u"x")), IllegalArgumentException);
        EXPECT_THROW(list.isDeclared(text(u""), text(u"x")), IllegalArgumentException);
        EXPECT_THROW(list.isSpecified(text(u""), text(u"x")), IllegalArgumentException);
    };
    EXPECT_FALSE(read("<a b='c'/>").threw);
}

TEST_F(DeclarationsTest, WhiteSpaceOfElementContentIsIgnorable) {
    EXPECT_THAT(events("<!DOCTYPE a [<!ELEMENT a (b*)><!ELEMENT b ANY>]><a>\n <b> </b><![CDATA[ ]]></a>"),
                ElementsAre("setDocumentLocator(locator)", "startDocument()", R"(startDTD("a", null, null))",
                            R"~(elementDecl("a", "(b*)"))~", R"(elementDecl("b", "ANY"))", "endDTD()",
                            R"(startElement("", "a", "a", []))", R"(ignorableWhitespace("\n"))",
                            R"(ignorableWhitespace(" "))", R"(startElement("", "b", "b", []))",
                            R"(characters(" "))", R"(endElement("", "b", "b"))", "startCDATA()",
                            R"(characters(" "))", "endCDATA()", R"(endElement("", "a", "a"))",
                            "endDocument()"));
}

TEST_F(DeclarationsTest, TextOfElementContentIsText) {
    EXPECT_THAT(events("<!DOCTYPE a [<!ELEMENT a (b*)>]><a> x</a>", "characters"),
                ElementsAre(R"(characters(" x"))"));
    EXPECT_THAT(events("<!DOCTYPE a [<!ELEMENT a (#PCDATA|b)*>]><a> </a>", "characters"),
                ElementsAre(R"(characters(" "))"));
    EXPECT_THAT(events("<a> </a>", "ignorableWhitespace"), IsEmpty());
}

TEST_F(DeclarationsTest, LineEndsOfSystemIdentifiersAreLineFeeds) {
    EXPECT_THAT(events("<!DOCTYPE a [<!NOTATION n SYSTEM 'a\r\nb\rc\nz'>]><a/>", "notationDecl"),
                ElementsAre(R"(notationDecl("n", null, "a\nb\nc\nz"))"));
    EXPECT_THAT(events("<!DOCTYPE a SYSTEM 'x\r\ny'><a/>", "startDTD"),
                ElementsAre(R"(startDTD("a", null, "x\ny"))"));
}

} // namespace
} // namespace Quillon::Xml::Sax
