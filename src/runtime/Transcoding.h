#ifndef ZUTARNEX_RUNTIME_TRANSCODING_H
#define ZUTARNEX_RUNTIME_TRANSCODING_H

#include "zutarnex/export.h"

#include <cstddef>
#include <cstdint>

namespace Quillon::Runtime {

/// Conversions between UTF-16 (native byte order) and 8-bit encodings.
///
/// Ill-formed: every maximal ill-formed part becomes one U+FFFD; a lone surrogate is ill-formed. A character that
///             the target encoding lacks becomes `?`.
/// Ownership:  a returned buffer is new, NUL-terminated, and goes back through `release` of HostServices.h. Null
///             means that there was no memory, or what the operation says besides.
/// Threads:    any number at once.

/// The characters that `byteCount` bytes of UTF-8 hold, an ill-formed part counting as one.
ZUTARNEX_API std::size_t utf8CharacterCount(const char* text, std::size_t byteCount) noexcept;

/// `byteCount` bytes as UTF-16; -1: up to the terminating NUL.
ZUTARNEX_API unsigned short* utf8ToUtf16(const char* text, std::ptrdiff_t byteCount) noexcept;

/// What a text in UTF-8 begins with that is well-formed.
struct Utf8Beginning {
    std::size_t byteCount; ///< of whole characters
    std::size_t unitCount; ///< of the same in UTF-16
    bool isIllFormed;      ///< what follows them: else it is the beginning of a character, or nothing
};

/// Writes it as UTF-16 to `out`, which has room for `byteCount` units. What lies behind the units that count may have
/// changed.
ZUTARNEX_API Utf8Beginning wellFormedUtf8ToUtf16(const char* text, std::size_t byteCount,
                                                 unsigned short* out) noexcept;

/// `unitCount` units as UTF-8.
ZUTARNEX_API char* utf16ToUtf8(const unsigned short* text, std::size_t unitCount) noexcept;

/// Whether `utf16ToEncoding` knows the encoding; null counts as UTF-8.
ZUTARNEX_API bool isKnownEncoding(const char* encodingName) noexcept;

/// `unitCount` units in the encoding of that name; the result ends with one zero byte behind the last byte of the
/// text (text in encodings like UTF-16 holds zero bytes of its own). "UTF-8" (also for a null name), "US-ASCII" and
/// "ISO-8859-1", in any case, are converted here, any other name by iconv. Null also for a name that iconv lacks.
ZUTARNEX_API char* utf16ToEncoding(const char* encodingName, const unsigned short* text,
                                   std::size_t unitCount) noexcept;

} // namespace Quillon::Runtime

#endif
