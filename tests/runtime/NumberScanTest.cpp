#include "runtime/NumberScanInternal.h"

#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdio>
#include <limits>
#include <string>
#include <type_traits>

namespace Quillon::Runtime {
namespace {

class NumberScanTest : public Testing::HostFixture {};

template <class T>
struct Scanned {
    NumberScan outcome;
    T value;
};

template <class T>
Scanned<T> scanned(const char* text, T before = 7) {
    T value = before;
    const NumberScan outcome = scanNumber(text, value);
    return {outcome, value};
}

template <class T>
void expectNumber(const char* text, T expected) {
    const Scanned<T> result = scanned<T>(text);
    EXPECT_EQ(NumberScan::Number, result.outcome) << text;
    EXPECT_EQ(expected, result.value) << text;
}

template <class T>
void expectNone(const char* text, NumberScan expected) {
    const Scanned<T> result = scanned<T>(text);
    EXPECT_EQ(expected, result.outcome) << text;
    EXPECT_EQ(T{7}, result.value) << text;
}

template <class T>
class IntegerScanTest : public Testing::HostFixture {};
using IntegerTypes = ::testing::Types<int, unsigned int, long, unsigned long, long long, unsigned long long>;
TYPED_TEST_SUITE(IntegerScanTest, IntegerTypes);

TYPED_TEST(IntegerScanTest, ReadsTheNumberAtTheStart) {
    expectNumber<TypeParam>("42", 42);
    expectNumber<TypeParam>(" \t\n\v\f\r42abc", 42);
    expectNumber<TypeParam>("+42 17", 42);
    expectNumber<TypeParam>("007", 7);
    expectNumber<TypeParam>("0x10", 0);
    expectNumber<TypeParam>("4.9", 4);
    expectNumber<TypeParam>("-1", static_cast<TypeParam>(-1));
}

TYPED_TEST(IntegerScanTest, ReadsTheWholeRange) {
    constexpr auto smallest = std::numeric_limits<TypeParam>::min();
    constexpr auto largest = std::numeric_limits<TypeParam>::max();
    expectNumber<TypeParam>(std::to_string(smallest).c_str(), smallest);
    expectNumber<TypeParam>(std::to_string(largest).c_str(), largest);
}

TYPED_TEST(IntegerScanTest, TextWithoutANumberChangesNothing) {
    for (const char* text : {"abc", "-", "+", "--1", "- 1", ".5", "x1", " -"})
        expectNone<TypeParam>(text, NumberScan::NoNumber);
}

TYPED_TEST(IntegerScanTest, EmptyTextChangesNothing) {
    for (const char* text : {"", " ", " \t\n\v\f\r"})
        expectNone<TypeParam>(text, NumberScan::Nothing);
}

/// The rules once more: white space, a sign, digits. A value that the platform's `long` (for int and long) or the
/// 64-bit type cannot hold stops at its limit, and the limit is cut to the type.
template <class T>
Scanned<T> modelOf(const std::string& text) {
    using Wide = std::conditional_t<(sizeof(T) > sizeof(long)), long long, long>;
    using WideUnsigned = std::make_unsigned_t<Wide>;
    std::size_t at = text.find_first_not_of(" \t\n\v\f\r");
    if (at == std::string::npos)
        return {NumberScan::Nothing, 7};
    const bool isNegative = text[at] == '-';
    if (text[at] == '-' || text[at] == '+')
        ++at;
    const std::string digits = text.substr(at, text.find_first_not_of("0123456789", at) - at);
    if (digits.empty())
        return {NumberScan::NoNumber, 7};
    const long double most = std::is_unsigned_v<T>
                                 ? static_cast<long double>(std::numeric_limits<WideUnsigned>::max())
                             : isNegative ? -static_cast<long double>(std::numeric_limits<Wide>::min())
                                          : static_cast<long double>(std::numeric_limits<Wide>::max());
    WideUnsigned magnitude = 0;
    long double exact = 0; // 64 bits of precision, so that 2^64 - 1 is exact
    for (const char digit : digits) {
        magnitude = magnitude * 10 + static_cast<unsigned int>(digit - '0');
        exact = exact * 10 + (digit - '0');
    }
    if (exact > most)
        return {NumberScan::Number,
                static_cast<T>(std::is_unsigned_v<T> ? std::numeric_limits<WideUnsigned>::max()
                               : isNegative ? static_cast<WideUnsigned>(std::numeric_limits<Wide>::min())
                                            : static_cast<WideUnsigned>(std::numeric_limits<Wide>::max()))};
    return {NumberScan::Number, static_cast<T>(isNegative ? WideUnsigned{0} - magnitude : magnitude)};
}

TYPED_TEST(IntegerScanTest, AgreesWithTheModelOnAllShortTexts) {
    const std::string letters = " -+079x.";
    for (std::size_t length = 0, count = 1; length <= 6; ++length, count *= letters.size()) {
        for (std::size_t number = 0; number < count; ++number) {
            std::string text;
            for (std::size_t digits = number; text.size() < length; digits /= letters.size())
                text += letters[digits % letters.size()];
            const Scanned<TypeParam> expected = modelOf<TypeParam>(text),
                                     actual = scanned<TypeParam>(text.c_str());
            ASSERT_EQ(expected.outcome, actual.outcome) << '"' << text << '"';
            ASSERT_EQ(expected.value, actual.value) << '"' << text << '"';
        }
    }
}

TYPED_TEST(IntegerScanTest, AgreesWithTheModelAroundTheLimits) {
    for (const char* text : {"127",
                             "128",
                             "255",
                             "256",
                             "-128",
                             "-129",
                             "32767",
                             "32768",
                             "65535",
                             "65536",
                             "2147483647",
                             "2147483648",
                             "-2147483648",
                             "-2147483649",
                             "4294967295",
                             "4294967296",
                             "-4294967295",
                             "-4294967296",
                             "-4294967297",
                             "9223372036854775807",
                             "9223372036854775808",
                             "-9223372036854775808",
                             "-9223372036854775809",
                             "18446744073709551615",
                             "18446744073709551616",
                             "-18446744073709551615",
                             "-18446744073709551616",
                             "99999999999999999999",
                             "-99999999999999999999",
                             "340282366920938463463374607431768211456"}) {
        const Scanned<TypeParam> expected = modelOf<TypeParam>(text), actual = scanned<TypeParam>(text);
        EXPECT_EQ(expected.outcome, actual.outcome) << text;
        EXPECT_EQ(expected.value, actual.value) << text;
    }
}

TEST_F(NumberScanTest, FloatingPointIsReadAsTheCLibraryDoes) {
    expectNumber<double>(" 1.5e3x", 1500);
    expectNumber<double>("-.5", -0.5);
    expectNumber<double>("0x1p4", 16);
    expectNumber<double>("inf", std::numeric_limits<double>::infinity());
    expectNone<double>("abc", NumberScan::NoNumber);
    expectNone<double>(".", NumberScan::NoNumber);
    expectNone<double>(" ", NumberScan::Nothing);
}

/// Rounded to 64 bits first, these would lie half-way between two doubles.
TEST_F(NumberScanTest, ProductsAreRoundedOnce) {
    for (const char* text : {"66209385e18", "18488530e18", "36459e22", "00000000000000000000066209385e18"}) {
        double expected = 0;
        ASSERT_EQ(1, std::sscanf(text, "%lg", &expected));
        expectNumber<double>(text, expected);
    }
}

/// What no arithmetic of powers of ten is exact enough for.
TEST_F(NumberScanTest, NumbersHalfwayBetweenTwoAreRoundedToTheEvenOne) {
    expectNumber<double>("9007199254740993", 9007199254740992);
    expectNumber<double>("9007199254740993.0000000000000000000000000001", 9007199254740994);
    expectNumber<double>("9007199254740995", 9007199254740996);
    expectNumber<double>("90071992547409930e-1", 9007199254740992);
    expectNumber<double>("-9007199254740993e0", -9007199254740992);
}

TEST_F(NumberScanTest, LongTextsAreReadToTheirEnd) {
    const std::string zeros(1'000'000, '0');
    EXPECT_EQ(1.5, scanned<double>((zeros + "1.5" + zeros).c_str()).value);
    EXPECT_EQ(0.25, scanned<double>(("0." + zeros + "25e1000000").c_str()).value);
    EXPECT_EQ(2.5, scanned<double>(("0." + zeros + "25e+1000001x").c_str()).value);
    EXPECT_EQ(1, scanned<double>(("1" + zeros + "e-1000000").c_str()).value);
    EXPECT_EQ(42, scanned<int>((zeros + "42").c_str()).value);
    EXPECT_EQ(std::numeric_limits<unsigned long long>::max(),
              scanned<unsigned long long>((zeros + "42" + zeros).c_str()).value);
}

} // namespace
} // namespace Quillon::Runtime
