#ifndef ZUTARNEX_RUNTIME_KERNELS_TRANSCODESTEPSINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_TRANSCODESTEPSINTERNAL_H

#include <cstddef>

/// One character at a time: what the transcoding kernels are made of where they do not work on whole blocks, and what
/// they are measured by.
namespace Quillon::Runtime::Kernels {

inline constexpr char32_t kReplacement = 0xFFFD;

constexpr bool isHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

/// The character at `text`, which moves behind it; a lone surrogate is U+FFFD. REQUIRES: text < end.
inline char32_t nextOfUtf16(const unsigned short*& text, const unsigned short* end) noexcept {
    const char32_t unit = *text++;
    if (!isHighSurrogate(unit))
        return isLowSurrogate(unit) ? kReplacement : unit;
    if (text == end || !isLowSurrogate(*text))
        return kReplacement;
    return 0x10000 + ((unit - 0xD800) << 10) + (*text++ - 0xDC00u);
}

/// What the second byte may be depends on the first (Unicode, table 3-7): no overlong forms, no surrogates, nothing
/// above U+10FFFF.
struct Lead {
    unsigned int trailCount;
    unsigned char secondMin, secondMax;
    char32_t bits;
};

constexpr Lead leadOf(unsigned char byte) {
    if (byte >= 0xC2 && byte <= 0xDF)
        return {1, 0x80, 0xBF, byte & 0x1Fu};
    if (byte >= 0xE0 && byte <= 0xEF)
        return {2, static_cast<unsigned char>(byte == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(byte == 0xED ? 0x9F : 0xBF), byte & 0x0Fu};
    if (byte >= 0xF0 && byte <= 0xF4)
        return {3, static_cast<unsigned char>(byte == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(byte == 0xF4 ? 0x8F : 0xBF), byte & 0x07u};
    return {0, 0, 0, kReplacement};
}

/// The character at `text`, which moves behind it or behind the maximal ill-formed part. REQUIRES: text < end.
inline char32_t nextOfUtf8(const unsigned char*& text, const unsigned char* end) noexcept {
    const unsigned char first = *text++;
    if (first < 0x80)
        return first;
    const Lead lead = leadOf(first);
    char32_t c = lead.bits;
    unsigned char min = lead.secondMin, max = lead.secondMax;
    for (unsigned int i = 0; i < lead.trailCount; ++i, min = 0x80, max = 0xBF) {
        if (text == end || *text < min || *text > max)
            return kReplacement;
        c = (c << 6) | (*text++ & 0x3Fu);
    }
    return c;
}

constexpr unsigned int utf8LengthOf(char32_t c) {
    return c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
}

/// Returns the end of what was written.
inline char* appendUtf8(char32_t c, char* out) noexcept {
    if (c < 0x80) {
        *out++ = static_cast<char>(c);
        return out;
    }
    if (c < 0x800) {
        *out++ = static_cast<char>(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            *out++ = static_cast<char>(0xE0 | (c >> 12));
        } else {
            *out++ = static_cast<char>(0xF0 | (c >> 18));
            *out++ = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        }
        *out++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
    }
    *out++ = static_cast<char>(0x80 | (c & 0x3F));
    return out;
}

/// Returns the end of what was written.
inline unsigned short* appendUtf16(char32_t c, unsigned short* out) noexcept {
    if (c < 0x10000) {
        *out++ = static_cast<unsigned short>(c);
    } else {
        *out++ = static_cast<unsigned short>(0xD800 + ((c - 0x10000) >> 10));
        *out++ = static_cast<unsigned short>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
    return out;
}

} // namespace Quillon::Runtime::Kernels

#endif
