#include "tools/ToolRunner.h"

namespace Quillon::Testing {
namespace {

using EventsCommandTest = ToolTest;

TEST_F(EventsCommandTest, EveryKindOfEventIsALine) {
    const Outcome done = run({"events"}, "<?xml version='1.0'?><!DOCTYPE r:a [\n"
                                         "<!ELEMENT r:a (#PCDATA)>\n"
                                         "<!ATTLIST r:a i ID #IMPLIED d CDATA 'x'>\n"
                                         "<!ENTITY e 'v\"w'>\n"
                                         "<!ENTITY x PUBLIC 'p' 'x.ent'>\n"
                                         "<!NOTATION n PUBLIC 'q'>\n"
                                         "<!ENTITY u SYSTEM 'u.gif' NDATA n>\n"
                                         "]>\n"
                                         "<?t data?><r:a xmlns:r='urn:r' i='k'>one&e;&#10;&x;<![CDATA[<]]>"
                                         "<!--c\\--></r:a>");
    EXPECT_EQ(0, done.status) << done.err;
    const std::string uri = done.out.substr(done.out.find("unparsedEntityDecl"));
    const std::string resolved = uri.substr(0, uri.find('\n'));
    EXPECT_TRUE(resolved.starts_with("unparsedEntityDecl \"u\" null \"")) << resolved;
    std::string expected = "startDocument\n"
                           "startDTD \"r:a\" null null\n"
                           "elementDecl \"r:a\" \"(#PCDATA)\"\n"
                           "attributeDecl \"r:a\" \"i\" \"ID\" \"#IMPLIED\" null\n"
                           "attributeDecl \"r:a\" \"d\" \"CDATA\" null \"x\"\n"
                           "internalEntityDecl \"e\" \"v\\\"w\"\n";
    EXPECT_TRUE(done.out.starts_with(expected)) << done.out;
    const std::string tail = done.out.substr(done.out.find("endDTD"));
    EXPECT_EQ("endDTD\n"
              "processingInstruction \"t\" \"data\"\n"
              "startPrefixMapping \"r\" \"urn:r\"\n"
              "startElement \"urn:r\" \"a\" \"r:a\" {\"\" \"i\" \"i\" ID \"k\" declared specified}"
              " {\"\" \"d\" \"d\" CDATA \"x\" declared}\n"
              "characters \"onev\\\"w\\n\"\n"
              "skippedEntity \"x\"\n"
              "startCDATA\n"
              "characters \"<\"\n"
              "endCDATA\n"
              "comment \"c\\\\\"\n"
              "endElement \"urn:r\" \"a\" \"r:a\"\n"
              "endPrefixMapping \"r\"\n"
              "endDocument\n",
              tail);
}

TEST_F(EventsCommandTest, NamespaceDeclarationsAreShownWhenAsked) {
    EXPECT_NE(std::string::npos,
              run({"events", "--namespace-prefixes"}, "<a xmlns='u'/>").out.find("\"xmlns\" CDATA \"u\""));
    EXPECT_EQ(std::string::npos, run({"events"}, "<a xmlns='u'/>").out.find("CDATA"));
}

TEST_F(EventsCommandTest, TextIsOneLineHoweverTheInputIsCut) {
    std::string text(300000, 'x');
    const Outcome done = run({"events"}, "<a>" + text + "</a>");
    EXPECT_NE(std::string::npos, done.out.find("characters \"" + text + "\"\n"));
}

TEST_F(EventsCommandTest, AFaultComesAfterTheEventsBeforeIt) {
    const Outcome failed = run({"events"}, "<a>text<b></a>");
    EXPECT_EQ(1, failed.status);
    EXPECT_EQ(
        "startDocument\nstartElement \"\" \"a\" \"a\"\ncharacters \"text\"\nstartElement \"\" \"b\" \"b\"\n",
        failed.out);
    EXPECT_TRUE(failed.err.starts_with("<stdin>:1:13: error: ")) << failed.err;
}

TEST_F(EventsCommandTest, AFullDiskIsStatusThree) {
    EXPECT_EQ(3, runInto("/dev/full", {"events"}, "<a/>").status);
}

} // namespace
} // namespace Quillon::Testing
