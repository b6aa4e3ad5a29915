#ifndef ZUTARNEX_RUNTIME_KERNELS_BASE64INTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_BASE64INTERNAL_H

#include <cstddef>

/// Base64 in groups: three bytes on one side, four characters of the alphabet on the other. The kernels read and write
/// only what they say, call nothing and allocate nothing. A text may be decoded onto itself: out <= in is enough.
namespace Quillon::Runtime::Kernels {

inline constexpr std::size_t kBase64GroupsInLine = 19;

/// 3 * groupCount bytes become 4 * groupCount characters.
void encodeBase64(const unsigned char* in, std::size_t groupCount, unsigned char* out) noexcept;

/// The same in lines of 19 groups with a line feed behind each: 57 bytes become 77 characters.
void encodeBase64Lines(const unsigned char* in, std::size_t lineCount, unsigned char* out) noexcept;

/// Decodes groups, up to `maxGroups`, before, between and in which there may be white space (9 to 13 and 32). Ends
/// before the first group that is not whole or has another character; `in` is then behind the last character of the
/// last group that was decoded. Returns the number of groups.
std::size_t decodeBase64(const unsigned char*& in, const unsigned char* end, std::size_t maxGroups,
                         unsigned char* out) noexcept;

/// Counts the characters that are no white space, up to the first that is neither white space as above nor visible
/// US-ASCII; `in` is then there.
std::size_t countVisible(const unsigned char*& in, const unsigned char* end) noexcept;

} // namespace Quillon::Runtime::Kernels

#endif
