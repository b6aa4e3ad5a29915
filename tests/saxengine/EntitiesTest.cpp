// Entities: which are expanded, which are read, which are passed over, and where the application says they are.
#include "saxengine/ReadingFixture.h"
#include "xml/sax/EntityResolver.h"

#include <gmock/gmock.h>

namespace Quillon::Xml::Sax {
namespace {

using namespace Testing;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class EntitiesTest : public ReadingFixture {
protected:
    void SetUp() override {
        ReadingFixture::SetUp();
        handler().joinText(true);
        serveResources();
    }
    /// The events behind startDocument, but for those of the resolver, of a document at file:///x/y/z.xml.
    std::vector<std::string> story(std::string_view document) {
        const Outcome outcome = read(document, u"file:///x/y/z.xml");
        EXPECT_FALSE(outcome.threw) << outcome.message << " " << outcome.systemId << ":" << outcome.line;
        std::vector<std::string> lines = handler().lines();
        std::erase_if(lines, [](const std::string& line) {
            return line.starts_with("resolveEntity") || line.starts_with("getExternalSubset")
                   || line.ends_with("Document()") || line.starts_with("setDocumentLocator");
        });
        return lines;
    }
};

TEST_F(EntitiesTest, InternalEntitiesAreTextWithoutBoundaries) {
    EXPECT_THAT(story("<!DOCTYPE a [<!ENTITY e 'x<b/>&f;'><!ENTITY f 'y'>]><a>&e;&lt;&#233;</a>"),
                ElementsAre(R"(startDTD("a", null, null))", R"(internalEntityDecl("e", "x<b/>&f;"))",
                            R"(internalEntityDecl("f", "y"))", "endDTD()",
                            R"(startElement("", "a", "a", []))", R"(characters("x"))",
                            R"(startElement("", "b", "b", []))", R"(endElement("", "b", "b"))",
                            "characters(\"y<\xC3\xA9\")", R"(endElement("", "a", "a"))"));
}

const char kExternal[] = "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>";

TEST_F(EntitiesTest, ExternalEntitiesAreSkippedAtFirst) {
    resources["file:///x/y/e.ent"] = "text";
    EXPECT_THAT(story(kExternal), ElementsAre(R"(startDTD("a", null, null))",
                                              R"(externalEntityDecl("e", null, "file:///x/y/e.ent"))",
                                              "endDTD()", R"(startElement("", "a", "a", []))",
                                              R"(skippedEntity("e"))", R"(endElement("", "a", "a"))"));
    EXPECT_THAT(asked, IsEmpty());
}

TEST_F(EntitiesTest, ExternalEntitiesAreReadWhenAskedFor) {
    set(SC_Features_ExternalGeneralEntities, true);
    resources["file:///x/y/e.ent"] = "<?xml encoding='ISO-8859-1'?>t\xE9<b>u</b>";
    EXPECT_THAT(
        story(kExternal),
        ElementsAre(R"(startDTD("a", null, null))", R"(externalEntityDecl("e", null, "file:///x/y/e.ent"))",
                    "endDTD()", R"(startElement("", "a", "a", []))", R"(startEntity("e"))",
                    "characters(\"t\xC3\xA9\")", R"(startElement("", "b", "b", []))", R"(characters("u"))",
                    R"(endElement("", "b", "b"))", R"(endEntity("e"))", R"(endElement("", "a", "a"))"));
}

TEST_F(EntitiesTest, ExternalEntitiesMayReferToOthers) {
    set(SC_Features_ExternalGeneralEntities, true);
    resources["file:///x/y/e.ent"] = "1&f;2&g;3";
    resources["file:///x/y/f.ent"] = "4&g;5";
    resources["file:///x/y/g.ent"] = "6";
    EXPECT_THAT(
        story("<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'><!ENTITY f SYSTEM 'f.ent'><!ENTITY g SYSTEM 'g.ent'>"
              "<!ENTITY i '&e;'>]><a>&i;</a>"),
        ::testing::IsSupersetOf({R"(startEntity("e"))", R"(characters("1"))", R"(startEntity("f"))",
                                 R"(characters("4"))", R"(startEntity("g"))", R"(characters("6"))",
                                 R"(endEntity("g"))", R"(characters("5"))", R"(endEntity("f"))",
                                 R"(characters("2"))", R"(startEntity("g"))", R"(endEntity("g"))",
                                 R"(characters("3"))", R"(endEntity("e"))"}));
}

/// Two entities with the same identifiers are told apart by their names.
TEST_F(EntitiesTest, EntitiesOfOneResourceKeepTheirNames) {
    set(SC_Features_ExternalGeneralEntities, true);
    resources["file:///x/y/s"] = "t";
    const char* document = "<!DOCTYPE a [<!ENTITY e SYSTEM 's'><!ENTITY f SYSTEM 's'>]><a>&f;&e;&f;</a>";
    story(document);
    EXPECT_THAT(handler().linesOf("startEntity"),
                ElementsAre(R"(startEntity("f"))", R"(startEntity("e"))", R"(startEntity("f"))"));
    resources["file:///x/y/s"] = "&f;";
    EXPECT_EQ("recursive entity reference", read(document, u"file:///x/y/z.xml").message);
}

TEST_F(EntitiesTest, RecursionIsFatal) {
    set(SC_Features_ExternalGeneralEntities, true);
    resources["file:///x/y/e.ent"] = "&e;";
    const Outcome outcome = read(kExternal, u"file:///x/y/z.xml");
    EXPECT_TRUE(outcome.isParseException);
    EXPECT_EQ("recursive entity reference", outcome.message);
    EXPECT_EQ("file:///x/y/e.ent", outcome.systemId);
}

TEST_F(EntitiesTest, InternalParameterEntitiesAreAlwaysExpanded) {
    EXPECT_THAT(
        story("<!DOCTYPE a [<!ENTITY % p '<!ENTITY e \"x\">'>%p;]><a>&e;</a>"),
        ElementsAre(R"(startDTD("a", null, null))", R"(internalEntityDecl("%p", "<!ENTITY e \"x\">"))",
                    R"(internalEntityDecl("e", "x"))", "endDTD()", R"(startElement("", "a", "a", []))",
                    R"(characters("x"))", R"(endElement("", "a", "a"))"));
}

TEST_F(EntitiesTest, InternalParameterEntitiesAreExpandedInAStandaloneDocument) {
    EXPECT_THAT(story("<?xml version='1.0' standalone='yes'?><!DOCTYPE a [<!ENTITY % p '<!ATTLIST a b CDATA "
                      "\"c\">'>%p;]><a/>"),
                Contains(R"(startElement("", "a", "a", [("", "b", "b", "CDATA", "c")]))"));
}

TEST_F(EntitiesTest, ExternalParameterEntitiesArePassedOverAtFirst) {
    resources["file:///x/y/p.ent"] = "<!ENTITY e 'x'>";
    EXPECT_THAT(story("<!DOCTYPE a [<!ENTITY % p SYSTEM 'p.ent'>%p;<!ENTITY f 'y'>]><a>&e;&f;</a>"),
                ElementsAre(R"(startDTD("a", null, null))",
                            R"(externalEntityDecl("%p", null, "file:///x/y/p.ent"))", "endDTD()",
                            R"(startElement("", "a", "a", []))", R"(skippedEntity("e"))",
                            R"(skippedEntity("f"))", R"(endElement("", "a", "a"))"));
    EXPECT_THAT(asked, IsEmpty());
}

TEST_F(EntitiesTest, ExternalParameterEntitiesAreReadWhenAskedFor) {
    set(SC_Features_ExternalParameterEntities, true);
    resources["file:///x/y/p.ent"] = "<!ENTITY e 'x'>";
    EXPECT_THAT(story("<!DOCTYPE a [<!ENTITY % p SYSTEM 'p.ent'>%p;]><a>&e;</a>"),
                ElementsAre(R"(startDTD("a", null, null))",
                            R"(externalEntityDecl("%p", null, "file:///x/y/p.ent"))", R"(startEntity("%p"))",
                            R"(internalEntityDecl("e", "x"))", R"(endEntity("%p"))", "endDTD()",
                            R"(startElement("", "a", "a", []))", R"(characters("x"))",
                            R"(endElement("", "a", "a"))"));
}

TEST_F(EntitiesTest, SubsetIsReadWhenAskedFor) {
    resources["file:///x/y/a.dtd"] = "<!ATTLIST a b CDATA 'c'><!ENTITY % q '<!ENTITY e \"x\">'>%q;";
    const char* document = "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY f 'y'>]><a>&e;</a>";
    EXPECT_THAT(story(document),
                ElementsAre(R"(startDTD("a", null, "a.dtd"))", R"(internalEntityDecl("f", "y"))", "endDTD()",
                            R"(startElement("", "a", "a", []))", R"(skippedEntity("e"))",
                            R"(endElement("", "a", "a"))"));
    set(SC_Features_ExternalParameterEntities, true);
    EXPECT_THAT(story(document),
                ElementsAre(R"(startDTD("a", null, "a.dtd"))", R"(internalEntityDecl("f", "y"))",
                            R"(startEntity("[dtd]"))", R"(attributeDecl("a", "b", "CDATA", null, "c"))",
                            R"(internalEntityDecl("%q", "<!ENTITY e \"x\">"))",
                            R"(internalEntityDecl("e", "x"))", R"(endEntity("[dtd]"))", "endDTD()",
                            R"(startElement("", "a", "a", [("", "b", "b", "CDATA", "c")]))",
                            R"(characters("x"))", R"(endElement("", "a", "a"))"));
}

TEST_F(EntitiesTest, BoundariesOfParameterEntitiesCanBeTurnedOff) {
    set(SC_Features_ExternalParameterEntities, true);
    set(SC_Features_ExternalGeneralEntities, true);
    set(SC_Features_LexicalHandler_ParameterEntities, false);
    resources["file:///x/y/a.dtd"] = "";
    resources["file:///x/y/p.ent"] = "";
    resources["file:///x/y/e.ent"] = "";
    story(
        "<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY % p SYSTEM 'p.ent'>%p;<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>");
    EXPECT_THAT(asked, ElementsAre("file:///x/y/p.ent", "file:///x/y/a.dtd", "file:///x/y/e.ent"));
    EXPECT_THAT(handler().linesOf("startEntity"), ElementsAre(R"(startEntity("e"))"));
    EXPECT_THAT(handler().linesOf("endEntity"), ElementsAre(R"(endEntity("e"))"));
}

TEST_F(EntitiesTest, BoundariesInsideADeclarationAreNotShown) {
    set(SC_Features_ExternalParameterEntities, true);
    resources["file:///x/y/a.dtd"] = "<!ENTITY % p SYSTEM 'p.ent'><!ENTITY e 'x%p;z'><!ENTITY e2 '%p;'>%q;"
                                     "<!NOTATION n PUBLIC 'p'>%p2;";
    resources["file:///x/y/p.ent"] = "y";
    resources["file:///x/y/p2.ent"] = "<!--c-->";
    story("<!DOCTYPE a SYSTEM 'a.dtd' [<!ENTITY % q '<!--q-->'><!ENTITY % p2 SYSTEM 'p2.ent'>]><a>&e;</a>");
    EXPECT_THAT(handler().linesOf("internalEntityDecl"),
                ElementsAre(R"(internalEntityDecl("%q", "<!--q-->"))", R"(internalEntityDecl("e", "xyz"))",
                            R"(internalEntityDecl("e2", "y"))"));
    EXPECT_THAT(handler().linesOf("startEntity"),
                ElementsAre(R"(startEntity("[dtd]"))", R"(startEntity("%p2"))"));
}

TEST_F(EntitiesTest, SkippedEntityIsForGeneralEntitiesOnly) {
    story("<!DOCTYPE a SYSTEM 'a.dtd' [%unknown;]><a>&e;</a>");
    EXPECT_THAT(handler().linesOf("skippedEntity"), ElementsAre(R"(skippedEntity("e"))"));
}

TEST_F(EntitiesTest, UndeclaredEntityIsFatalWhereEverythingWasRead) {
    EXPECT_EQ("undefined entity", refused("<a>&e;</a>").message);
    EXPECT_EQ("undefined entity", refused("<!DOCTYPE a [<!ENTITY f ''>]><a>&e;</a>").message);
    EXPECT_EQ("undefined entity",
              refused("<?xml version='1.0' standalone='yes'?><!DOCTYPE a SYSTEM 's'><a>&e;</a>").message);
}

TEST_F(EntitiesTest, RelativeIdentifiersGoByTheResourceOfTheDeclaration) {
    readExternalEntities();
    resources["file:///x/y/d/a.dtd"] = "<!ENTITY e SYSTEM 'e/e.ent'><!ENTITY % p SYSTEM '../p.ent'>%p;";
    resources["file:///x/y/p.ent"] = "<!ENTITY f SYSTEM 'f.ent'>";
    resources["file:///x/y/d/e/e.ent"] = "&f;&g;";
    resources["file:///x/y/f.ent"] = "f";
    resources["file:///x/y/g.ent"] = "g";
    story("<!DOCTYPE a SYSTEM 'd/a.dtd' [<!ENTITY g SYSTEM 'g.ent'>]><a>&e;</a>");
    EXPECT_THAT(asked, ElementsAre("file:///x/y/d/a.dtd", "file:///x/y/p.ent", "file:///x/y/d/e/e.ent",
                                   "file:///x/y/f.ent", "file:///x/y/g.ent"));
}

TEST_F(EntitiesTest, NewResolverGetsTheRawIdentifierAndTheBase) {
    reader().setEntityResolver(&handler());
    readExternalEntities();
    handler().resolveWith(
        [](const XmlString&, const XmlString&) { return new InputSource(text(u"/dev/null")); });
    read("<!DOCTYPE a PUBLIC '-//a//' 'd/a.dtd' [<!ENTITY % p SYSTEM 'p.ent'>%p;<!ENTITY e PUBLIC 'q' "
         "'e.ent'>]><a>&e;</a>",
         u"file:///x/y/z.xml");
    EXPECT_THAT(handler().linesOf("resolveEntity"),
                ElementsAre(R"(resolveEntity("%p", null, "file:///x/y/z.xml", "p.ent"))",
                            R"(resolveEntity("[dtd]", "-//a//", "file:///x/y/z.xml", "d/a.dtd"))",
                            R"(resolveEntity("e", "q", "file:///x/y/z.xml", "e.ent"))"));
}

/// A resolver of the old kind.
class OldResolver : public EntityResolver {
public:
    std::vector<std::string> asked;
    InputSource* resolveEntity(const XmlString& publicId, const XmlString& systemId) override {
        asked.push_back(show(publicId) + " " + show(systemId));
        return new InputSource(text(u"/dev/null"));
    }
};

TEST_F(EntitiesTest, OldResolverGetsAbsoluteIdentifiers) {
    readExternalEntities();
    OldResolver resolver;
    reader().setEntityResolver(&resolver);
    const char* document = "<!DOCTYPE a PUBLIC '-//a//' 'd/a.dtd' [<!ENTITY e SYSTEM '/e.ent'>]><a>&e;</a>";
    read(document, u"file:///x/y/z.xml");
    EXPECT_THAT(resolver.asked, ElementsAre("-//a// file:///x/y/d/a.dtd", "(null) file:///e.ent"));
}

TEST_F(EntitiesTest, NewResolverIsUsedAsAnOldOneWhenTurnedOff) {
    reader().setEntityResolver(&handler());
    readExternalEntities();
    set(SC_Features_UseEntityResolver2, false);
    handler().resolveWith(
        [](const XmlString&, const XmlString&) { return new InputSource(text(u"/dev/null")); });
    read("<!DOCTYPE a SYSTEM 'd/a.dtd'><a/>", u"file:///x/y/z.xml");
    EXPECT_THAT(handler().linesOf("resolveEntity"),
                ElementsAre(R"(resolveEntity(null, "file:///x/y/d/a.dtd"))"));
    read("<a/>", u"file:///x/y/z.xml");
    EXPECT_THAT(handler().linesOf("getExternalSubset"), IsEmpty());
}

TEST_F(EntitiesTest, IdentifiersAreResolvedAlsoWithResolveDtdUrisOff) {
    readExternalEntities();
    set(SC_Features_ResolveDtdUris, false);
    resources["file:///x/y/e.ent"] = "t";
    story(kExternal);
    EXPECT_THAT(asked, ElementsAre("file:///x/y/e.ent"));
}

TEST_F(EntitiesTest, SourceOfTheResolverSaysWhereItsEntityIs) {
    reader().setEntityResolver(&handler());
    readExternalEntities();
    const std::string entity = "<!ENTITY f SYSTEM 'f.ent'>";
    MemoryByteChannel channel(entity.data(), entity.size());
    bool first = true;
    std::vector<std::string> seen;
    handler().resolveWith([&](const XmlString&, const XmlString& systemId) {
        seen.push_back(show(systemId));
        auto* source = new InputSource(first ? static_cast<ReadableByteChannel*>(&channel) : nullptr);
        source->setSystemId(text(first ? u"file:///elsewhere/a.dtd" : u"/dev/null"));
        first = false;
        return source;
    });
    set(SC_Features_UseEntityResolver2, false);
    EXPECT_FALSE(read("<!DOCTYPE a SYSTEM 'a.dtd'><a>&f;</a>", u"file:///x/z.xml").threw);
    EXPECT_THAT(seen, ElementsAre("file:///x/a.dtd", "file:///elsewhere/f.ent"));
    std::vector<std::string>().swap(seen);
    handler().resolveWith({});
}

TEST_F(EntitiesTest, SubsetIsAskedForWithoutANameWhenThereIsNoDoctype) {
    reader().setEntityResolver(&handler());
    set(SC_Features_ExternalParameterEntities, true);
    EXPECT_THAT(story("<a/>"),
                ElementsAre(R"(startElement("", "a", "a", []))", R"(endElement("", "a", "a"))"));
    EXPECT_THAT(handler().linesOf("getExternalSubset"),
                ElementsAre(R"(getExternalSubset(null, "file:///x/y/z.xml"))"));
}

TEST_F(EntitiesTest, SubsetIsAskedForByNameWhenTheDoctypeHasNone) {
    reader().setEntityResolver(&handler());
    set(SC_Features_ExternalParameterEntities, true);
    story("<!DOCTYPE a [<!ENTITY e 'x'>]><a/>");
    EXPECT_THAT(handler().linesOf("getExternalSubset"),
                ElementsAre(R"(getExternalSubset("a", "file:///x/y/z.xml"))"));
    story("<!DOCTYPE a SYSTEM '/dev/null'><a/>");
    EXPECT_THAT(handler().linesOf("getExternalSubset"), IsEmpty());
}

TEST_F(EntitiesTest, SubsetIsNotAskedForWhileParameterEntitiesAreOff) {
    reader().setEntityResolver(&handler());
    story("<a/>");
    story("<!DOCTYPE a><a/>");
    EXPECT_THAT(handler().linesOf("getExternalSubset"), IsEmpty());
}

TEST_F(EntitiesTest, SuppliedSubsetIsSplicedIn) {
    reader().setEntityResolver(&handler());
    set(SC_Features_ExternalParameterEntities, true);
    const std::string subset = "<!ATTLIST ab b CDATA 'c'><!ENTITY e 'x'>";
    const auto supply = [&](MemoryByteChannel& channel) {
        auto* source = new InputSource(&channel);
        source->setSystemId(text(u"file:///s/s.dtd"));
        handler().supplySubset(source);
    };
    MemoryByteChannel first(subset.data(), subset.size()), second(subset.data(), subset.size());
    supply(first);
    const std::vector<std::string> without = story("<!--c--><ab>&e;</ab>");
    EXPECT_THAT(without,
                ElementsAre(R"(comment("c"))", R"(startDTD("ab", null, "file:///s/s.dtd"))",
                            R"(startEntity("[dtd]"))", R"(attributeDecl("ab", "b", "CDATA", null, "c"))",
                            R"(internalEntityDecl("e", "x"))", R"(endEntity("[dtd]"))", "endDTD()",
                            R"(startElement("", "ab", "ab", [("", "b", "b", "CDATA", "c")]))",
                            R"(characters("x"))", R"(endElement("", "ab", "ab"))"));
    supply(second);
    EXPECT_THAT(story("<!DOCTYPE ab [<!ENTITY e 'y'>]><ab>&e;</ab>"),
                ElementsAre(R"(startDTD("ab", null, "file:///s/s.dtd"))", R"(internalEntityDecl("e", "y"))",
                            R"(startEntity("[dtd]"))", R"(attributeDecl("ab", "b", "CDATA", null, "c"))",
                            R"(endEntity("[dtd]"))", "endDTD()",
                            R"(startElement("", "ab", "ab", [("", "b", "b", "CDATA", "c")]))",
                            R"(characters("y"))", R"(endElement("", "ab", "ab"))"));
}

/// The root's name is not known to Expat yet when the subset is wanted; it may lie across the end of what was read.
TEST_F(EntitiesTest, RootOfASuppliedSubsetIsNamedWhereverItStands) {
    reader().setEntityResolver(&handler());
    set(SC_Features_ExternalParameterEntities, true);
    const std::string name(40000, 'n');
    for (const std::size_t padding : {16370u, 16383u, 16384u}) {
        handler().supplySubset(new InputSource(text(u"/dev/null")));
        story(std::string(padding, ' ') + "<" + name + " b=''/>");
        EXPECT_THAT(handler().linesOf("startDTD"),
                    ElementsAre("startDTD(\"" + name + "\", null, \"/dev/null\")"));
        EXPECT_THAT(handler().linesOf("endElement"),
                    ElementsAre("endElement(\"\", \"" + name + "\", \"" + name + "\")"));
    }
    for (const bool bigEndian : {false, true}) {
        handler().supplySubset(new InputSource(text(u"/dev/null")));
        story(utf16(u"\uFEFF<\u00E9\u6708/>", bigEndian));
        EXPECT_THAT(handler().linesOf("startDTD"),
                    ElementsAre("startDTD(\"\xC3\xA9\xE6\x9C\x88\", null, \"/dev/null\")"));
    }
    handler().supplySubset(new InputSource(text(u"/dev/null")));
    handler().clear();
    EXPECT_FALSE(read("<\xE9/>", u"file:///x/z.xml", u"ISO-8859-1").threw);
    EXPECT_THAT(handler().linesOf("startDTD"), ElementsAre("startDTD(\"\xC3\xA9\", null, \"/dev/null\")"));
}

TEST_F(EntitiesTest, EntityThatCannotBeOpenedIsNamed) {
    readExternalEntities();
    const Outcome outcome = read("<!DOCTYPE a SYSTEM 'no-such.dtd'><a/>", u"file:///no-such-folder/z.xml");
    EXPECT_TRUE(outcome.threw);
    EXPECT_FALSE(outcome.isParseException);
    EXPECT_EQ("cannot open \"file:///no-such-folder/no-such.dtd\": No such file or directory",
              outcome.message);
}

TEST_F(EntitiesTest, NetworkIsNeverReached) {
    readExternalEntities();
    const Outcome outcome = read("<!DOCTYPE a SYSTEM 'http://localhost/a.dtd'><a/>");
    EXPECT_FALSE(outcome.isParseException);
    EXPECT_EQ("cannot open \"http://localhost/a.dtd\": only files are read, no network is reached",
              outcome.message);
}

TEST_F(EntitiesTest, EntitiesInsideEachOtherHaveALimit) {
    set(SC_Features_ExternalGeneralEntities, true);
    std::string document = "<!DOCTYPE a [";
    for (int i = 0; i <= 300; ++i) {
        const std::string n = std::to_string(i);
        document += "<!ENTITY e" + n + " SYSTEM 'file:///" + n + "'>";
        resources["file:///" + n] = i == 300 ? "x" : "&e" + std::to_string(i + 1) + ";";
    }
    EXPECT_FALSE(read(document + "]><a>&e45;</a>").threw);
    EXPECT_EQ("external entities are nested deeper than the limit of 256",
              refused(document + "]><a>&e44;</a>").message);
}

TEST_F(EntitiesTest, EntityMustHoldWholeElements) {
    set(SC_Features_ExternalGeneralEntities, true);
    resources["file:///x/y/e.ent"] = "<b>";
    const Outcome outcome = read(kExternal, u"file:///x/y/z.xml");
    EXPECT_TRUE(outcome.isParseException);
    EXPECT_EQ("file:///x/y/e.ent", outcome.systemId);
}

TEST_F(EntitiesTest, EntityOfALaterVersionIsFatalInADocumentOfVersion10) {
    readExternalEntities();
    resources["file:///x/y/e.ent"] = "<?xml version='1.1' encoding='UTF-8'?>x";
    const Outcome outcome = read(kExternal, u"file:///x/y/z.xml");
    EXPECT_EQ("a document of XML 1.0 refers to an entity of XML 1.1", outcome.message);
    EXPECT_EQ("file:///x/y/e.ent", outcome.systemId);
    resources["file:///x/y/a.dtd"] = "<?xml version='1.1' encoding='UTF-8'?>";
    EXPECT_EQ("a document of XML 1.0 refers to an entity of XML 1.1",
              read("<?xml version='1.0'?><!DOCTYPE a SYSTEM 'a.dtd'><a/>", u"file:///x/y/z.xml").message);
}

TEST_F(EntitiesTest, EntityOfVersion11IsReadInADocumentOfVersion11) {
    readExternalEntities();
    resources["file:///x/y/e.ent"] = "<?xml version='1.1' encoding='UTF-8'?>x";
    story(std::string("<?xml version='1.1'?>") + kExternal);
    EXPECT_EQ(1u, handler().linesOf("warning").size());
    resources["file:///x/y/e.ent"] = "<?xml version='1.0' encoding='UTF-8'?>x";
    story(std::string("<?xml version='1.1'?>") + kExternal);
}

} // namespace
} // namespace Quillon::Xml::Sax
