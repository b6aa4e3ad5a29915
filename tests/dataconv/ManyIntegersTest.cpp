#include "dataconv/StandardConversions.h"

#include "dataconv/ManyConversions.h"
#include "support/HostFixture.h"

#include <limits>

namespace Quillon::DataConv {
namespace {

template <class ValueType, class FromTextType, class ToTextType, class ScannedType>
struct Family {
    using Value = ValueType;
    using FromText = FromTextType;
    using ToText = ToTextType;
    using Scanned = ScannedType;
    using Printed = ScannedType;
};

struct Signed {
    static constexpr const char *scanFormat = "%d", *printFormat = "%d";
};
struct Unsigned {
    static constexpr const char *scanFormat = "%u", *printFormat = "%u";
};
struct Int8 : Family<signed char, CStringToInt8, Int8ToCString, int>, Signed {};
struct Int16 : Family<short, CStringToInt16, Int16ToCString, int>, Signed {};
struct Int32 : Family<int, CStringToInt32, Int32ToCString, int>, Signed {};
struct Bool : Family<bool, CStringToBool, BoolToCString, int>, Signed {};
struct UInt8 : Family<unsigned char, CStringToUInt8, UInt8ToCString, unsigned int>, Unsigned {};
struct UInt16 : Family<unsigned short, CStringToUInt16, UInt16ToCString, unsigned int>, Unsigned {};
struct UInt32 : Family<unsigned int, CStringToUInt32, UInt32ToCString, unsigned int>, Unsigned {};
struct Int64 : Family<long long, CStringToInt64, Int64ToCString, long long> {
    static constexpr const char *scanFormat = "%lld", *printFormat = "%lld";
};
struct UInt64 : Family<unsigned long long, CStringToUInt64, UInt64ToCString, unsigned long long> {
    static constexpr const char *scanFormat = "%llu", *printFormat = "%llu";
};

/// Around the limits of all the types, and of the powers of two and ten between them.
std::uint64_t nearALimit(Random& random) {
    std::uint64_t limit = std::uint64_t{1} << random.below(64);
    if (random.below(2) == 0) {
        limit = 1;
        for (unsigned int zeros = random.below(20); zeros != 0; --zeros)
            limit *= 10;
    }
    return limit + random.below(5) - 2;
}

/// Mostly numbers: exceptions are slow.
char* integerText(Random& random, TextBuilder& text) {
    text.clear();
    const unsigned int kind = random.below(256);
    if (kind < 2)
        text.addAnyOf(" \t-+0129xX.e'\xA0\x85\xFF", random, random.below(8));
    text.addStart(random);
    if (kind < 2)
        text.addDigits(random, random.below(4));
    else if (kind < 16)
        text.addDigits(random, 1 + random.below(25));
    else
        text.addNumber(kind < 64 ? nearALimit(random) : random.ofAnySize());
    if (kind % 4 == 0)
        text.addAnyOf("0 xX.,e-:abc\xA0", random, 1 + random.below(4));
    return text.text();
}

char* boolText(Random& random, TextBuilder& text) {
    if (random.below(256) == 0)
        return integerText(random, text);
    text.clear();
    text.addAnyOf(" \t+", random, random.below(8) == 0);
    text.addAnyOf("0", random, random.below(3) * random.below(12));
    text.add(static_cast<char>('0' + random.below(2)));
    text.addAnyOf(" xX.,e-:abc\xA0", random, random.below(3));
    return text.text();
}

template <class Type>
class ManyIntegersTest : public Testing::HostFixture {};
using Types = ::testing::Types<Int8, Int16, Int32, Int64, UInt8, UInt16, UInt32, UInt64, Bool>;
TYPED_TEST_SUITE(ManyIntegersTest, Types);

TYPED_TEST(ManyIntegersTest, TextsAreReadAsSscanfDoes) {
    Random random(1 + sizeof(typename TypeParam::Value));
    TextBuilder text;
    const auto nextText = std::is_same_v<typename TypeParam::Value, bool> ? boolText : integerText;
    for (int i = 0; i < kManyInputs; ++i)
        ASSERT_TRUE(readsLikeTheCLibrary<TypeParam>(nextText(random, text))) << '"' << text.text() << '"';
}

TYPED_TEST(ManyIntegersTest, ValuesArePrintedAsSprintfDoes) {
    Random random(2 + sizeof(typename TypeParam::Value));
    for (int i = 0; i < kManyInputs; ++i) {
        const auto value =
            static_cast<typename TypeParam::Value>(i % 8 == 0 ? nearALimit(random) : random.ofAnySize());
        ASSERT_TRUE(printsLikeTheCLibrary<TypeParam>(value)) << +value;
    }
}

} // namespace
} // namespace Quillon::DataConv
