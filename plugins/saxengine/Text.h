#ifndef ZUTARNEX_SAXENGINE_TEXT_H
#define ZUTARNEX_SAXENGINE_TEXT_H

#include "UnitSpan.h"

#include <string>
#include <string_view>

namespace Quillon::SaxEngine {

/// Strings that go to the application own their text: a view on a buffer of the parser would dangle after the event,
/// and a string that was assigned an immutable view would refuse the next assignment.

Xml::XmlString ownedString(UnitSpan units);
Xml::XmlString ownedString(const XML_Char* terminated); ///< null gives a null string
Xml::XmlString ownedAscii(std::string_view text);
Xml::XmlString fromUtf8(const std::string& text);
Xml::XmlString fromUtf8OrNull(const std::string& text); ///< empty text gives a null string

/// The UTF-8 form, for messages and system identifiers; empty for a null string.
std::string toUtf8(UnitSpan units);
std::string toUtf8(const Xml::XmlString& string);

bool equalsIgnoringCase(std::string_view a, std::string_view b); ///< of ASCII letters

} // namespace Quillon::SaxEngine

#endif
