#ifndef ZUTARNEX_XML_NAMESINTERNAL_H
#define ZUTARNEX_XML_NAMESINTERNAL_H

#include <cstddef>

namespace Quillon::Xml {

/// The characters of names as XML 1.0 has them up to its fourth edition (productions 4 and 5 there), which every
/// XML 1.0 parser takes: the letters, digits, combining characters and extenders of Unicode 2.0. None of them lies
/// above U+FFFF, so a surrogate is never one.
bool isNameStart(unsigned short unit) noexcept;
bool isNameCharacter(unsigned short unit) noexcept;

/// Where `count` units stop being a Name: the index of the first unit at fault, `count` when there is none. An empty
/// text is faulty at index 0.
std::size_t endOfName(const unsigned short* units, std::size_t count) noexcept;

} // namespace Quillon::Xml

#endif
