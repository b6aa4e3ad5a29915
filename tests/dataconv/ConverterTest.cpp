#include "dataconv/Converter.h"

#include "dataconv/AlreadyBoundException.h"
#include "dataconv/C99Conversions.h"
#include "dataconv/CvsnRegistryNode.h"
#include "dataconv/IllegalArgumentException.h"
#include "dataconv/NameIdMap.h"
#include "dataconv/NotBoundException.h"
#include "dataconv/NotFoundException.h"
#include "dataconv/RuntimeException.h"
#include "runtime/HostServices.h"
#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <string>
#include <typeinfo>

namespace Quillon::DataConv {
namespace {

using Testing::everyAllocationFails;
using Testing::everyNewFails;

struct Point {
    int x, y;
};

char* hostCopy(const std::string& text) {
    char* copy = static_cast<char*>(Runtime::hostServices().allocate(text.size() + 1));
    std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

struct PointToCString : ConversionFunctor<Point, char*> {
    void _convert(const Point& value, char*& result) const override {
        result = hostCopy(std::to_string(value.x) + ";" + std::to_string(value.y));
    }
};

struct CStringToPoint : ConversionFunctor<char*, Point> {
    void _convert(char* text, Point& result) const override {
        std::sscanf(text, "%d;%d", &result.x, &result.y);
    }
};

/// Leaves the result at null.
struct PointToNothing : ConversionFunctor<Point, char*> {
    void _convert(const Point&, char*&) const override {}
};

/// Hides a standard conversion.
struct IntToStar : ConversionFunctor<int, char*> {
    void _convert(const int&, char*& result) const override { result = hostCopy("*"); }
};

class ConverterTest : public Testing::HostFixture {
protected:
    void warmUp() override {
        C99Conversions::instance();
        const boost::shared_ptr<NameIdMap> names = NameIdMap::getGlobalNameIdMap();
        for (const char* name : {typeid(Point).name(), "point", "half bound", "other"}) // names stay for good
            names->find_or_insert(name);
    }

    /// A node under the standard one, so that what a test binds is gone with it.
    Converter ownConverter() {
        return Converter(
            boost::shared_ptr<CvsnRegistryNode>(new CvsnRegistryNode(C99Conversions::instance())));
    }
};

TEST_F(ConverterTest, ExampleOfTheHeader) {
    Converter converter;
    const int port = converter.fromText<int>("8080");
    const std::string text = converter.toText(0.1);
    const unsigned char byte = converter.fromTextByName<unsigned char>("uint8_t", "256");
    EXPECT_EQ(8080, port);
    EXPECT_EQ("0.1", text);
    EXPECT_EQ(0, byte);
    converter.bind<Point>(std::make_unique<PointToCString>());
    EXPECT_EQ("1;2", converter.toText(Point{1, 2}));

    const boost::shared_ptr<NameIdMap> names = NameIdMap::getGlobalNameIdMap(); // bound for the whole process
    C99Conversions::instance()->_unbind(static_cast<int>(names->find(typeid(Point).name())),
                                        static_cast<int>(names->find(typeid(char*).name())));
}

TEST_F(ConverterTest, StandardConversionsAreTheDefault) {
    const Converter converter;
    EXPECT_EQ("-128", converter.toText(static_cast<signed char>(-128)));
    EXPECT_EQ(-128, converter.fromText<signed char>("-128"));
    EXPECT_EQ("18446744073709551615", converter.toText(~0ull));
    EXPECT_EQ(~0ull, converter.fromText<unsigned long long>("18446744073709551615"));
    EXPECT_EQ("1", converter.toText(true));
    EXPECT_TRUE(converter.fromText<bool>("1"));
    EXPECT_EQ(2.5f, converter.fromText<float>("2.5"));
    EXPECT_EQ("65", converter.toText('A'));
    EXPECT_EQ(-7l, converter.fromText<long>("-7"));
}

TEST_F(ConverterTest, EveryReadableNameConverts) {
    const Converter converter;
    EXPECT_EQ("200", converter.toTextByName("uint8_t", static_cast<unsigned char>(200)));
    EXPECT_EQ("200", converter.toTextByName("unsigned char", static_cast<unsigned char>(200)));
    EXPECT_EQ(-5, converter.fromTextByName<int>("int", "-5"));
    EXPECT_EQ(-5, converter.fromTextByName<int>("int32_t", "-5"));
    EXPECT_EQ(-5ll, converter.fromTextByName<long long>("int64_t", "-5"));
    EXPECT_EQ(0.5, converter.fromTextByName<double>("double", "0.5"));
}

TEST_F(ConverterTest, FallbackStandsWhereTheTextHoldsNoNumber) {
    const Converter converter;
    EXPECT_EQ(0, converter.fromText<int>(""));
    EXPECT_EQ(7, converter.fromText<int>(" ", 7));
    EXPECT_EQ(1.5, converter.fromText<double>("abc", 1.5));
    EXPECT_EQ(7, converter.fromTextByName<short>("short", "", 7));
    EXPECT_EQ(8, converter.fromText<int>("8", 7));
}

TEST_F(ConverterTest, WhatFunctorsThrowPassesThrough) {
    const Converter converter;
    EXPECT_THROW(converter.fromText<int>("abc"), RuntimeException);
    EXPECT_THROW(converter.fromText<int>(nullptr), IllegalArgumentException);
    EXPECT_THROW(converter.fromText<bool>("2"), IllegalArgumentException);
    EXPECT_THROW(converter.fromTextByName<bool>("bool", "yes"), IllegalArgumentException);
}

TEST_F(ConverterTest, UnknownNameIsNotFound) {
    const Converter converter;
    EXPECT_THROW(converter.fromTextByName<int>("no such type", "1"), NotFoundException);
    EXPECT_THROW(converter.toTextByName("no such type", 1), NotFoundException);
    EXPECT_THROW(converter.fromTextByName<int>(nullptr, "1"), NotFoundException);
    EXPECT_THROW(converter.toTextByName(nullptr, 1), NotFoundException);
    EXPECT_FALSE(NameIdMap::getGlobalNameIdMap()->contains("no such type"));
}

TEST_F(ConverterTest, UnboundPairIsNotBound) {
    struct NeverNamed {};
    const Converter converter;
    EXPECT_THROW(converter.toText(Point{1, 2}), NotBoundException);
    EXPECT_THROW(converter.fromText<Point>("1;2"), NotBoundException);
    EXPECT_THROW(converter.toTextByName("other", 1), NotBoundException) << "a name, but no conversion";
    EXPECT_THROW(converter.fromTextByName<int>("other", "1"), NotBoundException);
    EXPECT_THROW(converter.toText(NeverNamed()), NotBoundException);
    EXPECT_FALSE(NameIdMap::getGlobalNameIdMap()->contains(typeid(NeverNamed).name()));
    const Converter empty(boost::shared_ptr<CvsnRegistryNode>(new CvsnRegistryNode));
    EXPECT_THROW(empty.toText(1), NotBoundException);
}

TEST_F(ConverterTest, OneDirectionAloneMayBeBound) {
    Converter converter = ownConverter();
    converter.bindByName<Point>("half bound", std::make_unique<PointToCString>());
    EXPECT_EQ("1;2", converter.toTextByName("half bound", Point{1, 2}));
    EXPECT_THROW(converter.fromTextByName<Point>("half bound", "1;2"), NotBoundException);
}

TEST_F(ConverterTest, FunctorOfAnotherTypeIsAnIllegalConversion) {
    const Converter converter;
    EXPECT_THROW(converter.toTextByName("short", 1), IllegalConversionException);
    EXPECT_THROW(converter.fromTextByName<int>("short", "1"), IllegalConversionException);
    EXPECT_THROW(converter.fromTextByName<signed char>("char", "1"), IllegalConversionException);
    EXPECT_THROW(converter.fromTextByName<long>("int", "1"), IllegalConversionException);
    EXPECT_THROW(converter.fromTextByName<long>("int64_t", "1"), IllegalConversionException);
    EXPECT_THROW(converter.toTextByName("float", 1.0), IllegalConversionException);
}

TEST_F(ConverterTest, OwnTypesConvertByTypeAndByName) {
    Converter converter = ownConverter();
    converter.bind<Point>(std::make_unique<PointToCString>());
    converter.bind<Point>(std::make_unique<CStringToPoint>());
    converter.bindByName<Point>("point", std::make_unique<PointToCString>());
    converter.bindByName<Point>("point", std::make_unique<CStringToPoint>());
    EXPECT_EQ("3;4", converter.toText(Point{3, 4}));
    EXPECT_EQ(4, converter.fromText<Point>("3;4").y);
    EXPECT_EQ("3;4", converter.toTextByName("point", Point{3, 4}));
    EXPECT_EQ(3, converter.fromTextByName<Point>("point", "3;4").x);
    EXPECT_EQ(9, converter.fromText<Point>("3", Point{8, 9}).y);
    EXPECT_EQ("8080", converter.toText(8080)) << "the parent's";
    EXPECT_THROW(Converter().toText(Point{3, 4}), NotBoundException) << "the parent does not know it";
}

TEST_F(ConverterTest, PairIsBoundOnce) {
    Converter converter = ownConverter();
    converter.bind<Point>(std::make_unique<PointToCString>());
    EXPECT_THROW(converter.bind<Point>(std::make_unique<PointToNothing>()), AlreadyBoundException);
    EXPECT_EQ("1;2", converter.toText(Point{1, 2})) << "the first one stays";
    converter.bindByName<Point>("point", std::make_unique<CStringToPoint>());
    EXPECT_THROW(converter.bindByName<Point>("point", std::make_unique<CStringToPoint>()),
                 AlreadyBoundException);
    Converter standard;
    EXPECT_THROW(standard.bind<int>(std::make_unique<IntToStar>()), AlreadyBoundException);
    EXPECT_THROW(standard.bindByName<int>("int", std::make_unique<IntToStar>()), AlreadyBoundException);
    EXPECT_EQ("1", standard.toText(1));
}

TEST_F(ConverterTest, BindingHidesThatOfTheParent) {
    Converter converter = ownConverter();
    converter.bind<int>(std::make_unique<IntToStar>());
    EXPECT_EQ("*", converter.toText(1));
    EXPECT_EQ("1", converter.toTextByName("int", 1)) << "bound by type only";
    EXPECT_EQ("1", Converter().toText(1));
}

TEST_F(ConverterTest, NullFunctorOrNameIsAnIllegalArgument) {
    Converter converter = ownConverter();
    EXPECT_THROW(converter.bind<Point>(std::unique_ptr<PointToCString>()), IllegalArgumentException);
    EXPECT_THROW(converter.bindByName<Point>("point", std::unique_ptr<CStringToPoint>()),
                 IllegalArgumentException);
    EXPECT_THROW(converter.bindByName<Point>(nullptr, std::make_unique<PointToCString>()),
                 IllegalArgumentException);
    EXPECT_THROW(converter.bindByName<Point>(nullptr, std::make_unique<CStringToPoint>()),
                 IllegalArgumentException);
    EXPECT_THROW(converter.toText(Point{1, 2}), NotBoundException);
}

TEST_F(ConverterTest, FunctorThatMakesNoTextGivesAnEmptyOne) {
    Converter converter = ownConverter();
    converter.bind<Point>(std::make_unique<PointToNothing>());
    EXPECT_EQ("", converter.toText(Point{1, 2}));
}

TEST_F(ConverterTest, CopiesShareTheNode) {
    Converter converter = ownConverter();
    const Converter copy = converter;
    converter.bind<Point>(std::make_unique<PointToCString>());
    EXPECT_EQ("1;2", copy.toText(Point{1, 2}));
}

TEST_F(ConverterTest, EveryAllocationMayFail) {
    const Converter converter;
    everyAllocationFails([&] { EXPECT_EQ("18446744073709551615", converter.toText(~0ull)); });
    everyNewFails([&] { EXPECT_EQ("18446744073709551615", converter.toText(~0ull)); });
    everyNewFails([&] {
        Converter own = ownConverter();
        own.bind<Point>(std::make_unique<PointToCString>());
        own.bindByName<Point>("point", std::make_unique<CStringToPoint>());
    });
}

} // namespace
} // namespace Quillon::DataConv
