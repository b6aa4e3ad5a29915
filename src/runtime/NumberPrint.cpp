// Integers are printed by the C++ runtime. So are floating-point numbers, unless they are of everyday size: those take
// a shorter way, in whole numbers. What is not finite, and all when the processor rounds unusually, is left to the C
// library.
#include "runtime/NumberPrintInternal.h"

#include "runtime/NumberRulesInternal.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <limits>

namespace Quillon::Runtime {

namespace {

template <class Integer>
std::size_t printInteger(NumberBuffer& text, Integer value) noexcept {
    char* const end = std::to_chars(text, text + kNumberCapacity, value).ptr;
    *end = 0;
    return static_cast<std::size_t>(end - text);
}

// Powers of five and ten that 64 bits hold.

template <std::uint64_t base, std::size_t count>
struct Powers {
    constexpr Powers() noexcept {
        std::uint64_t power = 1;
        for (std::uint64_t& value : values) {
            value = power;
            power *= base;
        }
    }
    std::uint64_t values[count] = {};
};

constexpr int kLargestScale = 27;
constexpr Powers<5, kLargestScale + 1> kPowersOfFive;
constexpr Powers<10, 18> kPowersOfTen;

/// The full product of two words.
struct Product {
    std::uint64_t high, low;
};

#ifdef __SIZEOF_INT128__
Product productOf(std::uint64_t a, std::uint64_t b) noexcept {
    __extension__ using Wide = unsigned __int128;
    const Wide product = Wide{a} * b;
    return {static_cast<std::uint64_t>(product >> 64), static_cast<std::uint64_t>(product)};
}
#else
Product productOf(std::uint64_t a, std::uint64_t b) noexcept {
    const std::uint64_t lowA = a & 0xFFFFFFFF, highA = a >> 32, lowB = b & 0xFFFFFFFF, highB = b >> 32;
    const std::uint64_t low = lowA * lowB;
    const std::uint64_t first = highA * lowB + (low >> 32);
    const std::uint64_t second = lowA * highB + (first & 0xFFFFFFFF);
    return {highA * highB + (first >> 32) + (second >> 32), (second << 32) | (low & 0xFFFFFFFF)};
}
#endif

// How many digits are printed of a type, and how it lies in memory.
template <class Real>
struct Format;
template <>
struct Format<float> {
    using Bits = std::uint32_t;
    static constexpr int precision = 8;
    static constexpr const char* text = "%.8g";
};
template <>
struct Format<double> {
    using Bits = std::uint64_t;
    static constexpr int precision = 16;
    static constexpr const char* text = "%.16g";
};

/// A positive number as mantissa * 2^exponent.
struct Binary {
    std::uint64_t mantissa;
    int exponent;
};

/// REQUIRES: a normal number.
template <class Real>
Binary binaryOf(Real value) noexcept {
    using Bits = typename Format<Real>::Bits;
    constexpr int kMantissaBits = std::numeric_limits<Real>::digits - 1;
    constexpr Bits kHiddenBit = Bits{1} << kMantissaBits;
    const auto bits = std::bit_cast<Bits>(value);
    return {(bits & (kHiddenBit - 1)) | kHiddenBit, static_cast<int>(bits >> kMantissaBits)
                                                        - std::numeric_limits<Real>::max_exponent + 1
                                                        - kMantissaBits};
}

/// number * 10^scale, rounded to the nearest whole number, of two to the even one. With 53 bits times 5^27, of 63 bits,
/// nothing is lost before. REQUIRES: scale <= kLargestScale; a result below 2^63 that leaves off less than 64 bits.
std::uint64_t scaledAndRounded(Binary number, int scale) noexcept {
    const Product product = productOf(number.mantissa, kPowersOfFive.values[scale]);
    const int shift = -(number.exponent + scale);
    if (shift <= 0)
        return product.low << -shift;
    const std::uint64_t whole = product.high << (64 - shift) | product.low >> shift;
    const std::uint64_t rest = product.low << (64 - shift), half = std::uint64_t{1} << 63;
    return whole + (rest > half || (rest == half && whole % 2 != 0));
}

/// All digits of a positive number as one whole number, and the power of ten that the first of them counts.
struct Decimal {
    std::uint64_t digits;
    int exponent;
};

constexpr double kSmallestEveryday = 1e-11;

template <class Real>
bool isEveryday(Real value) noexcept {
    constexpr auto kLimit = static_cast<Real>(kPowersOfTen.values[Format<Real>::precision]);
    return value >= static_cast<Real>(kSmallestEveryday) && value < kLimit;
}

/// REQUIRES: isEveryday(value).
template <class Real>
Decimal decimalOf(Real value) noexcept {
    constexpr int kPrecision = Format<Real>::precision;
    const Binary binary = binaryOf(value);
    // floor(log10(2^n)) for the n that come here: the power is this one or the next.
    int exponent = (binary.exponent + std::numeric_limits<Real>::digits - 1) * 1233 >> 12;
    std::uint64_t digits = scaledAndRounded(binary, kPrecision - 1 - exponent);
    if (digits >= kPowersOfTen.values[kPrecision]) {
        ++exponent;
        digits = scaledAndRounded(binary, kPrecision - 1 - exponent);
    }
    return {digits, exponent};
}

void writeEightDigits(char* target, std::uint32_t value) noexcept {
    for (char* at = target + 8; at != target; value /= 10)
        *--at = static_cast<char>('0' + value % 10);
}

char* append(char* target, const char* text) noexcept {
    while (*text)
        *target++ = *text++;
    return target;
}

/// The digits of a number as text; they have no trailing zeros, but there are zeros behind them.
struct DigitText {
    char digits[Format<double>::precision];
    int count;
};

template <class Real>
DigitText digitTextOf(std::uint64_t digits) noexcept {
    DigitText text;
    constexpr std::uint32_t kEightDigits = 100'000'000;
    if constexpr (Format<Real>::precision == 8) {
        writeEightDigits(text.digits, static_cast<std::uint32_t>(digits));
    } else {
        writeEightDigits(text.digits, static_cast<std::uint32_t>(digits / kEightDigits));
        writeEightDigits(text.digits + 8, static_cast<std::uint32_t>(digits % kEightDigits));
    }
    text.count = Format<Real>::precision;
    while (text.count > 1 && text.digits[text.count - 1] == '0')
        --text.count;
    return text;
}

/// 1.2e-05
char* writeScientific(char* out, const DigitText& text, int exponent, const char* point) noexcept {
    *out++ = text.digits[0];
    if (text.count > 1)
        out = std::copy(text.digits + 1, text.digits + text.count, append(out, point));
    out = append(out, exponent > -10 ? "e-0" : "e-");
    return std::to_chars(out, out + 4, -exponent).ptr;
}

/// 0.0012 or 1200 or 1.2
char* writeFixed(char* out, const DigitText& text, int exponent, const char* point) noexcept {
    if (exponent < 0) {
        *out++ = '0';
        out = std::fill_n(append(out, point), -exponent - 1, '0');
        return std::copy_n(text.digits, text.count, out);
    }
    const int wholeCount = exponent + 1;
    out = std::copy_n(text.digits, wholeCount, out);
    if (text.count > wholeCount)
        out = std::copy(text.digits + wholeCount, text.digits + text.count, append(out, point));
    return out;
}

/// From here on down, numbers are printed with their power of ten.
constexpr int kSmallestFixedExponent = -4;

template <class Real>
char* writeEveryday(char* out, Real magnitude, const char* point) noexcept {
    const Decimal decimal = decimalOf(magnitude);
    const DigitText text = digitTextOf<Real>(decimal.digits);
    return decimal.exponent < kSmallestFixedExponent ? writeScientific(out, text, decimal.exponent, point)
                                                     : writeFixed(out, text, decimal.exponent, point);
}

template <class Real>
std::size_t printByLibrary(NumberBuffer& text, Real value) noexcept {
    return static_cast<std::size_t>(
        std::snprintf(text, kNumberCapacity, Format<Real>::text, static_cast<double>(value)));
}

template <class Real>
std::size_t printFloating(NumberBuffer& text, Real value) noexcept {
    if (!std::isfinite(value) || !roundsAsUsual())
        return printByLibrary(text, value);
    const char* const point = decimalPoint();
    const Real magnitude = std::abs(value);
    char* end = text;
    if (isEveryday(magnitude)) {
        if (std::signbit(value))
            *end++ = '-';
        end = writeEveryday(end, magnitude, point);
    } else if (std::strcmp(point, ".") == 0) {
        end = std::to_chars(text, text + kNumberCapacity, static_cast<double>(value),
                            std::chars_format::general, Format<Real>::precision)
                  .ptr;
    } else {
        return printByLibrary(text, value);
    }
    *end = 0;
    return static_cast<std::size_t>(end - text);
}

} // namespace

std::size_t printNumber(NumberBuffer& text, int value) noexcept {
    return printInteger(text, value);
}

std::size_t printNumber(NumberBuffer& text, unsigned int value) noexcept {
    return printInteger(text, value);
}

std::size_t printNumber(NumberBuffer& text, long value) noexcept {
    return printInteger(text, value);
}

std::size_t printNumber(NumberBuffer& text, unsigned long value) noexcept {
    return printInteger(text, value);
}

std::size_t printNumber(NumberBuffer& text, long long value) noexcept {
    return printInteger(text, value);
}

std::size_t printNumber(NumberBuffer& text, unsigned long long value) noexcept {
    return printInteger(text, value);
}

std::size_t printNumber(NumberBuffer& text, float value) noexcept {
    return printFloating(text, value);
}

std::size_t printNumber(NumberBuffer& text, double value) noexcept {
    return printFloating(text, value);
}

} // namespace Quillon::Runtime
