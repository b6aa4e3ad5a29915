#include "runtime/HostServices.h"

#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstdio>
#include <string>

namespace Quillon::Runtime {
namespace {

class HostServicesTest : public Testing::HostFixture {
protected:
    void TearDown() override {
        std::setlocale(LC_ALL, "C");
        HostFixture::TearDown();
    }
};

class HostServicesDeathTest : public HostServicesTest {};

std::string taken(char* text) {
    const std::string result = text ? text : "(null)";
    release(text);
    return result;
}

std::u16string taken(unsigned short* text) {
    std::u16string result;
    for (const unsigned short* p = text; p && *p; ++p)
        result += static_cast<char16_t>(*p);
    release(text);
    return result;
}

std::string formatted(std::uint32_t code, ...) {
    std::va_list arguments;
    va_start(arguments, code);
    char* text = hostServices().formatMessage(nullptr, code, arguments);
    va_end(arguments);
    return taken(text);
}

int printed(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int result = hostServices().print(format, arguments);
    va_end(arguments);
    return result;
}

const std::uint32_t kCodes[] = {0x7F0001, 0x7F0002, 0xFFFFFFFF};
const char* const kNames[] = {"FIRST", "SECOND"};
const char* const kFormats[] = {"First: %s.", "Second: %d of %s."};
const MessageTable kTable = {2, 0x7F, kCodes, kNames, kFormats, "", 0, 0};

TEST_F(HostServicesTest, TheTableInForceIsACopyOfWhatWasSet) {
    EXPECT_NE(hostServices().allocate, defaultHostServices().allocate); // main has replaced it
    EXPECT_EQ(hostServices().print, defaultHostServices().print);
    const HostServices before = hostServices();
    HostServices mine = before;
    mine.print = [](const char*, std::va_list) { return 42; };
    setHostServices(mine);
    mine.print = nullptr;
    EXPECT_EQ(42, printed("x"));
    setHostServices(before);
}

TEST_F(HostServicesTest, MessageTableHasEightWords) {
    EXPECT_EQ(sizeof(void*) == 4 ? 32u : 48u, sizeof(MessageTable));
    EXPECT_EQ(0u, offsetof(MessageTable, count));
    EXPECT_EQ(4u, offsetof(MessageTable, facility));
    EXPECT_EQ(8u, offsetof(MessageTable, codes));
    EXPECT_EQ(8u + sizeof(void*), offsetof(MessageTable, names));
    EXPECT_EQ(8u + 2 * sizeof(void*), offsetof(MessageTable, formats));
    EXPECT_EQ(8u + 3 * sizeof(void*), offsetof(MessageTable, facilityText));
    EXPECT_EQ(8u + 4 * sizeof(void*), offsetof(MessageTable, reserved1));
    EXPECT_EQ(12u + 4 * sizeof(void*), offsetof(MessageTable, reserved2));
}

TEST_F(HostServicesTest, MessagesAreFormattedByCode) {
    hostServices().addMessageTable(nullptr, &kTable);
    hostServices().addMessageTable(nullptr, &kTable); // a second time does no harm
    EXPECT_EQ("First: x.", formatted(0x7F0001, "x"));
    EXPECT_EQ("Second: -1 of y.", formatted(0x7F0002, 0xFFFFFFFFu, "y"));
}

TEST_F(HostServicesTest, AnUnknownCodeIsShown) {
    EXPECT_EQ("Unknown message 00ABCDEF.", formatted(0xABCDEF));
}

TEST_F(HostServicesTest, FormattingWithoutMemoryGivesNull) {
    hostServices().addMessageTable(nullptr, &kTable);
    Testing::hostMemory().failRequest(1);
    EXPECT_EQ("(null)", formatted(0x7F0001, "x"));
    Testing::hostMemory().failRequest(1);
    EXPECT_EQ("(null)", formatted(0xABCDEF));
    Testing::hostMemory().failRequest(0);
}

TEST_F(HostServicesTest, PrintGoesToStandardOutput) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(6, printed("%s-%d\n", "abc", 7));
    std::fflush(stdout);
    EXPECT_EQ("abc-7\n", testing::internal::GetCapturedStdout());
}

TEST_F(HostServicesTest, LocalTextFollowsTheLocale) {
    EXPECT_EQ(u"a\uFFFD\uFFFD", taken(hostServices().localToUtf16("a\xC3\xA9"))); // the C locale is ASCII
    const unsigned short text[] = {'a', 0xE9, 0};
    EXPECT_EQ("a?", taken(hostServices().utf16ToLocal(text)));
    ASSERT_TRUE(std::setlocale(LC_CTYPE, "C.UTF-8"));
    EXPECT_EQ(u"a\u00E9", taken(hostServices().localToUtf16("a\xC3\xA9")));
    EXPECT_EQ("a\xC3\xA9", taken(hostServices().utf16ToLocal(text)));
    const unsigned short lone[] = {0xD800, 0};
    EXPECT_EQ("\xEF\xBF\xBD", taken(hostServices().utf16ToLocal(lone)));
}

TEST_F(HostServicesTest, LocalTextOfNullIsNull) {
    EXPECT_EQ(nullptr, hostServices().localToUtf16(nullptr));
    EXPECT_EQ(nullptr, hostServices().utf16ToLocal(nullptr));
}

TEST_F(HostServicesTest, LocalTextWithoutMemoryIsNull) {
    const unsigned short text[] = {'a', 0};
    for (const char* locale : {"C", "C.UTF-8"}) {
        ASSERT_TRUE(std::setlocale(LC_CTYPE, locale));
        Testing::hostMemory().failRequest(1);
        EXPECT_EQ(nullptr, hostServices().localToUtf16("a")) << locale;
        Testing::hostMemory().failRequest(1);
        EXPECT_EQ(nullptr, hostServices().utf16ToLocal(text)) << locale;
        Testing::hostMemory().failRequest(0);
    }
}

TEST_F(HostServicesDeathTest, FatalErrorSaysCodeAndTextAndEndsWithTheCode) {
    EXPECT_EXIT(hostServices().fatalError(3, "no more"), testing::ExitedWithCode(3),
                "^fatal error 3: no more\n$");
}

TEST_F(HostServicesDeathTest, PanicEndsWithTheStatus) {
    EXPECT_EXIT(hostServices().panic(7), testing::ExitedWithCode(7), "^$");
}

TEST_F(HostServicesDeathTest, UnexpectedIsTerminate) {
    EXPECT_EXIT(
        {
            std::set_terminate([] {
                std::fputs("terminated", stderr);
                std::_Exit(9);
            });
            hostServices().unexpected();
        },
        testing::ExitedWithCode(9), "^terminated$");
}

} // namespace
} // namespace Quillon::Runtime
