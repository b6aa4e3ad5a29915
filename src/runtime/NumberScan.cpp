// Numbers written plainly are read here. Everything else (not a number, out of range, hexadecimal, "inf", a broken
// exponent, another locale's white space) is left to the C library, whose rules hold for all.
#include "runtime/NumberScanInternal.h"

#include "runtime/NumberRulesInternal.h"

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>
#include <system_error>
#include <type_traits>

namespace Quillon::Runtime {

namespace {

bool isDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

/// Skips what is white space in every locale; what is so in some begins no plain number.
const char* skipSpace(const char* at) noexcept {
    while (*at == ' ' || (*at >= '\t' && *at <= '\r'))
        ++at;
    return at;
}

struct Sign {
    bool isNegative;
    const char* end;
};

Sign signAt(const char* at) noexcept {
    return {*at == '-', *at == '-' || *at == '+' ? at + 1 : at};
}

NumberScan scanned(const char* text, const char* format, void* value) noexcept {
    const int conversions = std::sscanf(text, format, value);
    if (conversions == EOF)
        return NumberScan::Nothing;
    return conversions == 1 ? NumberScan::Number : NumberScan::NoNumber;
}

/// Reads as the C library does: through `long` or, for what is wider, `long long`, cut to `T`. False when the number is
/// not plain or that type does not hold it.
template <class T>
bool readInteger(const char* text, T& value) noexcept {
    using Wide = std::conditional_t<(sizeof(T) > sizeof(long)), long long, long>;
    using Magnitude = std::make_unsigned_t<Wide>;
    const auto [isNegative, begin] = signAt(skipSpace(text));
    Magnitude magnitude = 0;
    const char* end = begin;
    for (; isDigit(*end); ++end)
        magnitude = magnitude * 10 + static_cast<unsigned int>(*end - '0');
    const bool mayHaveWrapped = end - begin > std::numeric_limits<Magnitude>::digits10;
    if (end == begin || (mayHaveWrapped && std::from_chars(begin, end, magnitude).ec != std::errc()))
        return false;
    constexpr Magnitude kMaximum = std::is_signed_v<T> ? Magnitude{std::numeric_limits<Wide>::max()}
                                                       : std::numeric_limits<Magnitude>::max();
    if (magnitude > kMaximum)
        return false;
    value = static_cast<T>(isNegative ? Magnitude{0} - magnitude : magnitude);
    return true;
}

template <class T>
NumberScan scanInteger(const char* text, T& value, const char* format) noexcept {
    return readInteger(text, value) ? NumberScan::Number : scanned(text, format, &value);
}

/// A number in plain decimal notation, without its sign.
struct Decimal {
    const char* begin = nullptr;
    const char* end = nullptr;     ///< null: it is not plain
    std::uint64_t significand = 0; ///< what all digits make; not when there are too many of them
    std::ptrdiff_t digitCount = 0; ///< leading zeros left out
    std::ptrdiff_t exponent = 0;   ///< the power of ten that the significand is multiplied by
};

constexpr int kMaximumDigits = std::numeric_limits<std::uint64_t>::digits10;

const char* readDigits(const char* at, Decimal& number) noexcept {
    if (number.digitCount == 0)
        while (*at == '0')
            ++at;
    const char* const first = at;
    std::uint64_t significand = number.significand;
    for (; isDigit(*at); ++at)
        significand = significand * 10 + static_cast<unsigned int>(*at - '0');
    number.significand = significand;
    number.digitCount += at - first;
    return at;
}

/// Behind the exponent at `at`, which is added to the number's; null when it has no digits or many.
const char* readExponent(const char* at, Decimal& number) noexcept {
    constexpr int kMaximumExponentDigits = 4;
    const auto [isNegative, begin] = signAt(at + 1);
    int exponent = 0;
    for (at = begin; isDigit(*at) && at - begin <= kMaximumExponentDigits; ++at)
        exponent = exponent * 10 + (*at - '0');
    number.exponent += isNegative ? -exponent : exponent;
    return at != begin && at - begin <= kMaximumExponentDigits ? at : nullptr;
}

Decimal decimalAt(const char* begin, char point) noexcept {
    Decimal number;
    number.begin = begin;
    const char* at = readDigits(begin, number);
    bool hasDigits = at != begin;
    if (*at == point) {
        const char* const fraction = at + 1;
        at = readDigits(fraction, number);
        hasDigits = hasDigits || at != fraction;
        number.exponent = fraction - at;
    }
    if (!hasDigits || *at == 'x' || *at == 'X')
        return {};
    if (*at == 'e' || *at == 'E')
        at = readExponent(at, number);
    number.end = at;
    return number;
}

// All powers of ten that a double and a long double hold exactly.
constexpr double kDoublePowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                    1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr long double kExtendedPowers[] = {
    1e0L,  1e1L,  1e2L,  1e3L,  1e4L,  1e5L,  1e6L,  1e7L,  1e8L,  1e9L,  1e10L, 1e11L, 1e12L, 1e13L,
    1e14L, 1e15L, 1e16L, 1e17L, 1e18L, 1e19L, 1e20L, 1e21L, 1e22L, 1e23L, 1e24L, 1e25L, 1e26L, 1e27L};

template <class Real, std::size_t size>
bool hasPower(const Real (&)[size], std::ptrdiff_t exponent) noexcept {
    return exponent > -std::ptrdiff_t{size} && exponent < std::ptrdiff_t{size};
}

/// One operation on two exact numbers, hence rounded once. REQUIRES: hasPower().
template <class Real, std::size_t size>
Real scaled(Real significand, const Real (&powers)[size], std::ptrdiff_t exponent) noexcept {
    return exponent < 0 ? significand / powers[-exponent] : significand * powers[exponent];
}

/// std::from_chars does the same for short numbers; but where the C++ runtime was built for the x87, it rounds twice
/// (tests/runtime/NumberScanTest.cpp, ProductsAreRoundedOnce).
bool readByDouble(const Decimal& number, double& value) noexcept {
    constexpr std::uint64_t kLargestExactInteger = std::uint64_t{1} << std::numeric_limits<double>::digits;
    if (number.significand > kLargestExactInteger || !hasPower(kDoublePowers, number.exponent))
        return false;
    value = scaled(static_cast<double>(static_cast<std::int64_t>(number.significand)), kDoublePowers,
                   number.exponent);
    return true;
}

/// A long double's 64 bits, rounded once more, are the nearest double, too, unless they lie half-way between two.
bool readByLongDouble(const Decimal& number, double& value) noexcept {
    static_assert(std::numeric_limits<long double>::digits == 64);
    constexpr std::uint64_t kLostBits = 0x7FF, kHalfway = 0x400;
    if (!hasPower(kExtendedPowers, number.exponent))
        return false;
    const long double extended =
        scaled(static_cast<long double>(number.significand), kExtendedPowers, number.exponent);
    std::uint64_t bits = 0;
    std::memcpy(&bits, &extended, sizeof bits);
    value = static_cast<double>(extended);
    return (bits & kLostBits) != kHalfway;
}

/// False also when the C library would report that digits are lost below the smallest normal number.
bool readByRuntime(const Decimal& number, double& value) noexcept {
    return std::from_chars(number.begin, number.end, value).ec == std::errc()
           && value > std::numeric_limits<double>::min();
}

/// False when the number is not plain.
bool readFloating(const char* text, double& value) noexcept {
    const auto [isNegative, begin] = signAt(skipSpace(text));
    const char* const point = decimalPoint();
    if (point[1] != 0 || !roundsAsUsual())
        return false;
    const Decimal number = decimalAt(begin, *point);
    if (number.end == nullptr)
        return false;
    double magnitude = 0;
    const bool isShort = number.digitCount <= kMaximumDigits;
    if (!(isShort && (readByDouble(number, magnitude) || readByLongDouble(number, magnitude)))
        && !(*point == '.' && readByRuntime(number, magnitude)))
        return false;
    value = isNegative ? -magnitude : magnitude;
    return true;
}

} // namespace

NumberScan scanNumber(const char* text, int& value) noexcept {
    return scanInteger(text, value, "%d");
}

NumberScan scanNumber(const char* text, unsigned int& value) noexcept {
    return scanInteger(text, value, "%u");
}

NumberScan scanNumber(const char* text, long& value) noexcept {
    return scanInteger(text, value, "%ld");
}

NumberScan scanNumber(const char* text, unsigned long& value) noexcept {
    return scanInteger(text, value, "%lu");
}

NumberScan scanNumber(const char* text, long long& value) noexcept {
    return scanInteger(text, value, "%lld");
}

NumberScan scanNumber(const char* text, unsigned long long& value) noexcept {
    return scanInteger(text, value, "%llu");
}

NumberScan scanNumber(const char* text, double& value) noexcept {
    return readFloating(text, value) ? NumberScan::Number : scanned(text, "%lg", &value);
}

} // namespace Quillon::Runtime
