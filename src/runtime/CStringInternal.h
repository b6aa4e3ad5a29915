#ifndef ZUTARNEX_RUNTIME_CSTRINGINTERNAL_H
#define ZUTARNEX_RUNTIME_CSTRINGINTERNAL_H

#include <cstddef>
#include <cstdint>

namespace Quillon::Runtime {

/// Bytes before the terminating NUL; 0 for null.
std::size_t lengthOf(const char* text) noexcept;

/// A copy from the host's allocator, or null when `text` is null or memory has run out.
char* duplicate(const char* text) noexcept;
/// A terminated copy of `length` bytes.
char* duplicate(const char* text, std::size_t length) noexcept;

/// Copies at most `capacity` - 1 bytes and always terminates. False when `text` did not fit.
bool copyBounded(char* target, std::size_t capacity, const char* text) noexcept;

/// As snprintf; false when the result did not fit.
[[gnu::format(printf, 3, 4)]] bool printBounded(char* target, std::size_t capacity, const char* format,
                                                ...) noexcept;

/// As printf, through the host's `print`.
[[gnu::format(printf, 1, 2)]] int printToHost(const char* format, ...);

/// A fixed 32-bit hash of `byteCount` bytes.
std::uint32_t hashBytes(const char* bytes, std::size_t byteCount) noexcept;

/// Units before the first zero unit; 0 for null.
std::size_t unitCountOf(const unsigned short* text) noexcept;

} // namespace Quillon::Runtime

#endif
