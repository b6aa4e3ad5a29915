#include "dataconv/StandardConversions.h"

#include "dataconv/IllegalArgumentException.h"
#include "dataconv/RuntimeException.h"
#include "runtime/HostServices.h"
#include "support/HostFixture.h"
#include "system/InternalException.h"

#include <gtest/gtest.h>

#include <atomic>
#include <clocale>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace Quillon::DataConv {
namespace {

constexpr int kRandomInputs = 100'000; // for each of eleven types

/// One type: its functors, and the formats and the type through which the C library reads and prints it.
template <class Value, class FromText, class ToText, class Read, class Printed>
struct Family {
    using ValueType = Value;
    using FromTextType = FromText;
    using ToTextType = ToText;
    using ReadType = Read;
    using PrintedType = Printed;
};

struct Int8 : Family<signed char, CStringToInt8, Int8ToCString, int, int> {
    static constexpr const char *readFormat = "%d", *printFormat = "%d";
};
struct Int16 : Family<short, CStringToInt16, Int16ToCString, int, int> {
    static constexpr const char *readFormat = "%d", *printFormat = "%d";
};
struct Int32 : Family<int, CStringToInt32, Int32ToCString, int, int> {
    static constexpr const char *readFormat = "%d", *printFormat = "%d";
};
struct Int64 : Family<long long, CStringToInt64, Int64ToCString, long long, long long> {
    static constexpr const char *readFormat = "%lld", *printFormat = "%lld";
};
struct UInt8 : Family<unsigned char, CStringToUInt8, UInt8ToCString, unsigned int, unsigned int> {
    static constexpr const char *readFormat = "%u", *printFormat = "%u";
};
struct UInt16 : Family<unsigned short, CStringToUInt16, UInt16ToCString, unsigned int, unsigned int> {
    static constexpr const char *readFormat = "%u", *printFormat = "%u";
};
struct UInt32 : Family<unsigned int, CStringToUInt32, UInt32ToCString, unsigned int, unsigned int> {
    static constexpr const char *readFormat = "%u", *printFormat = "%u";
};
struct UInt64
    : Family<unsigned long long, CStringToUInt64, UInt64ToCString, unsigned long long, unsigned long long> {
    static constexpr const char *readFormat = "%llu", *printFormat = "%llu";
};
struct Float : Family<float, CStringToFloat, FloatToCString, double, double> {
    static constexpr const char *readFormat = "%lg", *printFormat = "%.8g";
};
struct Double : Family<double, CStringToDouble, DoubleToCString, double, double> {
    static constexpr const char *readFormat = "%lg", *printFormat = "%.16g";
};
struct Bool : Family<bool, CStringToBool, BoolToCString, int, int> {
    static constexpr const char *readFormat = "%d", *printFormat = "%d";
};

enum class Outcome { Done, IllegalArgument, Runtime };

template <class Value>
struct Read {
    Outcome outcome;
    Value value;
};

template <class Value>
bool same(Value left, Value right) {
    return std::memcmp(&left, &right, sizeof left) == 0; // not-a-number included
}

/// Through the library; `value` starts as `before`.
template <class Type>
Read<typename Type::ValueType> readByLibrary(const char* text, typename Type::ValueType before) {
    const typename Type::FromTextType functor;
    typename Type::ValueType value = before;
    std::string copy(text);
    try {
        functor._convert(copy.data(), value);
    } catch (const IllegalArgumentException&) {
        return {Outcome::IllegalArgument, value};
    } catch (const RuntimeException&) {
        return {Outcome::Runtime, value};
    }
    return {Outcome::Done, value};
}

/// The same by the C library and the rules for what it does not find.
template <class Type>
Read<typename Type::ValueType> readByModel(const char* text, typename Type::ValueType before) {
    using Value = typename Type::ValueType;
    typename Type::ReadType read = -1;
    const int found = std::sscanf(text, Type::readFormat, &read);
    if (std::is_same_v<Value, bool>)
        return read == 0 || read == 1 ? Read<Value>{Outcome::Done, static_cast<Value>(read == 1)}
                                      : Read<Value>{Outcome::IllegalArgument, before};
    if (found == 1)
        return {Outcome::Done, static_cast<Value>(read)};
    return {found == 0 && std::is_integral_v<Value> ? Outcome::Runtime : Outcome::Done, before};
}

template <class Type>
::testing::AssertionResult readsLikeTheModel(const char* text) {
    constexpr auto before = static_cast<typename Type::ValueType>(99);
    const auto expected = readByModel<Type>(text, before), actual = readByLibrary<Type>(text, before);
    if (expected.outcome == actual.outcome && same(expected.value, actual.value))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure()
           << '"' << text << "\": outcome " << static_cast<int>(expected.outcome) << ", " << +expected.value
           << "; but " << static_cast<int>(actual.outcome) << ", " << +actual.value;
}

template <class Functor, class Value>
std::string printedBy(const Functor& functor, Value value) {
    char* text = nullptr;
    functor._convert(value, text);
    const std::string copy(text);
    Runtime::release(text);
    return copy;
}

template <class Type>
std::string printed(typename Type::ValueType value) {
    return printedBy(typename Type::ToTextType(), value);
}

template <class Type>
std::string printedByModel(typename Type::ValueType value) {
    char text[400];
    std::sprintf(text, Type::printFormat, static_cast<typename Type::PrintedType>(value));
    return text;
}

template <class Type>
typename Type::ValueType readValue(const char* text) {
    const Read<typename Type::ValueType> read = readByLibrary<Type>(text, typename Type::ValueType(99));
    EXPECT_EQ(Outcome::Done, read.outcome) << text;
    return read.value;
}

/// Any bits, and often small numbers.
template <class Value>
Value randomValue(std::mt19937_64& random) {
    if constexpr (std::is_same_v<Value, bool>) {
        return random() % 2 != 0;
    } else {
        if (random() % 4 == 0)
            return static_cast<Value>(static_cast<int>(random() % 2001) - 1000);
        const unsigned long long bits = random();
        Value value;
        std::memcpy(&value, &bits, sizeof value);
        return value;
    }
}

template <class Type>
class StandardConversionsTest : public Testing::HostFixture {};
using AllTypes =
    ::testing::Types<Int8, Int16, Int32, Int64, UInt8, UInt16, UInt32, UInt64, Float, Double, Bool>;
TYPED_TEST_SUITE(StandardConversionsTest, AllTypes);

TYPED_TEST(StandardConversionsTest, NullTextIsAnIllegalArgument) {
    const typename TypeParam::FromTextType functor;
    typename TypeParam::ValueType value = 1;
    EXPECT_THROW(functor._convert(nullptr, value), IllegalArgumentException);
    EXPECT_THROW(functor._convert(nullptr, value), System::InternalException);
    EXPECT_EQ(static_cast<typename TypeParam::ValueType>(1), value);
}

TYPED_TEST(StandardConversionsTest, FunctorsDeriveFromTheirConversion) {
    using Value = typename TypeParam::ValueType;
    EXPECT_TRUE((std::is_base_of_v<ConversionFunctor<char*, Value>, typename TypeParam::FromTextType>));
    EXPECT_TRUE((std::is_base_of_v<ConversionFunctor<Value, char*>, typename TypeParam::ToTextType>));
}

TYPED_TEST(StandardConversionsTest, ZeroAndOneGoBothWays) {
    EXPECT_EQ("0", printed<TypeParam>(0));
    EXPECT_EQ("1", printed<TypeParam>(1));
    EXPECT_TRUE(same(static_cast<typename TypeParam::ValueType>(0), readValue<TypeParam>("0")));
    EXPECT_TRUE(same(static_cast<typename TypeParam::ValueType>(1), readValue<TypeParam>("1")));
}

TYPED_TEST(StandardConversionsTest, LeadingWhiteSpaceAndTrailingTextAreIgnored) {
    EXPECT_EQ(static_cast<typename TypeParam::ValueType>(1), readValue<TypeParam>(" \t\n\v\f\r1 abc"));
    EXPECT_EQ(static_cast<typename TypeParam::ValueType>(1), readValue<TypeParam>("+1,5"));
}

TYPED_TEST(StandardConversionsTest, AgreesWithTheCLibraryOnAllShortTexts) {
    const std::string letters =
        std::is_integral_v<typename TypeParam::ValueType> ? " -+0129x." : "-.03exnaif";
    for (std::size_t length = 0, count = 1; length <= 6; ++length, count *= letters.size()) {
        for (std::size_t number = 0; number < count; ++number) {
            char text[8] = {};
            for (std::size_t at = 0, digits = number; at < length; ++at, digits /= letters.size())
                text[at] = letters[digits % letters.size()];
            ASSERT_TRUE(readsLikeTheModel<TypeParam>(text));
        }
    }
}

TYPED_TEST(StandardConversionsTest, AgreesWithTheCLibraryOnRandomTexts) {
    const std::string letters = "0123456789012345678901234567890123456789+-.eE xX\t\xFF";
    std::mt19937_64 random(7);
    for (int i = 0; i < kRandomInputs; ++i) {
        char text[33] = {};
        const std::size_t length = random() % 33;
        for (std::size_t at = 0; at < length; ++at)
            text[at] = letters[random() % letters.size()];
        ASSERT_TRUE(readsLikeTheModel<TypeParam>(text)) << "text " << i;
    }
}

TYPED_TEST(StandardConversionsTest, PrintsRandomValuesAsTheCLibraryDoes) {
    std::mt19937_64 random(8);
    const typename TypeParam::ToTextType functor;
    for (int i = 0; i < kRandomInputs; ++i) {
        const auto value = randomValue<typename TypeParam::ValueType>(random);
        ASSERT_EQ(printedByModel<TypeParam>(value), printedBy(functor, value)) << "value " << i;
    }
}

TYPED_TEST(StandardConversionsTest, LimitsFitIntoTheBuffer) {
    using Limits = std::numeric_limits<typename TypeParam::ValueType>;
    for (const auto value : {Limits::lowest(), Limits::max(), Limits::min()})
        EXPECT_EQ(printedByModel<TypeParam>(value), printed<TypeParam>(value));
}

TYPED_TEST(StandardConversionsTest, IntegersReadBackAsTheyWere) {
    if constexpr (std::is_integral_v<typename TypeParam::ValueType>) {
        using Limits = std::numeric_limits<typename TypeParam::ValueType>;
        for (const auto value : {Limits::min(), Limits::max()})
            EXPECT_EQ(value, readValue<TypeParam>(printed<TypeParam>(value).c_str()));
    }
}

TYPED_TEST(StandardConversionsTest, TextThatCannotBeAllocatedIsOutOfMemory) {
    const typename TypeParam::ToTextType functor;
    char before[] = "before";
    char* text = before;
    Testing::everyAllocationFails(
        [&] {
            functor._convert(1, text);
            Runtime::release(text);
        },
        [&] { EXPECT_EQ(before, text); });
}

class ConversionRulesTest : public Testing::HostFixture {};

TEST_F(ConversionRulesTest, NumbersAreCutToTheWidthOfTheTarget) {
    EXPECT_EQ(4464, readValue<Int16>("70000"));
    EXPECT_EQ(255, readValue<UInt8>("-1"));
    EXPECT_EQ(0, readValue<UInt8>("256"));
    EXPECT_EQ(-128, readValue<Int8>("128"));
    EXPECT_EQ(65535, readValue<UInt16>("-1"));
    EXPECT_EQ(4294967295u, readValue<UInt32>("-1"));
    EXPECT_EQ(18446744073709551615u, readValue<UInt64>("-1"));
    EXPECT_TRUE(std::isinf(readValue<Float>("1e300")));
}

TEST_F(ConversionRulesTest, SixtyFourBitNumbersAreReadInFull) {
    EXPECT_EQ(std::numeric_limits<long long>::min(), readValue<Int64>("-9223372036854775808"));
    EXPECT_EQ(std::numeric_limits<unsigned long long>::max(), readValue<UInt64>("18446744073709551615"));
}

TEST_F(ConversionRulesTest, IntegerTextWithoutANumberIsARuntimeException) {
    EXPECT_EQ(42, readValue<Int32>("  42abc"));
    EXPECT_EQ(Outcome::Runtime, readByLibrary<Int32>("abc", 7).outcome);
    EXPECT_EQ(7, readByLibrary<Int32>("abc", 7).value);
    EXPECT_EQ(Outcome::Runtime, readByLibrary<UInt8>("-", 7).outcome);
    EXPECT_EQ(Outcome::Runtime, readByLibrary<UInt64>("x1", 7).outcome);
}

TEST_F(ConversionRulesTest, EmptyIntegerTextLeavesTheTargetUnchanged) {
    for (const char* text : {"", " ", "\t\n"}) {
        EXPECT_EQ(99, readValue<Int8>(text));
        EXPECT_EQ(99, readValue<Int64>(text));
        EXPECT_EQ(99u, readValue<UInt32>(text));
    }
}

TEST_F(ConversionRulesTest, FloatingTextWithoutANumberLeavesTheTargetUnchanged) {
    for (const char* text : {"abc", "", " ", "-", "."}) {
        EXPECT_EQ(99, readValue<Double>(text)) << text;
        EXPECT_EQ(99, readValue<Float>(text)) << text;
    }
}

TEST_F(ConversionRulesTest, BoolTakesZeroAndOneOnly) {
    EXPECT_TRUE(readValue<Bool>("1"));
    EXPECT_FALSE(readValue<Bool>("0"));
    EXPECT_TRUE(readValue<Bool>(" +1x"));
    for (const char* text : {"2", "-1", "yes", "true", "false", "", " ", "10"}) {
        for (const bool before : {false, true}) {
            const Read<bool> read = readByLibrary<Bool>(text, before);
            EXPECT_EQ(Outcome::IllegalArgument, read.outcome) << text;
            EXPECT_EQ(before, read.value) << text;
        }
    }
}

TEST_F(ConversionRulesTest, FloatingNumbersPrintWith8And16Digits) {
    EXPECT_EQ("0.1", printed<Double>(0.1));
    EXPECT_EQ("0.3333333333333333", printed<Double>(1.0 / 3));
    EXPECT_EQ("-1.797693134862316e+308", printed<Double>(std::numeric_limits<double>::lowest()));
    EXPECT_EQ("1", printed<Float>(1.0f));
    EXPECT_EQ("0.1", printed<Float>(0.1f));
    EXPECT_EQ("0.33333334", printed<Float>(1.0f / 3));
}

TEST_F(ConversionRulesTest, TextIsTheHosts) {
    const std::ptrdiff_t before = Testing::hostMemory().liveBlocks();
    char* text = nullptr;
    Int32ToCString()._convert(-42, text);
    EXPECT_EQ(before + 1, Testing::hostMemory().liveBlocks());
    EXPECT_STREQ("-42", text);
    Runtime::release(text);
}

/// The environment may have no locale with another decimal point; then there is nothing that could differ.
TEST_F(ConversionRulesTest, DecimalPointIsThatOfTheLocale) {
    const std::string before = std::setlocale(LC_NUMERIC, nullptr);
    for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "de_DE", "fr_FR.UTF-8", "C"}) {
        if (std::setlocale(LC_NUMERIC, name) == nullptr)
            continue;
        const std::string point = std::localeconv()->decimal_point;
        EXPECT_EQ("0" + point + "5", printed<Double>(0.5)) << name;
        EXPECT_EQ(0.5, readValue<Double>(("0" + point + "5").c_str())) << name;
        break;
    }
    std::setlocale(LC_NUMERIC, before.c_str());
}

// Threads

using ConversionThreadsTest = Testing::HostFixture;

TEST_F(ConversionThreadsTest, OneFunctorServesManyThreads) {
    const CStringToInt32 toInt;
    const CStringToDouble toDouble;
    const Int32ToCString intToText;
    const DoubleToCString doubleToText;
    std::atomic<int> wrong{0};
    const auto convertMany = [&](int first) {
        for (int i = first; i < first + 1'000; ++i) {
            char* printed = nullptr;
            int number = -1;
            intToText._convert(i, printed);
            toInt._convert(printed, number);
            Runtime::release(printed);
            wrong += number != i;
            double value = -1;
            doubleToText._convert(i / 8.0, printed);
            toDouble._convert(printed, value);
            Runtime::release(printed);
            wrong += value != i / 8.0;
        }
    };
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back(convertMany, i * 100'000);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(0, wrong);
}

} // namespace
} // namespace Quillon::DataConv
