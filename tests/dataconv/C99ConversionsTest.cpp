#include "dataconv/C99Conversions.h"

#include "dataconv/ConversionFunctor.h"
#include "dataconv/CvsnRegistryNode.h"
#include "dataconv/CvsnRootNamespace.h"
#include "dataconv/IllegalArgumentException.h"
#include "dataconv/NameIdMap.h"
#include "dataconv/RuntimeException.h"
#include "dataconv/StandardConversions.h"
#include "runtime/HostServices.h"
#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <type_traits>
#include <typeinfo>

namespace Quillon::DataConv {
namespace {

int idOf(const char* name) {
    return static_cast<int>(NameIdMap::getGlobalNameIdMap()->find(name));
}

AConversionFunctor* functorBetween(const char* from, const char* to) {
    return reinterpret_cast<AConversionFunctor*>(C99Conversions::instance()->_lookup(idOf(from), idOf(to)));
}

const char* const kText = typeid(char*).name();

template <class T>
T fromText(const char* typeName, const char* text) {
    const auto* functor = dynamic_cast<ConversionFunctor<char*, T>*>(functorBetween(kText, typeName));
    T value{};
    std::string copy(text);
    if (functor != nullptr)
        functor->_convert(copy.data(), value);
    else
        ADD_FAILURE() << "no conversion to " << typeName << " of this type";
    return value;
}

template <class T>
std::string toText(const char* typeName, T value) {
    const auto* functor = dynamic_cast<ConversionFunctor<T, char*>*>(functorBetween(typeName, kText));
    char* text = nullptr;
    if (functor != nullptr)
        functor->_convert(value, text);
    else
        ADD_FAILURE() << "no conversion from " << typeName << " of this type";
    const std::string copy = text != nullptr ? text : "";
    Runtime::release(text);
    return copy;
}

/// One readable name and its type.
template <class T>
struct Named {
    using Type = T;
};
#define NAMED(identifier, name, type)                                                                        \
    struct identifier : Named<type> {                                                                        \
        static constexpr const char* readableName = name;                                                    \
    }
NAMED(UInt8, "uint8_t", unsigned char);
NAMED(UInt16, "uint16_t", unsigned short);
NAMED(UInt32, "uint32_t", unsigned int);
NAMED(UInt64, "uint64_t", unsigned long long);
NAMED(UnsignedChar, "unsigned char", unsigned char);
NAMED(UnsignedShort, "unsigned short", unsigned short);
NAMED(UnsignedInt, "unsigned int", unsigned int);
NAMED(UnsignedLong, "unsigned long", unsigned long);
NAMED(Int8, "int8_t", signed char);
NAMED(Int16, "int16_t", short);
NAMED(Int32, "int32_t", int);
NAMED(Int64, "int64_t", long long);
NAMED(Char, "char", char);
NAMED(Short, "short", short);
NAMED(Int, "int", int);
NAMED(Long, "long", long);
NAMED(Float, "float", float);
NAMED(Double, "double", double);
NAMED(Bool, "bool", bool);
#undef NAMED

template <class Type>
class C99ConversionsTest : public Testing::HostFixture {
    void warmUp() override { C99Conversions::instance(); }
};
using AllNames =
    ::testing::Types<UInt8, UInt16, UInt32, UInt64, UnsignedChar, UnsignedShort, UnsignedInt, UnsignedLong,
                     Int8, Int16, Int32, Int64, Char, Short, Int, Long, Float, Double, Bool>;
TYPED_TEST_SUITE(C99ConversionsTest, AllNames);

TYPED_TEST(C99ConversionsTest, ReadableNameConvertsBothWays) {
    using T = typename TypeParam::Type;
    for (const T value : {T(0), T(1)}) {
        EXPECT_EQ(std::to_string(static_cast<int>(value)), toText<T>(TypeParam::readableName, value));
        EXPECT_EQ(value,
                  fromText<T>(TypeParam::readableName, std::to_string(static_cast<int>(value)).c_str()));
    }
}

TYPED_TEST(C99ConversionsTest, LimitsOfThePlatformsWidthGoBothWays) {
    using T = typename TypeParam::Type;
    if constexpr (std::is_integral_v<T>) {
        for (const T value : {std::numeric_limits<T>::min(), std::numeric_limits<T>::max()}) {
            EXPECT_EQ(std::to_string(value), toText<T>(TypeParam::readableName, value));
            EXPECT_EQ(value, fromText<T>(TypeParam::readableName, std::to_string(value).c_str()));
        }
    }
}

TYPED_TEST(C99ConversionsTest, RunTimeNameConvertsBothWays) {
    using T = typename TypeParam::Type;
    EXPECT_EQ("1", toText<T>(typeid(T).name(), T(1)));
    EXPECT_EQ(T(1), fromText<T>(typeid(T).name(), "1"));
}

TYPED_TEST(C99ConversionsTest, ReadableNameHasFunctorsOfItsOwn) {
    using T = typename TypeParam::Type;
    EXPECT_NE(functorBetween(TypeParam::readableName, kText), functorBetween(typeid(T).name(), kText));
    EXPECT_NE(functorBetween(kText, TypeParam::readableName), functorBetween(kText, typeid(T).name()));
}

TYPED_TEST(C99ConversionsTest, NullTextIsAnIllegalArgument) {
    using T = typename TypeParam::Type;
    const auto* functor =
        dynamic_cast<ConversionFunctor<char*, T>*>(functorBetween(kText, TypeParam::readableName));
    ASSERT_NE(nullptr, functor);
    T value = 1;
    EXPECT_THROW(functor->_convert(nullptr, value), IllegalArgumentException);
    EXPECT_EQ(T(1), value);
}

TYPED_TEST(C99ConversionsTest, TextWithoutANumberFollowsItsType) {
    using T = typename TypeParam::Type;
    if constexpr (std::is_same_v<T, bool>) {
        EXPECT_THROW(fromText<T>(TypeParam::readableName, "abc"), IllegalArgumentException);
        EXPECT_THROW(fromText<T>(TypeParam::readableName, ""), IllegalArgumentException);
    } else if constexpr (std::is_integral_v<T>) {
        EXPECT_THROW(fromText<T>(TypeParam::readableName, "abc"), RuntimeException);
        EXPECT_EQ(T(0), fromText<T>(TypeParam::readableName, ""));
    } else {
        EXPECT_EQ(T(0), fromText<T>(TypeParam::readableName, "abc"));
        EXPECT_EQ(T(0), fromText<T>(TypeParam::readableName, ""));
    }
}

TYPED_TEST(C99ConversionsTest, TextThatCannotBeAllocatedIsOutOfMemory) {
    using T = typename TypeParam::Type;
    const auto* functor =
        dynamic_cast<ConversionFunctor<T, char*>*>(functorBetween(TypeParam::readableName, kText));
    ASSERT_NE(nullptr, functor);
    char* text = nullptr;
    Testing::everyAllocationFails(
        [&] {
            functor->_convert(T(1), text);
            Runtime::release(text);
        },
        [&] { EXPECT_EQ(nullptr, text); });
}

class StandardNodeTest : public Testing::HostFixture {
    void warmUp() override { C99Conversions::instance(); }
};

/// Destroyed by the node that takes it.
class ForeignFunctor : public AConversionFunctor {};

int* opaque(AConversionFunctor* functor) {
    return reinterpret_cast<int*>(functor);
}

TEST_F(StandardNodeTest, FixedWidthNamesHaveThePublicFunctors) {
    EXPECT_NE(nullptr, dynamic_cast<CStringToUInt8*>(functorBetween(kText, "uint8_t")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToUInt16*>(functorBetween(kText, "uint16_t")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToUInt32*>(functorBetween(kText, "uint32_t")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToUInt64*>(functorBetween(kText, "uint64_t")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToInt8*>(functorBetween(kText, "int8_t")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToInt16*>(functorBetween(kText, "int16_t")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToInt32*>(functorBetween(kText, "int32_t")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToInt64*>(functorBetween(kText, "int64_t")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToFloat*>(functorBetween(kText, "float")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToDouble*>(functorBetween(kText, "double")));
    EXPECT_NE(nullptr, dynamic_cast<CStringToBool*>(functorBetween(kText, "bool")));
    EXPECT_NE(nullptr, dynamic_cast<UInt8ToCString*>(functorBetween("uint8_t", kText)));
    EXPECT_NE(nullptr, dynamic_cast<UInt16ToCString*>(functorBetween("uint16_t", kText)));
    EXPECT_NE(nullptr, dynamic_cast<UInt32ToCString*>(functorBetween("uint32_t", kText)));
    EXPECT_NE(nullptr, dynamic_cast<UInt64ToCString*>(functorBetween("uint64_t", kText)));
    EXPECT_NE(nullptr, dynamic_cast<Int8ToCString*>(functorBetween("int8_t", kText)));
    EXPECT_NE(nullptr, dynamic_cast<Int16ToCString*>(functorBetween("int16_t", kText)));
    EXPECT_NE(nullptr, dynamic_cast<Int32ToCString*>(functorBetween("int32_t", kText)));
    EXPECT_NE(nullptr, dynamic_cast<Int64ToCString*>(functorBetween("int64_t", kText)));
    EXPECT_NE(nullptr, dynamic_cast<FloatToCString*>(functorBetween("float", kText)));
    EXPECT_NE(nullptr, dynamic_cast<DoubleToCString*>(functorBetween("double", kText)));
    EXPECT_NE(nullptr, dynamic_cast<BoolToCString*>(functorBetween("bool", kText)));
}

TEST_F(StandardNodeTest, CNamesHaveFunctorsThatAreNotPublic) {
    EXPECT_EQ(nullptr, dynamic_cast<CStringToInt32*>(functorBetween(kText, "int")));
    EXPECT_EQ(nullptr, dynamic_cast<CStringToInt16*>(functorBetween(kText, "short")));
    EXPECT_EQ(nullptr, dynamic_cast<CStringToUInt8*>(functorBetween(kText, "unsigned char")));
    EXPECT_EQ(nullptr, dynamic_cast<CStringToUInt16*>(functorBetween(kText, "unsigned short")));
    EXPECT_EQ(nullptr, dynamic_cast<UInt32ToCString*>(functorBetween("unsigned int", kText)));
}

TEST_F(StandardNodeTest, FirstNameOfATypeHasTheRunTimeName) {
    EXPECT_NE(nullptr, dynamic_cast<CStringToUInt8*>(functorBetween(kText, typeid(unsigned char).name())));
    EXPECT_NE(nullptr, dynamic_cast<CStringToUInt16*>(functorBetween(kText, typeid(unsigned short).name())));
    EXPECT_NE(nullptr, dynamic_cast<CStringToUInt32*>(functorBetween(kText, typeid(unsigned int).name())));
    EXPECT_NE(nullptr, dynamic_cast<CStringToInt16*>(functorBetween(kText, typeid(short).name())));
    EXPECT_NE(nullptr, dynamic_cast<Int32ToCString*>(functorBetween(typeid(int).name(), kText)));
}

TEST_F(StandardNodeTest, CharIsASmallNumber) {
    EXPECT_EQ("65", toText<char>("char", 'A'));
    EXPECT_EQ('A', fromText<char>("char", "65"));
    EXPECT_EQ(5, fromText<char>("char", "5"));
}

TEST_F(StandardNodeTest, NumbersAreCutToTheWidthOfTheirName) {
    EXPECT_EQ(255, fromText<unsigned char>("unsigned char", "-1"));
    EXPECT_EQ(4464, fromText<short>("short", "70000"));
    EXPECT_EQ(0, fromText<unsigned short>("unsigned short", "65536"));
    EXPECT_EQ(std::numeric_limits<unsigned long>::max(), fromText<unsigned long>("unsigned long", "-1"));
}

TEST_F(StandardNodeTest, NodeIsOneChildOfTheRoot) {
    const boost::shared_ptr<CvsnRegistryNode> node = C99Conversions::instance();
    EXPECT_EQ(node.get(), C99Conversions::instance().get());
    EXPECT_NE(node.get(), CvsnRootNamespace::instance().get());
    EXPECT_EQ(nullptr, CvsnRootNamespace::instance()->_lookup(idOf("int"), idOf(kText)));
    CvsnRootNamespace::instance()->_bind(1000, 1001, opaque(new ForeignFunctor));
    EXPECT_NE(nullptr, node->_lookup(1000, 1001));
    CvsnRootNamespace::instance()->_unbind(1000, 1001);
    EXPECT_EQ(nullptr, node->_lookup(1000, 1001));
}

TEST_F(StandardNodeTest, EachCallBindsWhatIsMissing) {
    const boost::shared_ptr<CvsnRegistryNode> node = C99Conversions::instance();
    const int from = idOf("int"), to = idOf(kText);
    node->_unbind(from, to);
    EXPECT_EQ(nullptr, node->_lookup(from, to));
    C99Conversions::instance();
    EXPECT_EQ("42", toText<int>("int", 42));
}

TEST_F(StandardNodeTest, WhatIsBoundStays) {
    const boost::shared_ptr<CvsnRegistryNode> node = C99Conversions::instance();
    const int from = idOf("int"), to = idOf(kText);
    auto* foreign = new ForeignFunctor;
    node->_rebind(from, to, opaque(foreign));
    C99Conversions::instance();
    EXPECT_EQ(opaque(foreign), node->_lookup(from, to));
    node->_unbind(from, to);
    C99Conversions::instance();
}

TEST_F(StandardNodeTest, BindingOfTheRootIsNotHidden) {
    const boost::shared_ptr<CvsnRegistryNode> node = C99Conversions::instance();
    const int from = idOf("int"), to = idOf(kText);
    node->_unbind(from, to);
    auto* foreign = new ForeignFunctor;
    CvsnRootNamespace::instance()->_bind(from, to, opaque(foreign));
    C99Conversions::instance();
    EXPECT_EQ(opaque(foreign), node->_lookup(from, to));
    CvsnRootNamespace::instance()->_unbind(from, to);
    C99Conversions::instance();
    EXPECT_EQ("42", toText<int>("int", 42));
}

TEST_F(StandardNodeTest, LaterCallsAllocateNothing) {
    const std::size_t objects = Testing::newMemory().requests(), blocks = Testing::hostMemory().requests();
    C99Conversions::instance();
    EXPECT_EQ(objects, Testing::newMemory().requests());
    EXPECT_EQ(blocks, Testing::hostMemory().requests());
}

} // namespace
} // namespace Quillon::DataConv
