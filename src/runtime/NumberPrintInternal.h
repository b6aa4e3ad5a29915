#ifndef ZUTARNEX_RUNTIME_NUMBERPRINTINTERNAL_H
#define ZUTARNEX_RUNTIME_NUMBERPRINTINTERNAL_H

#include <cstddef>

namespace Quillon::Runtime {

/// Room for any number: the longest is that of a double, "-1.797693134862316e+308"; a locale's decimal point may take
/// several bytes.
inline constexpr std::size_t kNumberCapacity = 64;
using NumberBuffer = char[kNumberCapacity];

/// Print as "%d", "%u", "%ld", "%lu", "%lld", "%llu", "%.8g" (float) and "%.16g" (double) do, the terminator included.
/// Return the length.
std::size_t printNumber(NumberBuffer& text, int value) noexcept;
std::size_t printNumber(NumberBuffer& text, unsigned int value) noexcept;
std::size_t printNumber(NumberBuffer& text, long value) noexcept;
std::size_t printNumber(NumberBuffer& text, unsigned long value) noexcept;
std::size_t printNumber(NumberBuffer& text, long long value) noexcept;
std::size_t printNumber(NumberBuffer& text, unsigned long long value) noexcept;
std::size_t printNumber(NumberBuffer& text, float value) noexcept;
std::size_t printNumber(NumberBuffer& text, double value) noexcept;

} // namespace Quillon::Runtime

#endif
