#ifndef ZUTARNEX_RUNTIME_KERNELS_TRANSCODEINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_TRANSCODEINTERNAL_H

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <emmintrin.h>

/// Loops over whole texts between UTF-16 and 8-bit encodings. They read only [text, text + count), write only as much
/// as the matching ...Length call says, call nothing and allocate nothing.
///
/// Every maximal ill-formed part of the input becomes one U+FFFD; a character that the target lacks becomes `?`.
namespace Quillon::Runtime::Kernels {

/// Bytes of UTF-8 for `count` units: up to 3 * count, so in 64 bits on every platform.
std::uint64_t utf8LengthOfUtf16(const unsigned short* text, std::size_t count) noexcept;
/// Returns the end of what was written. 3 * count bytes are always enough.
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

// Short texts, where asking for the level and the way to a kernel would cost more than the work. SSE2 is the floor of
// both platforms, so it needs no question.

/// Eight units as eight bytes; false, with nothing written, when one is not US-ASCII.
inline bool narrowEightAscii(const unsigned short* text, char* out) noexcept {
    const __m128i units = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text));
    const __m128i high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF)
        return false;
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out), _mm_packus_epi16(units, units));
    return true;
}

/// The same for four.
inline bool narrowFourAscii(const unsigned short* text, char* out) noexcept {
    const __m128i units = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(text));
    const __m128i high = _mm_and_si128(units, _mm_set1_epi16(static_cast<short>(0xFF80)));
    if (_mm_movemask_epi8(_mm_cmpeq_epi16(high, _mm_setzero_si128())) != 0xFFFF)
        return false;
    const int bytes = _mm_cvtsi128_si32(_mm_packus_epi16(units, units));
    std::memcpy(out, &bytes, sizeof bytes);
    return true;
}

/// Converts the US-ASCII units that `text` begins with, up to `count`, and returns how many these are. May write a few
/// bytes behind the last that counts, but not behind out + count.
inline std::size_t narrowAscii(const unsigned short* text, std::size_t count, char* out) noexcept {
    std::size_t done = 0;
    while (count - done >= 8 && narrowEightAscii(text + done, out + done))
        done += 8;
    if (count - done >= 4 && narrowFourAscii(text + done, out + done))
        done += 4;
    if (count >= 4 && count - done < 4 && narrowFourAscii(text + count - 4, out + count - 4))
        return count; // some of the four for the second time
    for (; done != count && text[done] < 0x80; ++done)
        out[done] = static_cast<char>(text[done]);
    return done;
}

/// utf16ToUtf8 for texts that are mostly short and mostly US-ASCII, inline as far as they are.
inline char* shortUtf16ToUtf8(const unsigned short* text, std::size_t count, char* out) noexcept {
    const std::size_t ascii = count <= 32 ? narrowAscii(text, count, out) : 0;
    return ascii == count ? out + count : utf16ToUtf8(text + ascii, count - ascii, out + ascii);
}

} // namespace Quillon::Runtime::Kernels

#endif
