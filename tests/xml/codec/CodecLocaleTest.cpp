// White space of another locale than that in which a process starts: in this one, bytes 0x85 and 0xA0 are white space.
#include "xml/codec/Base64BinaryCodec.h"
#include "xml/codec/CodecCalls.h"
#include "xml/codec/HexBinaryCodec.h"

#include <gtest/gtest.h>

#include <cctype>
#include <clocale>
#include <string>

namespace Quillon::Xml {
namespace {

using Testing::CallResult;
using Testing::decodeAtOnce;
using Testing::decodeCall;
using Testing::OneShotResult;

class CodecLocaleTest : public ::testing::Test {
protected:
    static void SetUpTestSuite() { std::setlocale(LC_CTYPE, "more_spaces.ISO-8859-1"); }
    static void TearDownTestSuite() { std::setlocale(LC_CTYPE, "C"); }

    void SetUp() override {
        if (std::isspace(0xA0) == 0 || std::isspace(0x85) == 0)
            GTEST_SKIP() << "left out, no locale with more white space";
    }
};

/// `count` times "foo", with white space of the locale here and there.
std::string spacedGroups(int count) {
    const char* const groups[] = {"\xA0Zm9v", "Zm9\x85v", "Zm9v", "Zm9v", "Zm9v"};
    std::string text;
    for (int i = 0; i < count; ++i)
        text += groups[i % 5];
    return text;
}

std::string foos(int count) {
    std::string result;
    for (int i = 0; i < count; ++i)
        result += "foo";
    return result;
}

TEST_F(CodecLocaleTest, Base64SkipsItInAStream) {
    Base64BinaryCodec codec;
    for (int c = 0; c < 256; ++c) {
        codec.reset();
        const std::string text = std::string("Zm9v") + static_cast<char>(c) + "YmFy";
        const bool isSkipped = decodeCall(codec, text, 100, true) == CallResult{"foobar", 9, 0};
        EXPECT_EQ(std::isspace(c) != 0, isSkipped) << c;
    }
    codec.reset();
    const std::string text = spacedGroups(100);
    EXPECT_EQ((CallResult{foos(100), text.size(), 0}), decodeCall(codec, text, 1'000, true));
}

TEST_F(CodecLocaleTest, Base64SkipsAndDoesNotCountItAtOnce) {
    Base64BinaryCodec codec;
    EXPECT_EQ((OneShotResult{"foobar", 0}), decodeAtOnce(codec, "\xA0Zm9v\x85Ym\xA0"
                                                                "Fy\xA0"));
    EXPECT_EQ((OneShotResult{foos(100), 0}), decodeAtOnce(codec, spacedGroups(100)));
    EXPECT_EQ((OneShotResult{"", cteInvalidArguments}), decodeAtOnce(codec, "Zm9\xA0"));
}

TEST_F(CodecLocaleTest, HexadecimalHasWhiteSpaceOfItsOwn) {
    HexBinaryCodec codec;
    EXPECT_EQ(cteInvalidInput, decodeAtOnce(codec, "0A\xA0").error);
    EXPECT_EQ(cteInvalidInput, decodeAtOnce(codec, "0A\x85").error);
    EXPECT_EQ((OneShotResult{"\n", 0}), decodeAtOnce(codec, "0A "));
}

} // namespace
} // namespace Quillon::Xml
