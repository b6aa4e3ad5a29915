// What the library's users do not see: the classes, the port that the parser read, sizes beyond 32 bits.
#include "net/UriCharactersInternal.h"
#include "net/UriParserInternal.h"
#include "net/UriPathInternal.h"

#include "net/URISyntaxException.h"
#include "net/UriModel.h"
#include "support/HostFixture.h"

#include <cstring>
#include <limits>
#include <string>

namespace Quillon::Testing {
namespace {

using namespace Net;

class UriInternalsTest : public HostFixture {};

const unsigned char* bytes(const std::string& text) {
    return reinterpret_cast<const unsigned char*>(text.c_str());
}

constexpr char kAlphaMembers[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

struct ClassCase {
    const char* name;
    CharacterSet set;
    const char* members; ///< beside ALPHA where it is a part
    bool hasAlpha;
};

class UriCharacterClassTest : public HostFixture, public ::testing::WithParamInterface<ClassCase> {};

TEST_P(UriCharacterClassTest, HasItsMembersAndNoOther) {
    const std::string members = std::string(GetParam().members) + (GetParam().hasAlpha ? kAlphaMembers : "");
    for (int c = 0; c < 256; ++c)
        EXPECT_EQ(c != 0 && members.find(static_cast<char>(c)) != std::string::npos,
                  GetParam().set.contains(static_cast<unsigned char>(c)))
            << c;
}

const ClassCase kClasses[] = {
    {"Alpha", kAlpha, "", true},
    {"Digits", kDigits, "0123456789", false},
    {"HexDigits", kHexDigits, "0123456789abcdefABCDEF", false},
    {"SubDelims", kSubDelims, "!$&'()*+,;=", false},
    {"Unreserved", kUnreserved, "0123456789-._~", true},
    {"Scheme", kSchemeCharacters, "0123456789+-.", true},
    {"UserInfo", kUserInfoCharacters, "0123456789-._~!$&'()*+,;=:", true},
    {"RegName", kRegNameCharacters, "0123456789-._~!$&'()*+,;=", true},
    {"Segment", kSegmentCharacters, "0123456789-._~!$&'()*+,;=:@", true},
    {"SegmentNzNc", kSegmentNzNcCharacters, "0123456789-._~!$&'()*+,;=@", true},
    {"Path", kPathCharacters, "0123456789-._~!$&'()*+,;=:@/", true},
    {"Query", kQueryCharacters, "0123456789-._~!$&'()*+,;=:@/?", true},
};
INSTANTIATE_TEST_SUITE_P(Classes, UriCharacterClassTest, ::testing::ValuesIn(kClasses),
                         [](const auto& info) { return info.param.name; });

TEST_F(UriInternalsTest, ClassesAreThereBeforeAnyInitialiserRuns) {
    static_assert(kQueryCharacters.contains('?') && !kPathCharacters.contains('?'));
    static constinit CharacterSet atLoad = kQueryCharacters;
    EXPECT_TRUE(atLoad.contains('?'));
}

int portOf(const std::string& text) {
    return parseUri(bytes(text)).port;
}

TEST_F(UriInternalsTest, PortIsReadAndClamped) {
    EXPECT_EQ(-1, portOf("//h"));
    EXPECT_EQ(-1, portOf("//h:"));
    EXPECT_EQ(0, portOf("//h:0"));
    EXPECT_EQ(80, portOf("//h:80/"));
    EXPECT_EQ(80, portOf("//h:00000000000000080?"));
    EXPECT_EQ(99999, portOf("//[::1]:99999"));
    EXPECT_EQ(2147483646, portOf("//h:2147483646"));
    EXPECT_EQ(2147483647, portOf("//h:2147483647"));
    EXPECT_EQ(2147483647, portOf("//h:2147483648"));
    EXPECT_EQ(2147483647, portOf("//h:4294967297"));
    EXPECT_EQ(2147483647, portOf("//h:18446744073709551617"));
}

TEST_F(UriInternalsTest, EscapeEndsThePort) {
    EXPECT_EQ(8, portOf("//h:8%319"));
    EXPECT_EQ(0, portOf("//h:%31"));
}

TEST_F(UriInternalsTest, PortIsTheModels) {
    for (const char* text :
         {"//h", "//h:", "//h:80", "//h:8%319", "//h:%31", "//h:2147483648", "//u@[::]:1#"})
        EXPECT_EQ(modelParse(text).uri.port, portOf(text)) << text;
}

TEST_F(UriInternalsTest, PartsLieInTheText) {
    const std::string text = "x://u@h:80/p?q#f";
    const UriParts parts = parseUri(bytes(text));
    EXPECT_EQ(bytes(text), parts.scheme.begin);
    EXPECT_EQ(bytes(text) + 4, parts.authority.begin);
    EXPECT_EQ(bytes(text) + 10, parts.authority.end);
    EXPECT_EQ(bytes(text) + text.size(), parts.fragment.end);
}

TEST_F(UriInternalsTest, BlocksBeyond32BitsAreRefusedUnasked) {
    const std::size_t requests = hostMemory().requests();
    constexpr std::uint64_t kMaximum = std::numeric_limits<std::uint32_t>::max();
    for (const std::uint64_t length : {kMaximum, kMaximum + 1, kMaximum + 100, 5 * kMaximum}) {
        EXPECT_EQ(nullptr, tryAllocateText(length).get()) << length;
        EXPECT_THROW(allocateText(length), System::OutOfMemoryException) << length;
    }
    EXPECT_EQ(requests, hostMemory().requests());
}

TEST_F(UriInternalsTest, PathsAreMergedAsTheModelDoes) {
    for (const bool hasAuthority : {false, true})
        for (const std::string base : {"", "a", "/", "/a", "/a/", "a/b", "//", "a//b"})
            for (const std::string reference : {"g", "g/h", "../g", "./"}) {
                ModelUri model{.path = base};
                if (hasAuthority)
                    model.authority = "h";
                const OwnedText merged =
                    mergePaths(wholeOf(bytes(base)), hasAuthority, wholeOf(bytes(reference)));
                EXPECT_EQ(modelMerge(model, reference), reinterpret_cast<const char*>(merged.get()));
            }
}

} // namespace
} // namespace Quillon::Testing
