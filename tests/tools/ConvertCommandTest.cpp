#include "tools/ToolRunner.h"

namespace Quillon::Testing {
namespace {

using ConvertCommandTest = ToolTest;

TEST_F(ConvertCommandTest, ShowsWhatTextsBecome) {
    EXPECT_EQ("  42abc -> 42\n", run({"convert", "int", "  42abc"}).out);
    EXPECT_EQ("70000 -> 4464\n256 -> 256\n", run({"convert", "short", "70000", "256"}).out);
    EXPECT_EQ("-1 -> 255\n", run({"convert", "unsigned char", "--", "-1"}).out);
    EXPECT_EQ("0.1 -> 0.1\nabc -> (unchanged)\n", run({"convert", "double", "0.1", "abc"}).out);
    EXPECT_EQ("1 -> 1\n", run({"convert", "bool", "1"}).out);
}

TEST_F(ConvertCommandTest, EveryReadableNameIsKnown) {
    for (const char* name : {"uint8_t", "uint16_t", "uint32_t", "uint64_t", "unsigned char", "unsigned short",
                             "unsigned int", "unsigned long", "int8_t", "int16_t", "int32_t", "int64_t",
                             "char", "short", "int", "long", "float", "double", "bool"})
        EXPECT_EQ("1 -> 1\n", run({"convert", name, "1"}).out) << name;
}

TEST_F(ConvertCommandTest, EveryTextIsLookedAtAndEachFaultIsALine) {
    const Outcome failed = run({"convert", "int", "x", "1"});
    EXPECT_EQ(1, failed.status);
    EXPECT_EQ("1 -> 1\n", failed.out);
    EXPECT_EQ("x:1:1: error: RuntimeException: there is no number at the start\n", failed.err);
    const Outcome boolean = run({"convert", "bool", "true"});
    EXPECT_EQ(1, boolean.status);
    EXPECT_EQ("true:1:1: error: IllegalArgumentException: neither 0 nor 1\n", boolean.err);
}

TEST_F(ConvertCommandTest, AnUnknownTypeIsWrongUsage) {
    const Outcome wrong = run({"convert", "uint128_t", "1"});
    EXPECT_EQ(2, wrong.status);
    EXPECT_NE(std::string::npos, wrong.err.find("unsigned long"));
    EXPECT_EQ(2, run({"convert", "int"}).status);
}

} // namespace
} // namespace Quillon::Testing
