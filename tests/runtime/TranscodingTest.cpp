#include "runtime/Transcoding.h"

#include "runtime/HostServices.h"
#include "support/HostFixture.h"
#include "support/SharedData.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <sstream>

namespace Quillon::Runtime {
namespace {

using Testing::HostFixture;

class TranscodingTest : public HostFixture {};

std::u16string decoded(const std::string& bytes) {
    unsigned short* units = utf8ToUtf16(bytes.data(), static_cast<std::ptrdiff_t>(bytes.size()));
    std::u16string result;
    if (units) {
        for (std::size_t n = 0, end = utf8CharacterCount(bytes.data(), bytes.size()); n < end; ++n) {
            result += static_cast<char16_t>(*units);
            if ((result.back() & 0xFC00) == 0xD800)
                result += static_cast<char16_t>(*++units);
            ++units;
        }
        EXPECT_EQ(0, *units) << "no terminator";
        release(units - result.size());
    }
    return result;
}

std::string encoded(const char* encoding, const std::u16string& text) {
    const std::vector<unsigned short> units(text.begin(), text.end());
    char* bytes = utf16ToEncoding(encoding, units.data(), units.size());
    if (!bytes)
        return "(null)";
    std::string result = bytes;
    release(bytes);
    return result;
}

std::string utf8(const std::u16string& text) {
    const std::vector<unsigned short> units(text.begin(), text.end());
    char* bytes = utf16ToUtf8(units.data(), units.size());
    std::string result = bytes;
    release(bytes);
    return result;
}

std::string fromHex(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16));
    return bytes;
}

struct Pair {
    const char* name;
    std::string bytes;
    std::u16string units;
};

const Pair* wellFormed(std::size_t i) {
    static const Pair pairs[] = {
        {"empty", "", u""},
        {"last of one byte", "\x7F", u"\x7F"},
        {"first of two bytes", "\xC2\x80", u"\x80"},
        {"last of two bytes", "\xDF\xBF", u"\u07FF"},
        {"first of three bytes", "\xE0\xA0\x80", u"\u0800"},
        {"below the surrogates", "\xED\x9F\xBF", u"\uD7FF"},
        {"above the surrogates", "\xEE\x80\x80", u"\uE000"},
        {"last of three bytes", "\xEF\xBF\xBF", u"\uFFFF"},
        {"first of four bytes", "\xF0\x90\x80\x80", u"\U00010000"},
        {"last character", "\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {"mixed", "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80z", u"a\u00E9\u20AC\U0001F600z"},
        {"zero inside", std::string("a\0b", 3), std::u16string(u"a\0b", 3)},
    };
    return i < sizeof pairs / sizeof *pairs ? &pairs[i] : nullptr;
}

TEST_F(TranscodingTest, WellFormedTextConvertsBothWays) {
    for (std::size_t i = 0; const Pair* pair = wellFormed(i); ++i) {
        EXPECT_EQ(pair->units, decoded(pair->bytes)) << pair->name;
        const std::vector<unsigned short> units(pair->units.begin(), pair->units.end());
        char* bytes = utf16ToUtf8(units.data(), units.size());
        EXPECT_EQ(pair->bytes, std::string(bytes, pair->bytes.size())) << pair->name;
        EXPECT_EQ('\0', bytes[pair->bytes.size()]) << pair->name;
        release(bytes);
    }
}

TEST_F(TranscodingTest, EveryCharacterConvertsBothWays) {
    for (char32_t c = 1; c <= 0x10FFFF; ++c) {
        if (c == 0xD800)
            c = 0xE000;
        std::u16string units;
        if (c < 0x10000) {
            units += static_cast<char16_t>(c);
        } else {
            units += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
        ASSERT_EQ(units, decoded(utf8(units))) << static_cast<std::uint32_t>(c);
    }
}

TEST_F(TranscodingTest, IllFormedUtf8BecomesOneReplacementPerMaximalPart) {
    for (const auto& row : Testing::tableRows(Testing::testData("utf/wpt-invalid.tsv"))) {
        if (row[0] != "utf-8")
            continue;
        std::u16string expected;
        std::istringstream words(row[2]);
        for (std::string word; words >> word;)
            expected += static_cast<char16_t>(std::stoi(word, nullptr, 16));
        EXPECT_EQ(expected, decoded(fromHex(row[1]))) << row[3];
        EXPECT_EQ(expected.size(), utf8CharacterCount(fromHex(row[1]).data(), row[1].size() / 2)) << row[3];
    }
}

TEST_F(TranscodingTest, DecoderStressTextComesOutAsARightDecoderMakesIt) {
    if (!Testing::hasSharedData("UTF-8 decoder stress text"))
        return;
    EXPECT_EQ(Testing::sharedData("utf/utf8.replace.ref.txt"), [] {
        const std::string bytes = Testing::sharedData("utf/utf8tests.bin");
        const std::u16string text = decoded(bytes);
        const std::vector<unsigned short> units(text.begin(), text.end());
        std::string result;
        for (std::size_t start = 0; start <= units.size();) { // zero units end each C string
            std::size_t end = start;
            while (end < units.size() && units[end] != 0)
                ++end;
            result += utf8(text.substr(start, end - start));
            if (end < units.size())
                result += '\0';
            start = end + 1;
        }
        return result;
    }());
}

struct Beginning {
    std::size_t byteCount;
    std::u16string text;
    bool isIllFormed;
    bool operator==(const Beginning&) const = default;
};

Beginning beginningOf(const std::string& bytes) {
    std::vector<unsigned short> units(bytes.size());
    const Utf8Beginning found = wellFormedUtf8ToUtf16(bytes.data(), bytes.size(), units.data());
    units.resize(found.unitCount);
    return {found.byteCount, std::u16string(units.begin(), units.end()), found.isIllFormed};
}

TEST_F(TranscodingTest, BeginningEndsBeforeACharacterThatIsCutOff) {
    const std::string bytes =
        "x\xC3\xA4\xE2\x82\xAC\xED\x9F\xBF\xEF\xBF\xBD\xF0\x9F\x98\x80\xF4\x8F\xBF\xBFy";
    for (const std::size_t padding : {0u, 1u, 62u, 63u, 64u, 200u}) {
        const std::string before(padding, 'p');
        std::size_t whole = 0;
        for (std::size_t end = 0; end <= bytes.size(); ++end) {
            const bool isBoundary = end == bytes.size() || (bytes[end] & 0xC0) != 0x80;
            whole = isBoundary ? end : whole;
            const Beginning wanted{padding + whole, decoded(before + bytes.substr(0, whole)), false};
            EXPECT_EQ(wanted, beginningOf(before + bytes.substr(0, end))) << padding << ' ' << end;
        }
    }
}

TEST_F(TranscodingTest, BeginningEndsBeforeIllFormedBytes) {
    for (const char* bad : {"\x80", "\xBF", "\xC0\x80", "\xC1\xBF", "\xC3x", "\xE0\x80\x80", "\xE0\x9F",
                            "\xE2\x82x", "\xED\xA0\x80", "\xED\xA0", "\xF0\x80", "\xF0\x8F\xBF\xBF",
                            "\xF0\x9F\x98x", "\xF4\x90\x80\x80", "\xF5", "\xFF", "\xEF\xBF\xBD\xFF"})
        for (const std::size_t padding : {0u, 1u, 63u, 200u})
            for (const char* behind : {"", "z", "\xC3\xA4", "\xC3"}) {
                const std::string before = std::string(padding, 'p') + "\xE2\x82\xAC";
                const bool isBehindOther = bad[0] == '\xEF';
                const std::size_t end = before.size() + (isBehindOther ? 3 : 0);
                const std::string bytes = before + bad + behind;
                EXPECT_EQ((Beginning{end, decoded(bytes.substr(0, end)), true}), beginningOf(bytes))
                    << padding << ' ' << testing::PrintToString(bytes);
            }
}

TEST_F(TranscodingTest, LoneSurrogatesAreIllFormed) {
    EXPECT_EQ("\xEF\xBF\xBD", utf8({0xD800}));
    EXPECT_EQ("\xEF\xBF\xBD", utf8({0xDFFF}));
    EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD", utf8({0xDC00, 0xD800}));
    EXPECT_EQ("\xEF\xBF\xBD\xF0\x90\x80\x80", utf8({0xD800, 0xD800, 0xDC00}));
    EXPECT_EQ("\xEF\xBF\xBD"
              "a",
              utf8({0xDBFF, 'a'}));
}

TEST_F(TranscodingTest, MinusOneMeansUpToTheTerminator) {
    unsigned short* units = utf8ToUtf16("ab\0c", -1);
    EXPECT_EQ('b', units[1]);
    EXPECT_EQ(0, units[2]);
    release(units);
}

struct EncodingCase {
    const char* encoding;
    std::u16string text;
    std::string bytes;
};

TEST_F(TranscodingTest, CharactersThatTheEncodingLacksBecomeQuestionMarks) {
    const EncodingCase cases[] = {
        {"US-ASCII", u"a\u007F\u0080z", "a\x7F?z"},
        {"us-ascii", u"\U0001F600", "?"},
        {"ISO-8859-1", u"\u00FF\u0100\u00E9", "\xFF?\xE9"},
        {"iso-8859-1", {u'a', 0xD800, u'b'}, "a?b"},
        {"UTF-8", u"\u20AC", "\xE2\x82\xAC"},
        {nullptr, u"\u20AC", "\xE2\x82\xAC"},
        {"ISO-8859-15", u"\u20AC\u00A4\u0101", "\xA4??"},
        {"windows-1252", u"\u20AC\U0001F600!", "\x80?!"},
        {"KOI8-R", {u'a', 0xDC00, u'b'}, "a?b"},
        {"Shift_JIS", u"\u3042", "\x82\xA0"},
        {"GB18030", {u'x', 0xD800}, "x\x84\x31\xA4\x37"}, // U+FFFD, which this encoding has
        {"ISO-2022-JP", u"\u3042", "\x1B$B$\"\x1B(B"},    // ends in its initial state
        {"EUC-KR", std::u16string(3000, u'\uAC00'),
         [] {
             std::string all;
             for (int i = 0; i < 3000; ++i)
                 all += "\xB0\xA1";
             return all;
         }()},
    };
    for (const EncodingCase& c : cases)
        EXPECT_EQ(c.bytes, encoded(c.encoding, c.text)) << (c.encoding ? c.encoding : "(null)");
}

TEST_F(TranscodingTest, NamesThatIconvLacksOrMisreadsAreUnknown) {
    for (const char* name :
         {"no-such-encoding", "", "UTF-8//IGNORE", "ISO-8859-15//TRANSLIT", "8859-1", "a b"}) {
        EXPECT_FALSE(isKnownEncoding(name)) << name;
        EXPECT_EQ("(null)", encoded(name, u"a")) << name;
    }
    for (const char* name : {"UTF-8", "utf-8", "US-ASCII", "ISO-8859-1", "EUC-KR", "UTF-16"})
        EXPECT_TRUE(isKnownEncoding(name)) << name;
    EXPECT_TRUE(isKnownEncoding(nullptr));
}

TEST_F(TranscodingTest, NoMemoryGivesNull) {
    const unsigned short units[] = {'a', 0x20AC, 0xD800};
    for (const char* encoding : {"UTF-8", "US-ASCII", "EUC-KR", "ISO-2022-JP"}) {
        for (std::size_t k = 1;; ++k) {
            Testing::hostMemory().failRequest(k);
            char* bytes = utf16ToEncoding(encoding, units, 3);
            const bool failed = !Testing::hostMemory().failureIsPending();
            Testing::hostMemory().failRequest(0);
            EXPECT_EQ(failed, bytes == nullptr) << encoding << " request " << k;
            release(bytes);
            if (!failed)
                break;
        }
    }
    Testing::hostMemory().failRequest(1);
    EXPECT_EQ(nullptr, utf8ToUtf16("a", 1));
    Testing::hostMemory().failRequest(0);
}

} // namespace
} // namespace Quillon::Runtime
