#include "runtime/NumberPrintInternal.h"

#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <string>

namespace Quillon::Runtime {
namespace {

class NumberPrintTest : public Testing::HostFixture {};

template <class T>
std::string printed(T value) {
    NumberBuffer text;
    const std::size_t length = printNumber(text, value);
    EXPECT_EQ(std::strlen(text), length);
    return text;
}

std::string bySprintf(double value) {
    char text[kNumberCapacity];
    std::sprintf(text, "%.16g", value);
    return text;
}

template <class T>
class IntegerPrintTest : public Testing::HostFixture {};
using IntegerTypes = ::testing::Types<int, unsigned int, long, unsigned long, long long, unsigned long long>;
TYPED_TEST_SUITE(IntegerPrintTest, IntegerTypes);

TYPED_TEST(IntegerPrintTest, WholeRangeIsPrinted) {
    using Limits = std::numeric_limits<TypeParam>;
    for (const TypeParam value : {Limits::min(), Limits::max(), TypeParam{0}, TypeParam{1}, TypeParam{100}})
        EXPECT_EQ(std::to_string(value), printed(value));
}

TEST_F(NumberPrintTest, SignOfZeroIsKept) {
    EXPECT_EQ("0", printed(0.0));
    EXPECT_EQ("-0", printed(-0.0));
    EXPECT_EQ("-0", printed(-0.0f));
}

TEST_F(NumberPrintTest, WhatIsNotFiniteIsNamed) {
    EXPECT_EQ("inf", printed(std::numeric_limits<double>::infinity()));
    EXPECT_EQ("-inf", printed(-std::numeric_limits<float>::infinity()));
    EXPECT_EQ("nan", printed(std::numeric_limits<double>::quiet_NaN()));
    EXPECT_EQ("-nan", printed(-std::numeric_limits<double>::quiet_NaN()));
}

TEST_F(NumberPrintTest, SmallAndLargeNumbersHaveAnExponent) {
    EXPECT_EQ("0.0001", printed(0.0001));
    EXPECT_EQ("1e-05", printed(0.00001));
    EXPECT_EQ("-1.25e-05", printed(-0.0000125));
    EXPECT_EQ("1e-06", printed(1e-06));
    EXPECT_EQ("9999999999999998", printed(9999999999999998.0));
    EXPECT_EQ("1e+16", printed(1e16));
    EXPECT_EQ("99999999", printed(99999999.0));
    EXPECT_EQ("99999992", printed(99999992.0f));
    EXPECT_EQ("1e+08", printed(1e8f));
    EXPECT_EQ("1e-10", printed(1e-10f));
}

TEST_F(NumberPrintTest, TrailingZerosAreLeftOut) {
    EXPECT_EQ("1000", printed(1000.0));
    EXPECT_EQ("1000.5", printed(1000.5));
    EXPECT_EQ("1000.001", printed(1000.001));
    EXPECT_EQ("0.001", printed(0.001f));
}

TEST_F(NumberPrintTest, HalvesAreRoundedToTheEvenDigit) {
    EXPECT_EQ("8.000015258789062", printed(8 + 0x1p-16)); // ...0625
    EXPECT_EQ("8.000045776367188", printed(8 + 0x3p-16)); // ...1875
    EXPECT_EQ("1.0000038", printed(1.00000379f));
    EXPECT_EQ("8388608.5", printed(8388608.5));
    EXPECT_EQ("1024.0001", printed(1024 + 0x1p-13f));
}

TEST_F(NumberPrintTest, RoundingUpMayAddADigit) {
    for (double power = 1e-7; power < 1e18; power *= 10)
        for (const double value :
             {std::nextafter(power, 0), power, power - power * 4e-17, power * 0.9999999999999999})
            EXPECT_EQ(bySprintf(value), printed(value));
}

TEST_F(NumberPrintTest, EveryPowerOfTwoIsPrintedAsTheCLibraryDoes) {
    for (int exponent = -1074; exponent <= 1023; ++exponent)
        for (const double factor : {1.0, 1.5, 1.0 + 0x1p-52, 2.0 - 0x1p-52})
            EXPECT_EQ(bySprintf(std::ldexp(factor, exponent)), printed(std::ldexp(factor, exponent)));
}

} // namespace
} // namespace Quillon::Runtime
