#include "tools/ToolRunner.h"

#include <algorithm>

namespace Quillon::Testing {
namespace {

using CheckCommandTest = ToolTest;

TEST_F(CheckCommandTest, WellFormedDocumentsSayNothing) {
    write("a.xml", "<a/>");
    const Outcome done = run({"check", "a.xml", "-"}, "<b/>");
    EXPECT_EQ(0, done.status);
    EXPECT_EQ("", done.out + done.err);
}

TEST_F(CheckCommandTest, EveryFileIsLookedAtAndEachFaultIsALine) {
    write("a.xml", "<a>");
    write("b.xml", "<b/>");
    write("c.xml", "<c>&undeclared;</c>");
    const Outcome failed = run({"check", "a.xml", "b.xml", "c.xml"});
    EXPECT_EQ(1, failed.status);
    EXPECT_EQ(2, std::count(failed.err.begin(), failed.err.end(), '\n')) << failed.err;
    EXPECT_TRUE(failed.err.starts_with("a.xml:1:4: error: ")) << failed.err;
    EXPECT_NE(std::string::npos, failed.err.find("\nc.xml:1:4: error: ")) << failed.err;
}

TEST_F(CheckCommandTest, TheHighestStatusCounts) {
    write("bad.xml", "<a>");
    write("good.xml", "<a/>");
    const Outcome failed = run({"check", "bad.xml", "missing.xml", "good.xml"});
    EXPECT_EQ(3, failed.status);
    EXPECT_NE(std::string::npos, failed.err.find("missing.xml: error: No such file or directory\n"))
        << failed.err;
    EXPECT_TRUE(failed.err.starts_with("bad.xml:1:4: error: ")) << failed.err;
}

TEST_F(CheckCommandTest, AFaultInAnEntityIsNamedByTheEntity) {
    write("e.ent", "\n<b>");
    write("d.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'e.ent'>]><a>&e;</a>");
    EXPECT_EQ(0, run({"check", "d.xml"}).status);
    const Outcome failed = run({"check", "--external-entities", "d.xml"});
    EXPECT_EQ(1, failed.status);
    EXPECT_NE(std::string::npos, failed.err.find("e.ent:2:4: error: ")) << failed.err;
}

TEST_F(CheckCommandTest, AnEntityThatCannotBeOpenedIsNamedWithTheReason) {
    write("d.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM 'missing.ent'>]><a>&e;</a>");
    const Outcome failed = run({"check", "--external-entities", "d.xml"});
    EXPECT_EQ(1, failed.status);
    EXPECT_NE(std::string::npos, failed.err.find("missing.ent")) << failed.err;
    EXPECT_NE(std::string::npos, failed.err.find("No such file or directory")) << failed.err;
    EXPECT_EQ(1, std::count(failed.err.begin(), failed.err.end(), '\n')) << failed.err;
}

} // namespace
} // namespace Quillon::Testing
