#ifndef ZUTARNEX_BENCH_SUPPORT_TEXT_H
#define ZUTARNEX_BENCH_SUPPORT_TEXT_H

#include "support/Random.h"
#include "xml/XmlString.h"

#include <cstddef>
#include <string>

namespace Quillon::Bench {

/// Words of lower-case letters with spaces between and a full stop now and then; never ends in a space.
std::u16string asciiProse(std::size_t units, Random& random);
/// Ideographs of the basic plane with their punctuation.
std::u16string cjkProse(std::size_t units, Random& random);
/// ASCII and two-byte letters, as in a European language: one letter in 24 is beyond ASCII.
std::u16string latinProse(std::size_t units, Random& random);
/// Characters beyond the basic plane only; `units` must be even.
std::u16string emoji(std::size_t units, Random& random);
/// A name of `units` ASCII letters.
std::u16string asciiName(std::size_t units, Random& random);

std::string toUtf8(const std::u16string& text);
Xml::XmlString toXmlString(const std::u16string& text); ///< an owned copy
/// The units in the type of the library's interfaces.
inline const unsigned short* unitsOf(const std::u16string& text) noexcept {
    return reinterpret_cast<const unsigned short*>(text.data());
}

} // namespace Quillon::Bench

#endif
