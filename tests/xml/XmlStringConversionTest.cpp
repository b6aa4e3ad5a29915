#include "xml/XmlStringConversion.h"

#include "runtime/HostServices.h"
#include "support/HostFixture.h"
#include "support/Text.h"
#include "xml/XmlString.h"

#include <gtest/gtest.h>

#include <clocale>
#include <memory>
#include <string>

namespace Quillon::Xml {
namespace {

using Testing::everyAllocationFails;
using Testing::hostMemory;
using Testing::text;
using Testing::unitsOf;

struct HostRelease {
    void operator()(void* block) const { Runtime::release(block); }
};
using HostText = std::unique_ptr<char[], HostRelease>;
using HostUnits = std::unique_ptr<unsigned short[], HostRelease>;

class XmlStringConversionTest : public Testing::HostFixture {};

std::string utf8(const XmlString& string) {
    return HostText(XmlStringConversion::toUTF8(string)).get();
}

std::string native(const XmlString& string) {
    return HostText(XmlStringConversion::toNative(string)).get();
}

/// Sets the code page for a test.
class CodePage {
public:
    explicit CodePage(const char* locale) : saved_(std::setlocale(LC_CTYPE, nullptr)) {
        isSet = std::setlocale(LC_CTYPE, locale) != nullptr;
    }
    ~CodePage() { std::setlocale(LC_CTYPE, saved_.c_str()); }
    CodePage(const CodePage&) = delete;
    CodePage& operator=(const CodePage&) = delete;

    bool isSet;

private:
    std::string saved_;
};

constexpr char kUtf8Locale[] = "C.UTF-8";

TEST_F(XmlStringConversionTest, NullStringGivesANullPointer) {
    const std::size_t before = hostMemory().requests();
    EXPECT_EQ(nullptr, XmlStringConversion::toUTF16(XmlString()));
    EXPECT_EQ(nullptr, XmlStringConversion::toUTF8(XmlString()));
    EXPECT_EQ(nullptr, XmlStringConversion::toNative(XmlString()));
    EXPECT_EQ(before, hostMemory().requests());
}

TEST_F(XmlStringConversionTest, EmptyStringGivesATerminatorAlone) {
    EXPECT_EQ(0, HostUnits(XmlStringConversion::toUTF16(text(u"")))[0]);
    EXPECT_EQ("", utf8(text(u"")));
    EXPECT_EQ("", native(text(u"")));
}

TEST_F(XmlStringConversionTest, ResultIsTheCallersOwnCopy) {
    const XmlString string = text(u"abc");
    const std::ptrdiff_t before = hostMemory().liveBlocks();
    const HostUnits copy(XmlStringConversion::toUTF16(string));
    const HostText first(XmlStringConversion::toUTF8(string)), second(XmlStringConversion::toNative(string));
    EXPECT_EQ(before + 3, hostMemory().liveBlocks());
    EXPECT_NE(string.getPtr(), copy.get());
    EXPECT_TRUE(std::equal(copy.get(), copy.get() + 4, string.getPtr())) << "the terminator included";
    EXPECT_EQ(1u, string.getRefs());
}

TEST_F(XmlStringConversionTest, UnitsBehindAZeroUnitAreLeftOut) {
    const XmlString string = text(std::u16string(u"ab\0cd", 5));
    ASSERT_EQ(5u, string.size());
    const HostUnits copy(XmlStringConversion::toUTF16(string));
    EXPECT_TRUE(std::equal(copy.get(), copy.get() + 3, std::u16string(u"ab\0", 3).begin()));
    EXPECT_EQ("ab", utf8(string));
    EXPECT_EQ("ab", native(string));
}

TEST_F(XmlStringConversionTest, UnitsBeyondTheSizeAreTakenUpToTheFirstZeroUnit) {
    const unsigned short buffer[] = {'a', 'b', 'c', 0};
    const XmlString string(Borrowed, buffer, 1);
    EXPECT_EQ('c', HostUnits(XmlStringConversion::toUTF16(string))[2]);
    EXPECT_EQ("abc", utf8(string));
    EXPECT_EQ("abc", native(string));
}

TEST_F(XmlStringConversionTest, Utf16KeepsIllFormedUnits) {
    const XmlString string = text(std::u16string{0xDC00, 0xD800, 'a', 0xFFFF});
    const HostUnits copy(XmlStringConversion::toUTF16(string));
    EXPECT_TRUE(std::equal(copy.get(), copy.get() + 5, string.getPtr()));
}

struct Utf8Case {
    const char* name;
    std::u16string text;
    const char* bytes;
};

const Utf8Case kUtf8Cases[] = {
    {"Ascii", u"abc", "abc"},
    {"OneByteEnds", u"\u0001\u007F", "\x01\x7F"},
    {"TwoByteEnds", u"\u0080\u07FF", "\xC2\x80\xDF\xBF"},
    {"ThreeByteEnds", u"\u0800\uFFFF", "\xE0\xA0\x80\xEF\xBF\xBF"},
    {"AroundTheSurrogates", u"\uD7FF\uE000", "\xED\x9F\xBF\xEE\x80\x80"},
    {"FourByteEnds", u"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
    {"LoneHighSurrogate",
     {'a', 0xD800, 'b'},
     "a\xEF\xBF\xBD"
     "b"},
    {"LoneLowSurrogate",
     {'a', 0xDC00, 'b'},
     "a\xEF\xBF\xBD"
     "b"},
    {"HighSurrogateAtTheEnd", {'a', 0xD800}, "a\xEF\xBF\xBD"},
    {"SwappedSurrogates", {0xDC00, 0xD800}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"TwoHighSurrogates", {0xD800, 0xD800, 0xDC00}, "\xEF\xBF\xBD\xF0\x90\x80\x80"},
};

class ToUtf8Test : public XmlStringConversionTest, public ::testing::WithParamInterface<Utf8Case> {};

TEST_P(ToUtf8Test, Encodes) {
    EXPECT_EQ(GetParam().bytes, utf8(text(GetParam().text)));
}

TEST_P(ToUtf8Test, NativeIsTheSameUnderAUtf8Locale) {
    const CodePage codePage(kUtf8Locale);
    ASSERT_TRUE(codePage.isSet);
    EXPECT_EQ(GetParam().bytes, native(text(GetParam().text)));
}

INSTANTIATE_TEST_SUITE_P(Table, ToUtf8Test, ::testing::ValuesIn(kUtf8Cases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(XmlStringConversionTest, Utf8ComesBackUnchanged) {
    std::u16string all;
    for (unsigned int c = 1; c <= 0x10FFFF; c += c < 0x3000 ? 1 : 37) {
        if (c >= 0xD800 && c < 0xE000)
            continue;
        if (c >= 0x10000) {
            all += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            all += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        } else {
            all += static_cast<char16_t>(c);
        }
    }
    const HostText bytes(XmlStringConversion::toUTF8(text(all)));
    EXPECT_EQ(all, unitsOf(makeString(reinterpret_cast<const unsigned char*>(bytes.get()))));
}

TEST_F(XmlStringConversionTest, NativeUnderTheCLocaleHasAQuestionMarkForWhatIsNotAscii) {
    const CodePage codePage("C");
    ASSERT_TRUE(codePage.isSet);
    EXPECT_EQ("a?b", native(text(u"a\u00E9b")));
    EXPECT_EQ("?", native(text(u"\U0001F600")));
    EXPECT_EQ("\x01~\x7F", native(text(u"\u0001~\u007F")));
}

TEST_F(XmlStringConversionTest, MakeStringReadsTheLocalCodePage) {
    {
        const CodePage codePage(kUtf8Locale);
        ASSERT_TRUE(codePage.isSet);
        EXPECT_EQ(u"\u00E9\U0001F600", unitsOf(makeString("\xC3\xA9\xF0\x9F\x98\x80")));
        EXPECT_EQ(u"a\uFFFD", unitsOf(makeString("a\xFF")));
        EXPECT_EQ(u"", unitsOf(makeString("")));
        EXPECT_FALSE(makeString("").isNull());
    }
    const CodePage codePage("C");
    ASSERT_TRUE(codePage.isSet);
    EXPECT_EQ(u"abc", unitsOf(makeString("abc")));
    EXPECT_EQ(u"a\uFFFD\uFFFDz", unitsOf(makeString("a\xC3\xA9z")));
}

TEST_F(XmlStringConversionTest, ConversionsFailWithOutOfMemory) {
    const XmlString string = text(u"some text \u20AC");
    everyAllocationFails([&] { HostUnits(XmlStringConversion::toUTF16(string)); });
    everyAllocationFails([&] { HostText(XmlStringConversion::toUTF8(string)); });
    everyAllocationFails([&] { HostText(XmlStringConversion::toNative(string)); });
    const CodePage codePage(kUtf8Locale);
    everyAllocationFails([&] { HostText(XmlStringConversion::toNative(string)); });
    EXPECT_EQ(1u, string.getRefs());
}

} // namespace
} // namespace Quillon::Xml
