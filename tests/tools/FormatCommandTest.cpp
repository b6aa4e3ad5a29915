#include "tools/ToolRunner.h"

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace Quillon::Testing {
namespace {

using FormatCommandTest = ToolTest;

const char kDeclaration[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

TEST_F(FormatCommandTest, CopiesStandardInputToStandardOutput) {
    const Outcome done = run({"format"}, "<a b='1&amp;2'>x<c/></a>");
    EXPECT_EQ(0, done.status);
    EXPECT_EQ(std::string(kDeclaration) + "<a b=\"1&amp;2\">x<c></c></a>\n\n", done.out);
    EXPECT_EQ("", done.err);
    EXPECT_EQ(done.out, run({"format", "-"}, "<a b='1&amp;2'>x<c/></a>").out);
}

TEST_F(FormatCommandTest, KeepsCommentsInstructionsSectionsAndDocumentType) {
    const std::string text = "<!DOCTYPE a [\n<!ELEMENT a ANY>\n<!ENTITY e \"x\">\n]>\n"
                             "<?p d?><a><![CDATA[<&]]><!-- c --></a>";
    EXPECT_EQ(std::string(kDeclaration)
                  + "<!DOCTYPE a [\n<!ELEMENT a ANY>\n<!ENTITY e \"x\">\n]>\n"
                    "<?p d?><a><![CDATA[<&]]><!-- c --></a>\n\n",
              run({"format"}, text).out);
}

TEST_F(FormatCommandTest, KeepsNamespaceDeclarations) {
    const std::string text = "<n:a xmlns:n=\"urn:n\" xmlns=\"urn:d\"><b></b></n:a>";
    EXPECT_EQ(kDeclaration + text + "\n\n", run({"format"}, text).out);
}

TEST_F(FormatCommandTest, IndentsBySpacesTabsOrLinesOnly) {
    const std::string text = "<a><b/></a>";
    EXPECT_EQ(std::string(kDeclaration) + "\n<a>\n  <b>\n  </b>\n</a>\n\n",
              run({"format", "--indent", "2"}, text).out);
    EXPECT_EQ(std::string(kDeclaration) + "\n<a>\n\t<b>\n\t</b>\n</a>\n\n",
              run({"format", "--indent", "tab"}, text).out);
    EXPECT_EQ(std::string(kDeclaration) + "\n<a>\n<b>\n</b>\n</a>\n\n",
              run({"format", "--indent", "0"}, text).out);
    EXPECT_EQ(std::string(kDeclaration) + "\n<a>\n<b>\n</b>\n</a>\n\n",
              run({"format", "--newline-only"}, text).out);
    EXPECT_EQ(std::string(kDeclaration) + "<a><b></b></a>\n\n",
              run({"format", "--indent", "none"}, text).out);
}

TEST_F(FormatCommandTest, IndentsElementsThatDeclareNamespaces) {
    EXPECT_EQ(std::string(kDeclaration)
                  + "\n<n:a xmlns:n=\"urn:n\">\n  <b xmlns=\"urn:d\">\n  </b>\n</n:a>\n\n",
              run({"format", "--indent", "2"}, "<n:a xmlns:n='urn:n'><b xmlns='urn:d'/></n:a>").out);
}

TEST_F(FormatCommandTest, StripsNamespacesButNotTheirContent) {
    const std::string text =
        "<a xmlns:n='urn:n' xmlns:m='urn:m' n:x='1' m:y='2' z='3'><n:b>t<m:c>u</m:c></n:b></a>";
    EXPECT_EQ(std::string(kDeclaration)
                  + "<a xmlns:n=\"urn:n\" xmlns:m=\"urn:m\" m:y=\"2\" z=\"3\">t<m:c>u</m:c></a>\n\n",
              run({"format", "--strip-namespace", "urn:n"}, text).out);
    EXPECT_EQ(std::string(kDeclaration) + "<a xmlns:n=\"urn:n\" xmlns:m=\"urn:m\" z=\"3\">tu</a>\n\n",
              run({"format", "--strip-namespace", "urn:n", "--strip-namespace", "urn:m"}, text).out);
}

TEST_F(FormatCommandTest, CanonicalLeavesOutDeclarationDocumentTypeAndSections) {
    EXPECT_EQ("<a>&lt;&amp;</a>", run({"format", "--canonical"}, "<!DOCTYPE a><a><![CDATA[<&]]></a>").out);
}

TEST_F(FormatCommandTest, WritesUtf8FromOtherEncodings) {
    EXPECT_EQ(std::string(kDeclaration) + "<a>\xC3\xA9</a>\n\n",
              run({"format"}, "<?xml version='1.0' encoding='ISO-8859-1'?><a>\xE9</a>").out);
}

TEST_F(FormatCommandTest, ReadsExternalEntitiesOnlyWhenAsked) {
    write("e.ent", "<b/>");
    write("d.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>");
    EXPECT_NE(std::string::npos, run({"format", "--plain", "d.xml"}).out.find("<a>&e;</a>"));
    EXPECT_NE(std::string::npos,
              run({"format", "--plain", "--external-entities", "d.xml"}).out.find("<a><b></b></a>"));
}

TEST_F(FormatCommandTest, ExternalEntitiesStayReferencesUnlessFiltersChangeThem) {
    write("e.ent", "<b xmlns='urn:b'><c xmlns='urn:c'/></b>");
    write("d.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>");
    EXPECT_NE(std::string::npos, run({"format", "--external-entities", "d.xml"}).out.find("<a>&e;</a>"));
    const Outcome stripped = run({"format", "--external-entities", "--strip-namespace", "urn:b", "d.xml"});
    EXPECT_NE(std::string::npos, stripped.out.find("<a><c xmlns=\"urn:c\"></c></a>"))
        << stripped.out << stripped.err;
}

TEST_F(FormatCommandTest, StrippedElementsLeaveTheirMappingsToTheirContent) {
    const std::string text = "<a xmlns:n='urn:n'><n:b xmlns:k='urn:k'><k:c/>t<k:d><k:e/></k:d></n:b><f/></a>";
    EXPECT_EQ(
        std::string(kDeclaration)
            + "<a xmlns:n=\"urn:n\"><k:c xmlns:k=\"urn:k\"></k:c>t<k:d xmlns:k=\"urn:k\"><k:e></k:e></k:d>"
              "<f></f></a>\n\n",
        run({"format", "--strip-namespace", "urn:n"}, text).out);
    const std::string nested =
        "<a><b xmlns='urn:n' xmlns:k='urn:1'><b xmlns:k='urn:2'><k:c/></b><k:c/></b></a>";
    EXPECT_EQ(std::string(kDeclaration)
                  + "<a><k:c xmlns=\"urn:n\" xmlns:k=\"urn:2\"></k:c>"
                    "<k:c xmlns=\"urn:n\" xmlns:k=\"urn:1\"></k:c></a>\n\n",
              run({"format", "--strip-namespace", "urn:n"}, nested).out);
}

TEST_F(FormatCommandTest, WritesTheEncodingThatIsAskedFor) {
    const std::string text = "<a b='\xC3\xA9'>\xE2\x82\xAC<![CDATA[\xC3\xA9]]></a>";
    EXPECT_EQ("<a b=\"&#xE9;\">&#x20AC;<![CDATA[]]>&#xE9;<![CDATA[]]></a>\n\n",
              run({"format", "--encoding", "US-ASCII"}, text).out);
    EXPECT_EQ(
        "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<a b=\"\xE9\">&#x20AC;<![CDATA[\xE9]]></a>\n\n",
        run({"format", "--encoding", "ISO-8859-1"}, text).out);
    EXPECT_EQ("<a b=\"&;\">&;</a>\n\n",
              run({"format", "--plain", "--encoding", "US-ASCII"}, "<a b='\xC3\xA9'>\xC3\xA9</a>").out);
    EXPECT_EQ(2, run({"format", "--encoding", "UTF-16"}, text).status);
}

TEST_F(FormatCommandTest, ACharacterThatCannotBeWrittenIsStatusOneWithItsPlace) {
    for (const char* markup : {"<!--\xC3\xA9-->", "<?p \xC3\xA9?>"}) {
        const Outcome strict =
            run({"format", "--encoding", "US-ASCII"}, std::string("<a>\n ") + markup + "</a>");
        EXPECT_EQ(1, strict.status);
        EXPECT_TRUE(strict.err.starts_with("<stdin>:2:2: error: ")) << strict.err;
        EXPECT_NE(std::string::npos, strict.err.find(": U+00E9 cannot stand in ")) << strict.err;
    }
    for (const char* markup : {"<!--\xC3\xA9-->", "<?p \xC3\xA9?>", "<![CDATA[\xC3\xA9]]>"}) {
        const Outcome plain =
            run({"format", "--plain", "--encoding", "US-ASCII"}, std::string("<a>\n ") + markup + "</a>");
        EXPECT_EQ(1, plain.status) << markup;
        EXPECT_TRUE(plain.err.starts_with("<stdin>:2:")) << plain.err;
        EXPECT_TRUE(plain.err.ends_with(": error: Illegal or non-writable character: U+00E9.\n"))
            << plain.err;
    }
}

TEST_F(FormatCommandTest, ReplacesTheOutputFileAndKeepsItsPermissions) {
    write("d.xml", "<a/>");
    std::filesystem::permissions(path("d.xml"), std::filesystem::perms(0640));
    const Outcome done = run({"format", "d.xml", "-o", "d.xml"});
    EXPECT_EQ(0, done.status) << done.err;
    EXPECT_EQ("", done.out);
    EXPECT_EQ(std::string(kDeclaration) + "<a></a>\n\n", read("d.xml"));
    EXPECT_EQ(std::filesystem::perms(0640), std::filesystem::status(path("d.xml")).permissions());
    EXPECT_EQ(std::vector<std::string>{"d.xml"}, fileNames());
}

TEST_F(FormatCommandTest, ReplacesTheFileBehindALink) {
    write("d.xml", "<a/>");
    std::filesystem::create_symlink("d.xml", path("link.xml"));
    EXPECT_EQ(0, run({"format", "d.xml", "-o", "link.xml"}).status);
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.xml")));
    EXPECT_EQ(std::string(kDeclaration) + "<a></a>\n\n", read("d.xml"));
}

TEST_F(FormatCommandTest, AFaultLeavesTheOutputFileAsItWas) {
    write("bad.xml", "<a><b></a>");
    write("out.xml", "old");
    const Outcome failed = run({"format", "bad.xml", "-o", "out.xml"});
    EXPECT_EQ(1, failed.status);
    EXPECT_EQ("old", read("out.xml"));
    EXPECT_EQ((std::vector<std::string>{"bad.xml", "out.xml"}), fileNames());
}

TEST_F(FormatCommandTest, AFaultIsOneLineWithItsPlace) {
    write("bad.xml", "<a>\n<b></a>");
    const Outcome failed = run({"format", "bad.xml"});
    EXPECT_EQ(1, failed.status);
    EXPECT_TRUE(failed.err.starts_with("bad.xml:2:6: error: ")) << failed.err;
    EXPECT_EQ(failed.err.size() - 1, failed.err.find('\n')) << failed.err;
    EXPECT_TRUE(run({"format"}, "<a>\n<b></a>").err.starts_with("<stdin>:2:6: error: "));
}

TEST_F(FormatCommandTest, WhatCannotBeReadIsStatusThree) {
    const Outcome missing = run({"format", "missing.xml"});
    EXPECT_EQ(3, missing.status);
    EXPECT_EQ("missing.xml: error: No such file or directory\n", missing.err);
    const Outcome folder = run({"format", "."});
    EXPECT_EQ(3, folder.status);
    EXPECT_EQ(".: error: Is a directory\n", folder.err);
}

TEST_F(FormatCommandTest, WhatCannotBeWrittenIsStatusThree) {
    const Outcome noFolder = run({"format", "-o", "no/such/folder.xml"}, "<a/>");
    EXPECT_EQ(3, noFolder.status);
    EXPECT_EQ("no/such/folder.xml: error: No such file or directory\n", noFolder.err);
    const Outcome fullDisk = runInto("/dev/full", {"format"}, "<a/>");
    EXPECT_EQ(3, fullDisk.status);
    EXPECT_EQ("standard output: error: No space left on device\n", fullDisk.err);
    const Outcome fullTarget = run({"format", "-o", "/dev/full"}, "<a/>");
    EXPECT_EQ(3, fullTarget.status);
    EXPECT_EQ("/dev/full: error: No space left on device\n", fullTarget.err);
}

TEST_F(FormatCommandTest, AClosedPipeEndsALongJobWithStatusThree) {
    std::string text = "<a>";
    for (int i = 0; i < 100000; ++i)
        text += "<b>text</b>";
    const Outcome closed = runIntoClosedPipe({"format"}, text + "</a>");
    EXPECT_EQ(3, closed.status);
    EXPECT_EQ("standard output: error: Broken pipe\n", closed.err);
}

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) // they keep what was freed
TEST_F(FormatCommandTest, MemoryDoesNotGrowWithTheDocument) {
    std::string rows;
    for (int i = 0; i < 10000; ++i)
        rows += "<row id='" + std::to_string(i * 7919LL % 10007) + "'><name>text &amp; text</name>\n</row>";
    std::ofstream document(path("long.xml"), std::ios::binary);
    document << "<table>";
    for (int i = 0; i < 40; ++i) // 20 MB
        document << rows;
    document << "</table>";
    document.close();
    for (const char* form : {"none", "2"}) {
        const Outcome done = runInto("/dev/null", {"format", "--indent", form, "long.xml"});
        EXPECT_EQ(0, done.status);
        EXPECT_LE(done.peakMemory, 16 * 1024);
    }
}
#endif

TEST_F(FormatCommandTest, WrongUsageIsStatusTwo) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {},
             {"no-such-command"},
             {"format", "--no-such-option"},
             {"format", "--indent", "x"},
             {"format", "--indent", "-1"},
             {"format", "--indent", "101"},
             {"format", "--indent", "2", "--newline-only"},
             {"format", "--strip-namespace"},
             {"format", "a.xml", "b.xml"},
             {"format", "--maximum-depth", "0"},
             {"check"},
         }) {
        const Outcome wrong = run(arguments, "<a/>");
        EXPECT_EQ(2, wrong.status) << testing::PrintToString(arguments);
        EXPECT_NE("", wrong.err) << testing::PrintToString(arguments);
    }
}

TEST_F(FormatCommandTest, HelpAndVersionAreDone) {
    EXPECT_EQ(0, run({"--version"}).status);
    const Outcome help = run({"format", "--help"});
    EXPECT_EQ(0, help.status);
    EXPECT_NE(std::string::npos, help.out.find("this is not the W3C's C14N"));
}

TEST_F(FormatCommandTest, TooDeepADocumentIsRefused) {
    const Outcome refused = run({"format", "--maximum-depth", "2"}, "<a><b><c/></b></a>");
    EXPECT_EQ(1, refused.status);
    EXPECT_TRUE(refused.err.starts_with("<stdin>:1:7: error: ")) << refused.err;
    EXPECT_EQ(0, run({"format", "--maximum-depth", "3"}, "<a><b><c/></b></a>").status);
}

} // namespace
} // namespace Quillon::Testing
