#ifndef ZUTARNEX_TESTS_SUPPORT_TEXT_H
#define ZUTARNEX_TESTS_SUPPORT_TEXT_H

#include "xml/XmlString.h"

#include <string>
#include <vector>

namespace Quillon::Testing {

/// The units of `literal` with their terminating zero, for calls that take a pointer.
std::vector<unsigned short> units(const char16_t* literal);
/// An owned string; null gives a null string.
Xml::XmlString text(const char16_t* literal);
/// An owned string of exactly the units of `literal`, zero units included.
Xml::XmlString text(const std::u16string& literal);
/// The size() units of `string` as UTF-8; "(null)" for a null string. Lone surrogates show as \uXXXX.
std::string show(const Xml::XmlString& string);
/// The size() units of `string`; empty for a null string.
std::u16string unitsOf(const Xml::XmlString& string);

} // namespace Quillon::Testing

#endif
