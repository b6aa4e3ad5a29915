#include "support/ConversionLoad.h"

#include "support/Random.h"

#include <cstdio>

namespace Quillon::Bench {

namespace {

constexpr std::size_t kNumbers = 1024;

template <class T, class Value>
Numbers<T> numbers(const char* format, Value value) {
    Random random(9);
    Numbers<T> result;
    for (std::size_t i = 0; i < kNumbers; ++i) {
        const T number = value(random);
        char text[64];
        std::snprintf(text, sizeof text, format, number);
        result.values.push_back(number);
        result.texts.emplace_back(text);
    }
    return result;
}

} // namespace

const Numbers<int>& int32Numbers() {
    static const Numbers<int> result = numbers<int>("%d", [](Random& random) {
        const auto magnitude = static_cast<int>(random.next() >> (33 + random.below(28)));
        return random.below(2) ? magnitude : -magnitude;
    });
    return result;
}

const Numbers<unsigned long long>& uint64Numbers() {
    static const Numbers<unsigned long long> result =
        numbers<unsigned long long>("%llu", [](Random& random) { return random.next() >> random.below(60); });
    return result;
}

const Numbers<double>& doubleNumbers() {
    static const Numbers<double> result = numbers<double>("%.16g", [](Random& random) {
        const double fraction = static_cast<double>(random.next() >> 11U) / 9007199254740992.0;
        constexpr double kScales[] = {1e-6, 1e-3, 1.0, 1e3, 1e6, 1e9};
        return (random.below(2) ? fraction : -fraction) * kScales[random.below(6)];
    });
    return result;
}

} // namespace Quillon::Bench
