// Documents' types, declarations, comments, processing instructions, CDATA sections and entities.
#include "xml/sax/writer/XmlWriter.h"

#include "WriterFixture.h"
#include "xml/sax/SaxException.h"

#include <gtest/gtest.h>

#include <string>

namespace Quillon::Xml::Sax {
namespace {

using Testing::text;
using Testing::units;

class XmlWriterDtdTest : public WriterFixture {
protected:
    void elementDecl(const char16_t* name, const char16_t* model) {
        writer.elementDecl(text(name), text(model));
    }
    void attributeDecl(const char16_t* eName, const char16_t* aName, const char16_t* type,
                       const char16_t* mode, const char16_t* value) {
        writer.attributeDecl(text(eName), text(aName), text(type), text(mode), text(value));
    }
    void internalEntityDecl(const char16_t* name, const char16_t* value) {
        writer.internalEntityDecl(text(name), text(value));
    }
    void externalEntityDecl(const char16_t* name, const char16_t* publicId, const char16_t* systemId) {
        writer.externalEntityDecl(text(name), text(publicId), text(systemId));
    }
    void unparsedEntityDecl(const char16_t* name, const char16_t* publicId, const char16_t* systemId,
                            const char16_t* notationName) {
        writer.unparsedEntityDecl(text(name), text(publicId), text(systemId), text(notationName));
    }
    void notationDecl(const char16_t* name, const char16_t* publicId, const char16_t* systemId) {
        writer.notationDecl(text(name), text(publicId), text(systemId));
    }

    /// One event of each kind of declaration.
    void everyDeclaration() {
        elementDecl(u"e", u"EMPTY");
        attributeDecl(u"e", u"a", u"CDATA", u"#IMPLIED", nullptr);
        internalEntityDecl(u"i", u"v");
        externalEntityDecl(u"x", nullptr, u"s");
        unparsedEntityDecl(u"u", nullptr, u"s", u"n");
        notationDecl(u"n", nullptr, u"s");
    }
    static constexpr const char* kEveryDeclaration = "<!ELEMENT e EMPTY>\n"
                                                     "<!ATTLIST e a CDATA #IMPLIED >\n"
                                                     "<!ENTITY i \"v\">\n"
                                                     "<!ENTITY x SYSTEM \"s\">\n"
                                                     "<!ENTITY u SYSTEM \"s\" NDATA n>\n"
                                                     "<!NOTATION n SYSTEM \"s\">\n";

    /// A writer in a DTD whose start has been read away.
    void openDTD() {
        startDTD();
        written();
    }
};

// startDTD and endDTD

TEST_F(XmlWriterDtdTest, ShortestDoctypeOpensAnInternalSubset) {
    startDTD(u"doc");
    writer.endDTD();
    EXPECT_EQ("<!DOCTYPE doc [\n]>\n", written());
}

TEST_F(XmlWriterDtdTest, DoctypeWithPublicIdentifier) {
    startDTD(u"doc", u"p", u"s");
    EXPECT_EQ("<!DOCTYPE doc PUBLIC \"p\" \"s\" [\n", written());
}

TEST_F(XmlWriterDtdTest, DoctypeWithSystemIdentifier) {
    startDTD(u"doc", nullptr, u"s");
    EXPECT_EQ("<!DOCTYPE doc SYSTEM \"s\" [\n", written());
}

TEST_F(XmlWriterDtdTest, DoctypeWithPublicIdentifierAlone) {
    startDTD(u"doc", u"p", nullptr);
    EXPECT_EQ("<!DOCTYPE doc PUBLIC \"p\" \"\" [\n", written());
}

TEST_F(XmlWriterDtdTest, DoctypeWithEmptyIdentifiersHasThem) {
    startDTD(u"doc", u"", u"");
    startDTD(u"doc", nullptr, u"");
    EXPECT_EQ("<!DOCTYPE doc PUBLIC \"\" \"\" [\n<!DOCTYPE doc SYSTEM \"\" [\n", written());
}

TEST_F(XmlWriterDtdTest, DoctypeWithNullNameHasNone) {
    startDTD(nullptr);
    EXPECT_EQ("<!DOCTYPE  [\n", written());
}

TEST_F(XmlWriterDtdTest, DoctypeNamesAndIdentifiersAreWrittenAsTheyStand) {
    startDTD(u"a<", u"&\"", u"'\n>");
    EXPECT_EQ("<!DOCTYPE a< PUBLIC \"&\"\" \"'\n>\" [\n", written());
}

TEST_F(XmlWriterDtdTest, ExpandingEntitiesLeavesTheExternalIdentifierOut) {
    writer.expandingEntities(true);
    startDTD(u"doc", u"p", u"s");
    startDTD(u"doc", nullptr, u"s");
    EXPECT_EQ("<!DOCTYPE doc [\n<!DOCTYPE doc [\n", written());
}

TEST_F(XmlWriterDtdTest, CanonicalModeWritesNoDoctype) {
    writer.setCanonical(true);
    startDTD(u"doc", u"p", u"s");
    EXPECT_TRUE(writer.inDoctype());
    EXPECT_TRUE(writer.startedDoctype());
    writer.endDTD();
    EXPECT_FALSE(writer.inDoctype());
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterDtdTest, EndOfDoctypeClearsInDoctypeOnly) {
    startDTD();
    EXPECT_TRUE(writer.inDoctype());
    EXPECT_TRUE(writer.startedDoctype());
    writer.endDTD();
    EXPECT_FALSE(writer.inDoctype());
    EXPECT_TRUE(writer.startedDoctype());
}

// When declarations are written

TEST_F(XmlWriterDtdTest, DeclarationsBeforeAnyDoctypeAreNotWritten) {
    everyDeclaration();
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterDtdTest, DeclarationsInTheDoctypeAreWritten) {
    openDTD();
    everyDeclaration();
    EXPECT_EQ(kEveryDeclaration, written());
}

TEST_F(XmlWriterDtdTest, DeclarationsAfterTheDoctypeAreWrittenUntilTheRoot) {
    openDTD();
    writer.endDTD();
    written();
    everyDeclaration();
    EXPECT_EQ(kEveryDeclaration, written());
}

TEST_F(XmlWriterDtdTest, DeclarationsAfterTheRootHasBegunAreNotWritten) {
    openDTD();
    startElement(u"doc");
    written();
    everyDeclaration();
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterDtdTest, DeclarationsFollowTheFlagAlone) {
    writer.startedDoctype(true);
    everyDeclaration();
    EXPECT_EQ(kEveryDeclaration, written());
    writer.startedDoctype(false);
    everyDeclaration();
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterDtdTest, CanonicalModeWritesDeclarationsNevertheless) {
    writer.setCanonical(true);
    startDTD();
    everyDeclaration();
    writer.endDTD();
    EXPECT_EQ(kEveryDeclaration, written());
}

TEST_F(XmlWriterDtdTest, DeclarationsAfterAnEntityAreNotWritten) {
    openDTD();
    writer.endEntity(text(u"x"));
    everyDeclaration();
    EXPECT_EQ("", written());
}

// Each declaration

TEST_F(XmlWriterDtdTest, ElementDeclaration) {
    openDTD();
    elementDecl(u"doc", u"(a,(b|c)*)");
    elementDecl(nullptr, nullptr);
    EXPECT_EQ("<!ELEMENT doc (a,(b|c)*)>\n<!ELEMENT  >\n", written());
}

TEST_F(XmlWriterDtdTest, AttributeDeclarationWithModeKeepsTheSpaceBehindIt) {
    openDTD();
    attributeDecl(u"e", u"a", u"CDATA", u"#IMPLIED", nullptr);
    EXPECT_EQ("<!ATTLIST e a CDATA #IMPLIED >\n", written());
}

TEST_F(XmlWriterDtdTest, AttributeDeclarationWithDefault) {
    openDTD();
    attributeDecl(u"e", u"a", u"(x|y)", nullptr, u"x");
    EXPECT_EQ("<!ATTLIST e a (x|y) \"x\">\n", written());
}

TEST_F(XmlWriterDtdTest, AttributeDeclarationWithModeAndDefault) {
    openDTD();
    attributeDecl(u"e", u"a", u"CDATA", u"#FIXED", u"x");
    EXPECT_EQ("<!ATTLIST e a CDATA #FIXED \"x\">\n", written());
}

TEST_F(XmlWriterDtdTest, AttributeDeclarationWithNeither) {
    openDTD();
    attributeDecl(u"e", u"a", u"CDATA", nullptr, nullptr);
    EXPECT_EQ("<!ATTLIST e a CDATA >\n", written());
}

TEST_F(XmlWriterDtdTest, AttributeDeclarationWithEmptyModeAndDefault) {
    openDTD();
    attributeDecl(u"e", u"a", u"CDATA", u"", u"");
    EXPECT_EQ("<!ATTLIST e a CDATA  \"\">\n", written());
}

TEST_F(XmlWriterDtdTest, AttributeDefaultIsEscapedAsAValue) {
    openDTD();
    attributeDecl(u"e", u"a", u"CDATA", nullptr, u"<&>'\"");
    EXPECT_EQ("<!ATTLIST e a CDATA \"&lt;&amp;&gt;&apos;&quot;\">\n", written());
}

TEST_F(XmlWriterDtdTest, InternalEntity) {
    openDTD();
    internalEntityDecl(u"e", u"value");
    EXPECT_EQ("<!ENTITY e \"value\">\n", written());
}

TEST_F(XmlWriterDtdTest, InternalParameterEntitySetsThePercentSignApart) {
    openDTD();
    internalEntityDecl(u"%pe", u"a<b");
    EXPECT_EQ("<!ENTITY % pe \"a<b\">\n", written());
}

TEST_F(XmlWriterDtdTest, EntityValueKeepsMarkupAndEscapesQuotes) {
    openDTD();
    internalEntityDecl(u"e", u"<a b=\"c\">&d;'");
    EXPECT_EQ("<!ENTITY e \"<a b=&quot;c&quot;>&d;&apos;\">\n", written());
}

TEST_F(XmlWriterDtdTest, CanonicalEntityValueKeepsApostrophes) {
    writer.setCanonical(true);
    startDTD();
    internalEntityDecl(u"e", u"'\"");
    EXPECT_EQ("<!ENTITY e \"'&quot;\">\n", written());
}

TEST_F(XmlWriterDtdTest, InternalEntityWithNullNameAndValue) {
    openDTD();
    internalEntityDecl(nullptr, nullptr);
    internalEntityDecl(u"", u"");
    EXPECT_EQ("<!ENTITY  \"\">\n<!ENTITY  \"\">\n", written());
}

TEST_F(XmlWriterDtdTest, PercentSignAloneIsSetApartFromNothing) {
    openDTD();
    internalEntityDecl(u"%", u"v");
    EXPECT_EQ("<!ENTITY %  \"v\">\n", written());
}

TEST_F(XmlWriterDtdTest, PercentSignInsideANameStays) {
    openDTD();
    internalEntityDecl(u"a%b", u"v");
    internalEntityDecl(u"%%b", u"v");
    EXPECT_EQ("<!ENTITY a%b \"v\">\n<!ENTITY % %b \"v\">\n", written());
}

TEST_F(XmlWriterDtdTest, DroppedStringsAreWrittenAsNone) {
    XmlString dropped = text(u"%abc");
    dropped.dissociate();
    ASSERT_EQ(4U, dropped.size());
    openDTD();
    writer.internalEntityDecl(dropped, dropped);
    writer.externalEntityDecl(dropped, dropped, dropped);
    writer.processingInstruction(text(u"pi"), dropped);
    EXPECT_EQ("<!ENTITY  \"\">\n<!ENTITY  SYSTEM \"\">\n<?pi ?>", written());
}

TEST_F(XmlWriterDtdTest, PublicExternalEntityHasNoSpaces) {
    openDTD();
    externalEntityDecl(u"name", u"p", u"s");
    EXPECT_EQ("<!ENTITY namePUBLIC \"p\"\"s\">\n", written());
}

TEST_F(XmlWriterDtdTest, SystemExternalEntity) {
    openDTD();
    externalEntityDecl(u"name", nullptr, u"s");
    EXPECT_EQ("<!ENTITY name SYSTEM \"s\">\n", written());
}

TEST_F(XmlWriterDtdTest, ExternalParameterEntities) {
    openDTD();
    externalEntityDecl(u"%pe", u"p", u"s");
    externalEntityDecl(u"%pe", nullptr, u"s");
    EXPECT_EQ("<!ENTITY % pePUBLIC \"p\"\"s\">\n<!ENTITY % pe SYSTEM \"s\">\n", written());
}

TEST_F(XmlWriterDtdTest, ExternalEntityWithoutSystemIdentifier) {
    openDTD();
    externalEntityDecl(u"name", u"p", nullptr);
    externalEntityDecl(u"name", nullptr, nullptr);
    EXPECT_EQ("<!ENTITY namePUBLIC \"p\"\"\">\n<!ENTITY name SYSTEM \"\">\n", written());
}

TEST_F(XmlWriterDtdTest, PublicUnparsedEntityHasNoSpaceBetweenItsLiterals) {
    openDTD();
    unparsedEntityDecl(u"name", u"p", u"s", u"n");
    EXPECT_EQ("<!ENTITY name PUBLIC \"p\"\"s\" NDATA n>\n", written());
}

TEST_F(XmlWriterDtdTest, SystemUnparsedEntity) {
    openDTD();
    unparsedEntityDecl(u"name", nullptr, u"s", u"n");
    EXPECT_EQ("<!ENTITY name SYSTEM \"s\" NDATA n>\n", written());
}

TEST_F(XmlWriterDtdTest, UnparsedEntityKeepsAPercentSignInItsName) {
    openDTD();
    unparsedEntityDecl(u"%name", nullptr, u"s", u"n");
    EXPECT_EQ("<!ENTITY %name SYSTEM \"s\" NDATA n>\n", written());
}

TEST_F(XmlWriterDtdTest, UnparsedEntityOfNullStrings) {
    openDTD();
    unparsedEntityDecl(nullptr, nullptr, nullptr, nullptr);
    EXPECT_EQ("<!ENTITY  SYSTEM \"\" NDATA >\n", written());
}

TEST_F(XmlWriterDtdTest, NotationWithPublicIdentifier) {
    openDTD();
    notationDecl(u"n", u"p", nullptr);
    EXPECT_EQ("<!NOTATION n PUBLIC \"p\">\n", written());
}

TEST_F(XmlWriterDtdTest, NotationWithBothIdentifiersHasNoSpaceBetweenThem) {
    openDTD();
    notationDecl(u"n", u"p", u"s");
    EXPECT_EQ("<!NOTATION n PUBLIC \"p\"\"s\">\n", written());
}

TEST_F(XmlWriterDtdTest, NotationWithSystemIdentifier) {
    openDTD();
    notationDecl(u"n", nullptr, u"s");
    EXPECT_EQ("<!NOTATION n SYSTEM \"s\">\n", written());
}

TEST_F(XmlWriterDtdTest, NotationWithoutIdentifiersKeepsItsSpace) {
    openDTD();
    notationDecl(u"n", nullptr, nullptr);
    EXPECT_EQ("<!NOTATION n SYSTEM >\n", written());
}

TEST_F(XmlWriterDtdTest, NotationWithEmptyIdentifiersHasThem) {
    openDTD();
    notationDecl(u"", u"", u"");
    EXPECT_EQ("<!NOTATION  PUBLIC \"\"\"\">\n", written());
}

// Comments

TEST_F(XmlWriterDtdTest, Comment) {
    comment(u" a ");
    EXPECT_EQ("<!-- a -->", written());
}

TEST_F(XmlWriterDtdTest, CommentStartsAtTheIndex) {
    const auto run = units(u"01234");
    writer.comment(run.data(), 1, 3);
    EXPECT_EQ("<!--123-->", written());
}

TEST_F(XmlWriterDtdTest, CommentIsNotEscapedAndNotChecked) {
    comment(u"a<b&c>'\"--d\ne-");
    EXPECT_EQ("<!--a<b&c>'\"--d\ne--->", written());
}

TEST_F(XmlWriterDtdTest, EmptyCommentNeedsNoArray) {
    comment(u"");
    writer.comment(nullptr, 0, 0);
    EXPECT_EQ("<!----><!---->", written());
}

TEST_F(XmlWriterDtdTest, CommentOfAMissingArrayIsRefused) {
    EXPECT_THROW(writer.comment(nullptr, 0, 2), SaxException);
    EXPECT_EQ("<!--", written());
}

TEST_F(XmlWriterDtdTest, CommentInTheDoctypeIsWritten) {
    openDTD();
    comment(u"c");
    EXPECT_EQ("<!--c-->", written());
}

TEST_F(XmlWriterDtdTest, CanonicalModeDropsCommentsOfTheDoctype) {
    writer.setCanonical(true);
    writer.inEpilogue(true); // no line end either
    startDTD();
    comment(u"c");
    EXPECT_EQ("", written());
    writer.endDTD();
    writer.inEpilogue(false);
    comment(u"c");
    EXPECT_EQ("<!--c-->", written());
}

TEST_F(XmlWriterDtdTest, CanonicalCommentInTheEpilogueStartsALine) {
    writer.setCanonical(true);
    writer.inEpilogue(true);
    comment(u"c");
    EXPECT_EQ("\n<!--c-->", written());
}

TEST_F(XmlWriterDtdTest, OrdinaryCommentInTheEpilogueStartsNoLine) {
    writer.inEpilogue(true);
    comment(u"c");
    EXPECT_EQ("<!--c-->", written());
}

// Processing instructions

TEST_F(XmlWriterDtdTest, ProcessingInstruction) {
    processingInstruction(u"pi", u"a b");
    EXPECT_EQ("<?pi a b?>", written());
}

TEST_F(XmlWriterDtdTest, ProcessingInstructionKeepsItsSpaceWithoutData) {
    processingInstruction(u"pi", u"");
    processingInstruction(u"pi", nullptr);
    EXPECT_EQ("<?pi ?><?pi ?>", written());
}

TEST_F(XmlWriterDtdTest, ProcessingInstructionIsNotEscapedAndNotChecked) {
    processingInstruction(u"p<", u"a<b&c>'\"\n?>");
    EXPECT_EQ("<?p< a<b&c>'\"\n?>?>", written());
}

TEST_F(XmlWriterDtdTest, ProcessingInstructionWithoutATarget) {
    processingInstruction(nullptr, u"d");
    EXPECT_EQ("<? d?>", written());
}

TEST_F(XmlWriterDtdTest, CanonicalProcessingInstructionInTheDoctypeIsWritten) {
    writer.setCanonical(true);
    startDTD();
    processingInstruction(u"pi", u"d");
    EXPECT_EQ("<?pi d?>", written());
}

TEST_F(XmlWriterDtdTest, CanonicalProcessingInstructionInTheEpilogueStartsALine) {
    writer.setCanonical(true);
    writer.inEpilogue(true);
    processingInstruction(u"pi", u"d");
    EXPECT_EQ("\n<?pi d?>", written());
}

TEST_F(XmlWriterDtdTest, OrdinaryProcessingInstructionInTheEpilogueStartsNoLine) {
    writer.inEpilogue(true);
    processingInstruction(u"pi", u"d");
    EXPECT_EQ("<?pi d?>", written());
}

// CDATA sections

TEST_F(XmlWriterDtdTest, CDataSection) {
    writer.startCDATA();
    EXPECT_TRUE(writer.inCDATA());
    characters(u"a<b");
    writer.endCDATA();
    EXPECT_FALSE(writer.inCDATA());
    characters(u"a<b");
    EXPECT_EQ("<![CDATA[a<b]]>a&lt;b", written());
}

TEST_F(XmlWriterDtdTest, CDataTextIsNotCheckedForTheEndOfTheSection) {
    writer.startCDATA();
    characters(u"a]]>b");
    writer.endCDATA();
    EXPECT_EQ("<![CDATA[a]]>b]]>", written());
}

TEST_F(XmlWriterDtdTest, CanonicalModeWritesCDataAsText) {
    writer.setCanonical(true);
    writer.startCDATA();
    EXPECT_FALSE(writer.inCDATA());
    characters(u"a<b");
    writer.endCDATA();
    EXPECT_EQ("a&lt;b", written());
}

TEST_F(XmlWriterDtdTest, CanonicalEndOfCDataLeavesTheFlag) {
    writer.startCDATA();
    writer.setCanonical(true);
    writer.endCDATA();
    EXPECT_TRUE(writer.inCDATA());
    EXPECT_EQ("<![CDATA[", written());
}

TEST_F(XmlWriterDtdTest, CDataAfterAnEntityHasNoDelimiters) {
    writer.endEntity(text(u"x"));
    writer.startCDATA();
    EXPECT_TRUE(writer.inCDATA());
    characters(u"a<b");
    writer.endCDATA();
    EXPECT_FALSE(writer.inCDATA());
    EXPECT_EQ("a<b", written());
}

// Entities

TEST_F(XmlWriterDtdTest, EntityBoundariesWriteNothing) {
    writer.startEntity(text(u"x"));
    writer.endEntity(text(u"x"));
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterDtdTest, StartEntitySilencesNothing) {
    openDTD();
    writer.startEntity(text(u"x"));
    everyDeclaration();
    EXPECT_EQ(kEveryDeclaration, written());
    writer.startCDATA();
    writer.endCDATA();
    EXPECT_EQ("<![CDATA[]]>", written());
}

TEST_F(XmlWriterDtdTest, EndEntitySilencesDeclarationsAndDelimiters) {
    openDTD();
    writer.startEntity(text(u"x"));
    writer.endEntity(text(u"x"));
    everyDeclaration();
    writer.startCDATA();
    writer.endCDATA();
    writer.startEntity(text(u"x")); // does not bring them back
    everyDeclaration();
    writer.startCDATA();
    writer.endCDATA();
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterDtdTest, StartDocumentBringsDeclarationsAndDelimitersBack) {
    openDTD();
    writer.endEntity(text(u"x"));
    writer.endEntity(text(u"x"));
    writer.startDocument();
    written();
    everyDeclaration();
    EXPECT_EQ(kEveryDeclaration, written());
    writer.startCDATA();
    writer.endCDATA();
    EXPECT_EQ("<![CDATA[]]>", written());
}

TEST_F(XmlWriterDtdTest, CanonicalOrUsAsciiStartDocumentBringsThemBackToo) {
    writer.setEncoding("US-ASCII");
    writer.endEntity(text(u"x"));
    writer.startDocument();
    writer.startCDATA();
    writer.endCDATA();
    EXPECT_EQ("<![CDATA[]]>", written());
    writer.endEntity(text(u"x"));
    writer.setCanonical(true);
    writer.startDocument();
    writer.startedDoctype(true);
    everyDeclaration();
    EXPECT_EQ(kEveryDeclaration, written());
}

TEST_F(XmlWriterDtdTest, StartDocumentThatFailsBringsNothingBack) {
    writer.endEntity(text(u"x"));
    writer.setEncoding("X-No-Such");
    EXPECT_THROW(writer.startDocument(), SaxException);
    writer.setEncoding("UTF-8");
    writer.startCDATA();
    writer.endCDATA();
    EXPECT_EQ("", written());
}

TEST_F(XmlWriterDtdTest, EndEntityDoesNotCountWhileEntitiesAreExpanded) {
    writer.expandingEntities(true);
    openDTD();
    writer.endEntity(text(u"x"));
    everyDeclaration();
    EXPECT_EQ(kEveryDeclaration, written());
}

TEST_F(XmlWriterDtdTest, EndEntitySilencesNothingElse) {
    writer.endEntity(text(u"x"));
    startDTD(u"doc", nullptr, u"s");
    comment(u"c");
    processingInstruction(u"pi", u"d");
    writer.endDTD();
    startElement(u"doc");
    characters(u"t");
    endElement(u"doc");
    EXPECT_EQ("<!DOCTYPE doc SYSTEM \"s\" [\n<!--c--><?pi d?>]>\n<doc>t</doc>", written());
}

TEST_F(XmlWriterDtdTest, SkippedEntityIsAReference) {
    writer.skippedEntity(text(u"x"));
    writer.skippedEntity(XmlString());
    EXPECT_EQ("&x;&;", written());
}

TEST_F(XmlWriterDtdTest, WholeDocumentWithADoctype) {
    writer.startDocument();
    startDTD(u"doc", nullptr, u"doc.dtd");
    comment(u" notations ");
    everyDeclaration();
    writer.endDTD();
    startElement(u"doc");
    writer.startCDATA();
    characters(u"<&>");
    writer.endCDATA();
    writer.skippedEntity(text(u"i"));
    endElement(u"doc");
    writer.endDocument();
    EXPECT_EQ(std::string("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                          "<!DOCTYPE doc SYSTEM \"doc.dtd\" [\n"
                          "<!-- notations -->")
                  + kEveryDeclaration + "]>\n<doc><![CDATA[<&>]]>&i;</doc>\n\n",
              written());
}

} // namespace
} // namespace Quillon::Xml::Sax
