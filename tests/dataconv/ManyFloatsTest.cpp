#include "dataconv/ManyFloats.h"

#include "support/HostFixture.h"

#include <limits>

namespace Quillon::DataConv {
namespace {

template <class Type>
class ManyFloatsTest : public Testing::HostFixture {};
using Types = ::testing::Types<Float, Double>;
TYPED_TEST_SUITE(ManyFloatsTest, Types);

TYPED_TEST(ManyFloatsTest, TextsAreReadAsSscanfDoes) {
    Random random(3 + sizeof(typename TypeParam::Value));
    TextBuilder text;
    for (int i = 0; i < kManyInputs; ++i)
        ASSERT_TRUE(readsLikeTheCLibrary<TypeParam>(floatText(random, text))) << '"' << text.text() << '"';
}

TYPED_TEST(ManyFloatsTest, ValuesArePrintedAsSprintfDoes) {
    Random random(4 + sizeof(typename TypeParam::Value));
    for (int i = 0; i < kManyInputs; ++i) {
        const auto value = anyValue<typename TypeParam::Value>(random);
        ASSERT_TRUE(printsLikeTheCLibrary<TypeParam>(value)) << std::hexfloat << value;
    }
}

/// Every number that is a power of ten or next to one, where the count of digits changes.
TYPED_TEST(ManyFloatsTest, PowersOfTenAndTheirNeighboursArePrintedAsSprintfDoes) {
    using Value = typename TypeParam::Value;
    for (int exponent = -330; exponent <= 310; ++exponent) {
        char text[8];
        std::snprintf(text, sizeof text, "1e%d", exponent);
        double power = 0;
        std::sscanf(text, "%lg", &power);
        auto value = static_cast<Value>(power);
        for (int i = 0; i < 20; ++i)
            value = std::nextafter(value, Value{0});
        for (int i = 0; i < 40; ++i) {
            ASSERT_TRUE(printsLikeTheCLibrary<TypeParam>(value)) << std::hexfloat << value;
            value = std::nextafter(value, std::numeric_limits<Value>::infinity());
        }
    }
}

} // namespace
} // namespace Quillon::DataConv
