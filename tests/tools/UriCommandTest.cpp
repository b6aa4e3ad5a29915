#include "tools/ToolRunner.h"

namespace Quillon::Testing {
namespace {

using UriCommandTest = ToolTest;

TEST_F(UriCommandTest, ParsePrintsTheComponentsThatAreThere) {
    EXPECT_EQ("scheme: x\nauthority: u@h:80\nuserInfo: u\nhost: h\npath: /p\nquery: \nfragment: f\n",
              run({"uri", "parse", "x://u@h:80/p?#f"}).out);
    EXPECT_EQ("path: \n", run({"uri", "parse", ""}).out);
}

TEST_F(UriCommandTest, ParsePutsACaretUnderTheByteAtFault) {
    const Outcome failed = run({"uri", "parse", "x:a%4g"});
    EXPECT_EQ(1, failed.status);
    EXPECT_EQ("", failed.out);
    EXPECT_EQ("x:a%4g:1:4: error: Malformed escape pair\nx:a%4g\n   ^\n", failed.err);
}

TEST_F(UriCommandTest, OperationsPrintTheirResult) {
    EXPECT_EQ("http://a/b/c/g\n", run({"uri", "resolve", "http://a/b/c/d;p?q", "./g"}).out);
    EXPECT_EQ("http://a/b/c/g\n", run({"uri", "resolve", "http://a/b/c/d;p?q", "http:g"}).out);
    EXPECT_EQ("http:g\n", run({"uri", "resolve", "--strict", "http://a/b/c/d;p?q", "http:g"}).out);
    EXPECT_EQ("../x\n", run({"uri", "relativize", "http://h/a/b/c", "http://h/a/x"}).out);
    EXPECT_EQ("abc://Host/a/b\n", run({"uri", "normalize", "Abc://Host/a/./b"}).out);
    EXPECT_EQ("equal\n", run({"uri", "compare", "X://H/P", "x://h/p"}).out);
    EXPECT_EQ("different\n", run({"uri", "compare", "x:a", "x:b"}).out);
}

TEST_F(UriCommandTest, AFaultIsOneLineWithItsPlace) {
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {"uri", "resolve", "x:/a", "x:a b"},
             {"uri", "resolve", "x:a b", "x:/a"},
             {"uri", "relativize", "x:a b", "x:/a"},
             {"uri", "normalize", "x:a b"},
             {"uri", "compare", "x:a", "x:a b"},
         }) {
        const Outcome failed = run(arguments);
        EXPECT_EQ(1, failed.status);
        EXPECT_EQ("x:a b:1:4: error: Illegal character in rootless path\n", failed.err)
            << testing::PrintToString(arguments);
    }
}

TEST_F(UriCommandTest, WrongUsageIsStatusTwo) {
    EXPECT_EQ(2, run({"uri"}).status);
    EXPECT_EQ(2, run({"uri", "resolve", "x:a"}).status);
    EXPECT_EQ(2, run({"uri", "parse", "--strict", "x:a"}).status);
}

TEST_F(UriCommandTest, AFullDiskIsStatusThree) {
    EXPECT_EQ(3, runInto("/dev/full", {"uri", "parse", "x:a"}).status);
}

} // namespace
} // namespace Quillon::Testing
