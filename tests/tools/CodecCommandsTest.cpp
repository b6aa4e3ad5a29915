#include "tools/ToolRunner.h"

#include <random>

namespace Quillon::Testing {
namespace {

using CodecCommandsTest = ToolTest;

std::string randomBytes(std::size_t count) {
    std::mt19937 random(4711);
    std::string bytes;
    for (std::size_t i = 0; i < count; ++i)
        bytes += static_cast<char>(random());
    return bytes;
}

TEST_F(CodecCommandsTest, AnythingComesBack) {
    for (const std::size_t count : {0u, 1u, 2u, 3u, 57u, 58u, 49152u, 65535u, 65536u, 65537u, 200000u}) {
        const std::string bytes = randomBytes(count);
        for (const char* codec : {"base64", "hex"}) {
            const Outcome encoded = run({codec, "encode"}, bytes);
            EXPECT_EQ(0, encoded.status) << encoded.err;
            const Outcome decoded = run({codec, "decode"}, encoded.out);
            EXPECT_EQ(0, decoded.status) << decoded.err;
            EXPECT_TRUE(bytes == decoded.out) << codec << ' ' << count;
        }
    }
}

TEST_F(CodecCommandsTest, FilesAreReadAndWritten) {
    write("in", "Ma");
    EXPECT_EQ(0, run({"base64", "encode", "in", "-o", "out"}).status);
    EXPECT_EQ("TWE=", read("out"));
    EXPECT_EQ("Ma", run({"base64", "decode", "out"}).out);
    EXPECT_EQ("4D61", run({"hex", "encode", "in"}).out);
}

TEST_F(CodecCommandsTest, PaddingMayBeFollowedByMuchWhiteSpace) {
    EXPECT_EQ("M", run({"base64", "decode"}, "T Q\n=" + std::string(200000, '\n') + "= \n").out);
    for (std::size_t before = 65530; before < 65540; ++before) {
        const Outcome decoded = run({"base64", "decode"}, std::string(before, ' ') + "TQ==\n");
        EXPECT_EQ("M", decoded.out) << before << decoded.err;
    }
}

TEST_F(CodecCommandsTest, FaultsAreToldWithLineColumnAndByte) {
    struct Case {
        const char *codec, *text, *message;
    };
    const char kWrong[] = ": a character outside the alphabet, or padding out of place\n";
    const char kShort[] = ": the input ends in the middle of a unit\n";
    const Case cases[] = {
        {"hex", "0A\n0a", "<stdin>:2:2: error: byte 4"},
        {"hex", "ABC", "<stdin>:1:4: error: byte 3"},
        {"base64", "TWFu\nTW*u", "<stdin>:2:1: error: byte 5"},
        {"base64", "TWFuT", "<stdin>:1:6: error: byte 5"},
    };
    for (const Case& c : cases) {
        const Outcome failed = run({c.codec, "decode"}, c.text);
        EXPECT_EQ(1, failed.status) << c.text;
        EXPECT_TRUE(failed.err == std::string(c.message) + kWrong
                    || failed.err == std::string(c.message) + kShort)
            << failed.err;
    }
    for (const char* text : {"TR==", "TQ=", "TQ==TQ==", "=", "====", "TQ=Q"}) {
        const Outcome failed = run({"base64", "decode"}, text);
        EXPECT_EQ(1, failed.status) << text;
        EXPECT_TRUE(failed.err.starts_with("<stdin>:1:")) << failed.err;
    }
}

TEST_F(CodecCommandsTest, AFaultLeavesTheOutputFileAsItWas) {
    write("out", "old");
    EXPECT_EQ(1, run({"hex", "decode", "-o", "out"}, "0a").status);
    EXPECT_EQ("old", read("out"));
}

TEST_F(CodecCommandsTest, FilesAndDisksThatFailAreStatusThree) {
    EXPECT_EQ(3, run({"hex", "encode", "missing"}).status);
    EXPECT_EQ(3, runInto("/dev/full", {"hex", "encode"}, "x").status);
    EXPECT_EQ(3, runIntoClosedPipe({"base64", "encode"}, randomBytes(500000)).status);
    EXPECT_EQ(2, run({"hex"}).status);
}

} // namespace
} // namespace Quillon::Testing
