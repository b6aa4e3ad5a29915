#include "runtime/Transcoding.h"

#include "runtime/HostServices.h"
#include "runtime/IconvInternal.h"
#include "runtime/kernels/EscapeScanInternal.h"
#include "runtime/kernels/TranscodeInternal.h"
#include "runtime/kernels/TranscodeStepsInternal.h"

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

using Bytes = const unsigned char*;

/// What ill-formed bytes are converted to, and what may be taken for it.
constexpr Kernels::EscapeSet kReplaced(1, Kernels::kReplacement - 1, "");

enum class Character { Whole, CutOff, IllFormed };

/// Moves behind the character at `text` if it is whole. REQUIRES: text < end.
Character passCharacter(Bytes& text, Bytes end) noexcept {
    Bytes next = text;
    Kernels::nextOfUtf8(next, end);
    const unsigned int trailCount = Kernels::leadOf(*text).trailCount;
    const bool isKnown = *text < 0x80 || trailCount != 0;
    if (isKnown && next - text == static_cast<std::ptrdiff_t>(trailCount) + 1) {
        text = next;
        return Character::Whole;
    }
    return isKnown && next == end ? Character::CutOff : Character::IllFormed;
}

/// The end without the beginning of a character that it cuts off.
Bytes endOfWholeCharacters(Bytes text, Bytes end) noexcept {
    constexpr std::ptrdiff_t kMostCutOff = 3;
    for (Bytes at = end; at != text && end - at < kMostCutOff;) {
        --at;
        Bytes next = at;
        if (*at >= 0xC0)
            return passCharacter(next, end) == Character::CutOff ? at : end;
    }
    return end;
}

} // namespace

Utf8Beginning wellFormedUtf8ToUtf16(const char* text, std::size_t byteCount, unsigned short* out) noexcept {
    const auto begin = reinterpret_cast<Bytes>(text), end = endOfWholeCharacters(begin, begin + byteCount);
    const auto converted = [&](Bytes stop, bool isIllFormed) -> Utf8Beginning {
        const auto count = static_cast<std::size_t>(stop - begin);
        return {count, static_cast<std::size_t>(Kernels::utf8ToUtf16(text, count, out) - out), isIllFormed};
    };
    const Utf8Beginning whole = converted(end, false);
    if (Kernels::firstToEscape(out, whole.unitCount, kReplaced, 0) == whole.unitCount)
        return whole;
    Bytes at = begin;
    while (at != end && passCharacter(at, end) == Character::Whole) {
    }
    return at == end ? whole : converted(at, true);
}

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
