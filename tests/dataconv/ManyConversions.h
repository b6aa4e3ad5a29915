#ifndef ZUTARNEX_TESTS_DATACONV_MANYCONVERSIONS_H
#define ZUTARNEX_TESTS_DATACONV_MANYCONVERSIONS_H

// Millions of texts and values, the same in every run: what the functors make of them must be what the C library's
// sscanf and sprintf do.

#include "dataconv/IllegalArgumentException.h"
#include "dataconv/RuntimeException.h"
#include "runtime/HostServices.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <type_traits>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define ZUTARNEX_SLOW_BUILD 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define ZUTARNEX_SLOW_BUILD 1
#endif
#endif

namespace Quillon::DataConv {

#ifdef ZUTARNEX_SLOW_BUILD
inline constexpr int kManyInputs = 200'000;
#else
inline constexpr int kManyInputs = 10'000'000;
#endif

/// A small generator of seeded numbers (splitmix64).
class Random {
public:
    explicit Random(std::uint64_t seed) noexcept : state_(seed) {}

    std::uint64_t next() noexcept {
        std::uint64_t bits = state_ += 0x9E3779B97F4A7C15;
        bits = (bits ^ (bits >> 30)) * 0xBF58476D1CE4E5B9;
        bits = (bits ^ (bits >> 27)) * 0x94D049BB133111EB;
        return bits ^ (bits >> 31);
    }
    /// Below `limit`, which is small.
    unsigned int below(unsigned int limit) noexcept {
        return static_cast<unsigned int>(((next() >> 32) * limit) >> 32);
    }
    /// A number with any count of bits.
    std::uint64_t ofAnySize() noexcept { return next() >> below(64); }

private:
    std::uint64_t state_;
};

/// A text that is put together piece by piece.
class TextBuilder {
public:
    void clear() noexcept { end_ = text_; }
    void add(char c) noexcept { *end_++ = c; }
    void add(const char* text) noexcept {
        while (*text)
            add(*text++);
    }
    void addDigits(Random& random, unsigned int count) noexcept {
        for (std::uint64_t digits = 0; count != 0; --count, digits /= 10) {
            if (count % 16 == 0 || digits == 0)
                digits = random.next();
            add(static_cast<char>('0' + digits % 10));
        }
    }
    void addNumber(std::uint64_t number) noexcept {
        char digits[20];
        char* at = digits;
        for (; number != 0 || at == digits; number /= 10)
            *at++ = static_cast<char>('0' + number % 10);
        while (at != digits)
            add(*--at);
    }
    void addAnyOf(const char* letters, Random& random, unsigned int count) noexcept {
        for (const auto letterCount = static_cast<unsigned int>(std::strlen(letters)); count != 0; --count)
            add(letters[random.below(letterCount)]);
    }
    /// White space and a sign, mostly neither.
    void addStart(Random& random) noexcept {
        const unsigned int kind = random.below(16);
        if (kind < 2)
            addAnyOf(" \t\n\v\f\r", random, 1 + random.below(3));
        if (kind % 4 == 1)
            add('-');
        if (kind == 2)
            add('+');
    }
    char* text() noexcept {
        *end_ = 0;
        return text_;
    }

private:
    char text_[160];
    char* end_ = text_;
};

/// The C library's scan, and the rules for what it does not find. `before` is what a target holds that is not written.
template <class Type>
bool readsLikeTheCLibrary(char* text) {
    using Value = typename Type::Value;
    using Scanned = typename Type::Scanned;
    enum class Outcome { Done, Illegal, Runtime };
    constexpr auto kBefore = static_cast<Value>(99);

    Scanned scanned = -1;
    const int found = std::sscanf(text, Type::scanFormat, &scanned);
    Outcome expected = Outcome::Done;
    Value expectedValue = kBefore;
    if (std::is_same_v<Value, bool>)
        expected = scanned == 0 || scanned == 1 ? Outcome::Done : Outcome::Illegal;
    else if (found == 0 && std::is_integral_v<Value>)
        expected = Outcome::Runtime;
    if (expected == Outcome::Done && (found == 1 || std::is_same_v<Value, bool>))
        expectedValue = static_cast<Value>(scanned);

    Value value = kBefore;
    Outcome outcome = Outcome::Done;
    try {
        typename Type::FromText()._convert(text, value);
    } catch (const IllegalArgumentException&) {
        outcome = Outcome::Illegal;
    } catch (const RuntimeException&) {
        outcome = Outcome::Runtime;
    }
    return outcome == expected && std::memcmp(&value, &expectedValue, sizeof value) == 0;
}

template <class Type>
bool printsLikeTheCLibrary(typename Type::Value value) {
    char expected[400];
    std::sprintf(expected, Type::printFormat, static_cast<typename Type::Printed>(value));
    char* text = nullptr;
    typename Type::ToText()._convert(value, text);
    const bool same = std::strcmp(expected, text) == 0;
    Runtime::release(text);
    return same;
}

} // namespace Quillon::DataConv

#endif
