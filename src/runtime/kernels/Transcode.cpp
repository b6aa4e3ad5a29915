#include "runtime/kernels/TranscodeInternal.h"

namespace Quillon::Runtime::Kernels {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool isHighSurrogate(char32_t c) {
    return c >= 0xD800 && c <= 0xDBFF;
}
constexpr bool isLowSurrogate(char32_t c) {
    return c >= 0xDC00 && c <= 0xDFFF;
}

/// The character at `text`, which moves behind it; a lone surrogate is U+FFFD. REQUIRES: text < end.
char32_t nextOfUtf16(const unsigned short*& text, const unsigned short* end) noexcept {
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
char32_t nextOfUtf8(const unsigned char*& text, const unsigned char* end) noexcept {
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

const unsigned char* asBytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

} // namespace

std::uint64_t utf8LengthOfUtf16(const unsigned short* text, std::size_t count) noexcept {
    std::uint64_t length = 0;
    for (const unsigned short* end = text + count; text != end;) {
        const char32_t c = nextOfUtf16(text, end);
        length += c < 0x80 ? 1 : c < 0x800 ? 2 : c < 0x10000 ? 3 : 4;
    }
    return length;
}

char* utf16ToUtf8(const unsigned short* text, std::size_t count, char* out) noexcept {
    for (const unsigned short* end = text + count; text != end;) {
        const char32_t c = nextOfUtf16(text, end);
        if (c < 0x80) {
            *out++ = static_cast<char>(c);
            continue;
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
    }
    return out;
}

std::size_t utf16LengthOfUtf8(const char* text, std::size_t count) noexcept {
    std::size_t length = 0;
    const unsigned char* bytes = asBytes(text);
    for (const unsigned char* end = bytes + count; bytes != end;)
        length += nextOfUtf8(bytes, end) < 0x10000 ? 1 : 2;
    return length;
}

unsigned short* utf8ToUtf16(const char* text, std::size_t count, unsigned short* out) noexcept {
    const unsigned char* bytes = asBytes(text);
    for (const unsigned char* end = bytes + count; bytes != end;) {
        const char32_t c = nextOfUtf8(bytes, end);
        if (c < 0x10000) {
            *out++ = static_cast<unsigned short>(c);
        } else {
            *out++ = static_cast<unsigned short>(0xD800 + ((c - 0x10000) >> 10));
            *out++ = static_cast<unsigned short>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    return out;
}

std::size_t charactersOfUtf8(const char* text, std::size_t count) noexcept {
    std::size_t characters = 0;
    const unsigned char* bytes = asBytes(text);
    for (const unsigned char* end = bytes + count; bytes != end; ++characters)
        nextOfUtf8(bytes, end);
    return characters;
}

char* utf16ToSingleByte(const unsigned short* text, std::size_t count, unsigned short last,
                        char* out) noexcept {
    for (const unsigned short* end = text + count; text != end;) {
        const char32_t c = nextOfUtf16(text, end);
        *out++ = c <= last ? static_cast<char>(c) : '?';
    }
    return out;
}

} // namespace Quillon::Runtime::Kernels
