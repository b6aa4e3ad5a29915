#ifndef ZUTARNEX_RUNTIME_KERNELS_TRANSCODEINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_TRANSCODEINTERNAL_H

#include <cstddef>
#include <cstdint>

/// Loops over whole texts between UTF-16 and 8-bit encodings. They read only [text, text + count), write only as much
/// as the matching ...Length call says, call nothing and allocate nothing.
///
/// Every maximal ill-formed part of the input becomes one U+FFFD; a character that the target lacks becomes `?`.
namespace Quillon::Runtime::Kernels {

/// Bytes of UTF-8 for `count` units: up to 3 * count, so in 64 bits on every platform.
std::uint64_t utf8LengthOfUtf16(const unsigned short* text, std::size_t count) noexcept;
/// Returns the end of what was written.
char* utf16ToUtf8(const unsigned short* text, std::size_t count, char* out) noexcept;

/// Units of UTF-16 for `count` bytes; never more than `count`.
std::size_t utf16LengthOfUtf8(const char* text, std::size_t count) noexcept;
unsigned short* utf8ToUtf16(const char* text, std::size_t count, unsigned short* out) noexcept;
/// Characters in `count` bytes, an ill-formed part counting as one.
std::size_t charactersOfUtf8(const char* text, std::size_t count) noexcept;

/// To an encoding of one byte for the characters up to `last` (0x7F: US-ASCII, 0xFF: ISO-8859-1). Never more than
/// `count` bytes.
char* utf16ToSingleByte(const unsigned short* text, std::size_t count, unsigned short last,
                        char* out) noexcept;

} // namespace Quillon::Runtime::Kernels

#endif
