// What numbers as text depend on beside themselves: the locale of the process or of the thread, and how the processor
// rounds.
#include "dataconv/ManyFloats.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cfenv>
#include <clocale>
#include <locale.h>
#include <string>
#include <thread>

namespace Quillon::DataConv {
namespace {

constexpr int kInputs = 100'000;

class NumberEnvironmentTest
    : public ::testing::Test { // no HostFixture: GoogleTest keeps a record of what is skipped
protected:
    void TearDown() override {
        std::setlocale(LC_ALL, "C");
        std::fesetround(FE_TONEAREST);
    }
};

/// Also with `point` in place of every ".".
template <class Type>
void expectTheCLibrarysTexts(const std::string& point) {
    Random random(5);
    TextBuilder builder;
    for (int i = 0; i < kInputs; ++i) {
        char* const plain = floatText(random, builder);
        ASSERT_TRUE(readsLikeTheCLibrary<Type>(plain)) << '"' << plain << '"';
        std::string text;
        for (const char* at = plain; *at; ++at)
            text += *at == '.' ? point : std::string(1, *at);
        ASSERT_TRUE(readsLikeTheCLibrary<Type>(text.data())) << '"' << text << '"';
    }
}

template <class Type>
void expectTheCLibrarysPrint() {
    Random random(6);
    for (int i = 0; i < kInputs; ++i) {
        const auto value = anyValue<typename Type::Value>(random);
        ASSERT_TRUE(printsLikeTheCLibrary<Type>(value)) << std::hexfloat << value;
    }
}

void expectTheCLibrarysConversions() {
    const std::string point = std::localeconv()->decimal_point;
    expectTheCLibrarysTexts<Float>(point);
    expectTheCLibrarysTexts<Double>(point);
    expectTheCLibrarysPrint<Float>();
    expectTheCLibrarysPrint<Double>();
}

struct LocaleCase {
    const char* name;
    const char* locale;
    const char* point;
};

/// The build makes these locales where it can; see CMakeLists.txt.
const LocaleCase kLocales[] = {{"Comma", "de_DE.UTF-8", ","},
                               {"SeveralBytes", "ps_AF.UTF-8", "\u066B"},
                               {"EightBits", "de_DE.ISO-8859-1", ","}};

class NumberLocaleTest : public NumberEnvironmentTest, public ::testing::WithParamInterface<LocaleCase> {};
INSTANTIATE_TEST_SUITE_P(Locales, NumberLocaleTest, ::testing::ValuesIn(kLocales),
                         [](const auto& info) { return info.param.name; });

TEST_P(NumberLocaleTest, DecimalPointIsThatOfTheProcess) {
    if (std::setlocale(LC_ALL, GetParam().locale) == nullptr)
        GTEST_SKIP() << "no locale " << GetParam().locale;
    ASSERT_STREQ(GetParam().point, std::localeconv()->decimal_point);
    expectTheCLibrarysConversions();
}

TEST_P(NumberLocaleTest, DecimalPointIsThatOfTheThread) {
    const locale_t own = newlocale(LC_ALL_MASK, GetParam().locale, nullptr);
    if (own == nullptr)
        GTEST_SKIP() << "no locale " << GetParam().locale;
    std::thread([own] {
        uselocale(own);
        expectTheCLibrarysConversions();
        uselocale(LC_GLOBAL_LOCALE);
    }).join();
    freelocale(own);
    expectTheCLibrarysConversions();
}

TEST_P(NumberLocaleTest, DecimalPointChangesWithTheLocale) {
    for (int i = 0; i < 3; ++i)
        for (const char* locale : {GetParam().locale, "C"}) {
            if (std::setlocale(LC_NUMERIC, locale) == nullptr)
                GTEST_SKIP() << "no locale " << locale;
            EXPECT_TRUE(printsLikeTheCLibrary<Double>(1.5));
            for (const std::string& text : {std::string("1.5"), "1" + std::string(GetParam().point) + "5"})
                EXPECT_TRUE(readsLikeTheCLibrary<Double>(std::string(text).data())) << text;
        }
}

TEST_F(NumberEnvironmentTest, RoundingModeIsObeyed) {
    for (const int mode : {FE_UPWARD, FE_DOWNWARD, FE_TOWARDZERO, FE_TONEAREST}) {
        ASSERT_EQ(0, std::fesetround(mode));
        expectTheCLibrarysConversions();
    }
}

int errnoAfter(double& value, const char* text, bool byLibrary) {
    errno = 0;
    if (byLibrary)
        CStringToDouble()._convert(const_cast<char*>(text), value);
    else
        std::sscanf(text, "%lg", &value);
    return errno;
}

TEST_F(NumberEnvironmentTest, RangeIsReportedAsTheCLibraryDoes) {
    for (const char* text :
         {"1", "1e400", "-1e400", "1e-400", "1e-320", "0e-400", "1e-310x", "2.2250738585072014e-308",
          "2.2250738585072011e-308", "2.2250738585072013830902e-308", "1.7976931348623159e308",
          "179769313486231570000e289", "179769313486231590000e289", "1e99999", "0e99999", "1e-99999"}) {
        double expected = 0, actual = 0;
        const int expectedError = errnoAfter(expected, text, false);
        EXPECT_EQ(expectedError, errnoAfter(actual, text, true)) << text;
        EXPECT_EQ(expected, actual) << text;
    }
}

} // namespace
} // namespace Quillon::DataConv
