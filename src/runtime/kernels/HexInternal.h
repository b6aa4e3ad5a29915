#ifndef ZUTARNEX_RUNTIME_KERNELS_HEXINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_HEXINTERNAL_H

#include <cstddef>

/// Bytes as pairs of upper-case hexadecimal digits. The kernels read and write only what they say, call nothing and
/// allocate nothing. A text may be decoded onto itself: out <= in is enough.
namespace Quillon::Runtime::Kernels {

/// `count` bytes become 2 * count digits.
void encodeHex(const unsigned char* in, std::size_t count, unsigned char* out) noexcept;

/// Decodes pairs of digits, up to `maxBytes`, before, between and in which there may be white space (9 to 13 and 32).
/// Ends before the first pair that is not whole or has another character; `in` is then behind the last digit of the
/// last pair that was decoded. Returns the number of bytes.
std::size_t decodeHex(const unsigned char*& in, const unsigned char* end, std::size_t maxBytes,
                      unsigned char* out) noexcept;

} // namespace Quillon::Runtime::Kernels

#endif
