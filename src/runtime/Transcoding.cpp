#include "runtime/Transcoding.h"

#include "runtime/HostServices.h"
#include "runtime/IconvInternal.h"
#include "runtime/kernels/TranscodeInternal.h"

#include <cstring>
#include <strings.h>

namespace Quillon::Runtime {

namespace {

enum class Family { Utf8, SingleByte, Other };

struct Target {
    Family family;
    unsigned short last; ///< of a single-byte encoding, its highest character
};

Target targetOf(const char* encodingName) noexcept {
    if (!encodingName || ::strcasecmp(encodingName, "UTF-8") == 0)
        return {Family::Utf8, 0};
    if (::strcasecmp(encodingName, "US-ASCII") == 0)
        return {Family::SingleByte, 0x7F};
    if (::strcasecmp(encodingName, "ISO-8859-1") == 0)
        return {Family::SingleByte, 0xFF};
    return {Family::Other, 0};
}

template <class Unit>
Unit* allocateUnits(std::uint64_t countWithTerminator) noexcept {
    if (countWithTerminator > PTRDIFF_MAX / sizeof(Unit))
        return nullptr;
    return static_cast<Unit*>(
        hostServices().allocate(static_cast<std::size_t>(countWithTerminator) * sizeof(Unit)));
}

char* utf16ToSingleByte(const unsigned short* text, std::size_t unitCount, unsigned short last) noexcept {
    char* out = allocateUnits<char>(std::uint64_t{unitCount} + 1);
    if (out)
        *Kernels::utf16ToSingleByte(text, unitCount, last, out) = '\0';
    return out;
}

} // namespace

std::size_t utf8CharacterCount(const char* text, std::size_t byteCount) noexcept {
    return Kernels::charactersOfUtf8(text, byteCount);
}

unsigned short* utf8ToUtf16(const char* text, std::ptrdiff_t byteCount) noexcept {
    const std::size_t count = byteCount < 0 ? std::strlen(text) : static_cast<std::size_t>(byteCount);
    auto* out = allocateUnits<unsigned short>(std::uint64_t{Kernels::utf16LengthOfUtf8(text, count)} + 1);
    if (out)
        *Kernels::utf8ToUtf16(text, count, out) = 0;
    return out;
}

char* utf16ToUtf8(const unsigned short* text, std::size_t unitCount) noexcept {
    char* out = allocateUnits<char>(Kernels::utf8LengthOfUtf16(text, unitCount) + 1);
    if (out)
        *Kernels::utf16ToUtf8(text, unitCount, out) = '\0';
    return out;
}

bool isKnownEncoding(const char* encodingName) noexcept {
    if (targetOf(encodingName).family != Family::Other)
        return true;
    return isEncodingName(encodingName) && Iconv(encodingName, "UTF-16LE").isOpen();
}

char* utf16ToEncoding(const char* encodingName, const unsigned short* text, std::size_t unitCount) noexcept {
    const Target target = targetOf(encodingName);
    switch (target.family) {
    case Family::Utf8:
        return utf16ToUtf8(text, unitCount);
    case Family::SingleByte:
        return utf16ToSingleByte(text, unitCount, target.last);
    case Family::Other:
        break;
    }
    return encodedByIconv(encodingName, text, unitCount);
}

} // namespace Quillon::Runtime
