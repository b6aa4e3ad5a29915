#ifndef ZUTARNEX_TESTS_DATACONV_MANYFLOATS_H
#define ZUTARNEX_TESTS_DATACONV_MANYFLOATS_H

#include "dataconv/ManyConversions.h"
#include "dataconv/StandardConversions.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace Quillon::DataConv {

struct Float {
    using Value = float;
    using Scanned = double;
    using Printed = double;
    using FromText = CStringToFloat;
    using ToText = FloatToCString;
    static constexpr const char *scanFormat = "%lg", *printFormat = "%.8g";
};
struct Double {
    using Value = double;
    using Scanned = double;
    using Printed = double;
    using FromText = CStringToDouble;
    using ToText = DoubleToCString;
    static constexpr const char *scanFormat = "%lg", *printFormat = "%.16g";
};

template <class Value>
Value ofAnyBits(Random& random) {
    const std::uint64_t bits = random.next();
    Value value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

inline double powerOfTen(int exponent) {
    double power = 1;
    for (; exponent > 0; --exponent)
        power *= 10;
    return power;
}

inline void addExponent(Random& random, TextBuilder& text, unsigned int limit) {
    text.add(random.below(4) == 0 ? 'E' : 'e');
    text.addAnyOf("+-", random, random.below(2));
    if (random.below(16) == 0)
        text.addDigits(random, random.below(6)); // none, or too many
    else
        text.addNumber(random.below(limit));
}

inline void addDecimal(Random& random, TextBuilder& text) {
    if (random.below(4) == 0) {
        text.addDigits(random, random.below(22));
        text.add('.');
        text.addDigits(random, random.below(22));
    } else {
        text.addNumber(random.ofAnySize() >> random.below(32));
        text.add('.');
        text.addNumber(random.ofAnySize() >> random.below(48));
    }
    const unsigned int kind = random.below(4);
    if (kind < 2)
        addExponent(random, text, kind == 0 ? 360 : 30);
}

/// A whole number half-way between two doubles, or next to that, over a power of two: its decimals end.
inline void addMidpoint(Random& random, TextBuilder& text) {
    std::uint64_t number = (random.next() >> 10) | std::uint64_t{1} << 53 | 1;
    const unsigned int kind = random.below(3);
    if (kind == 0) {
        number <<= random.below(11);
        number += random.below(3) - 1;
    }
    if (kind == 1)
        for (unsigned int halves = random.below(5); halves != 0; --halves)
            number *= 5;
    text.addNumber(number);
    if (kind != 0)
        addExponent(random, text, 32);
}

inline void addPrinted(Random& random, TextBuilder& text) {
    char printed[400];
    const double value = std::abs(ofAnyBits<double>(random));
    *std::to_chars(printed, printed + sizeof printed, value, std::chars_format::scientific,
                   static_cast<int>(random.below(24)))
         .ptr = 0;
    text.add(printed);
}

inline char* floatText(Random& random, TextBuilder& text) {
    text.clear();
    const unsigned int kind = random.below(16);
    if (kind == 0)
        text.addAnyOf("0123456789.eE+-xXpPinfatyNAN ,\xA0", random, random.below(16));
    text.addStart(random);
    if (kind == 1)
        text.add(random.below(2) == 0 ? "0x" : "0X");
    if (kind < 9)
        addDecimal(random, text);
    else if (kind < 11)
        addMidpoint(random, text);
    else if (kind < 14)
        addPrinted(random, text);
    else
        text.addNumber(random.ofAnySize());
    if (kind % 4 == 1)
        text.addAnyOf("0 xX.,e+-fp\xA0", random, 1 + random.below(4));
    return text.text();
}

/// Any bits; short decimals; numbers over powers of two, many of which lie half-way between two decimals.
template <class Value>
Value anyValue(Random& random) {
    const unsigned int kind = random.below(8);
    if (kind < 2)
        return ofAnyBits<Value>(random);
    const double number = static_cast<double>(static_cast<std::int64_t>(random.ofAnySize() >> 1));
    if (kind < 5)
        return static_cast<Value>(number / powerOfTen(static_cast<int>(random.below(23))));
    if (kind == 5)
        return static_cast<Value>(-number * powerOfTen(static_cast<int>(random.below(10))));
    return static_cast<Value>(std::ldexp(number, -static_cast<int>(random.below(70))));
}

} // namespace Quillon::DataConv

#endif
