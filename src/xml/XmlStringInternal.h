#ifndef ZUTARNEX_XML_XMLSTRINGINTERNAL_H
#define ZUTARNEX_XML_XMLSTRINGINTERNAL_H

#include "xml/XmlString.h"

#include <span>

namespace Quillon::Xml {

using Units = std::span<const unsigned short>;

/// Reads a string without the calls into the library that its public operations are.
struct XmlStringReading {
    static bool isNull(const XmlString& string) noexcept { return (string.flags_ & Null) != 0; }
    /// Whether the units belong to somebody else, who may change them.
    static bool isBorrowed(const XmlString& string) noexcept { return (string.flags_ & Borrowed) != 0; }
    /// The units of a string; none for a null one, whatever its size says.
    static Units units(const XmlString& string) noexcept {
        return isNull(string) ? Units() : Units(string.data_, string.size_);
    }
    /// The units that a copy of the string would have: none, when it lacks Valid.
    static Units unitsOfCopy(const XmlString& string) noexcept {
        return (string.flags_ & Valid) != 0 ? units(string) : Units();
    }
};

inline Units unitsOf(const XmlString& string) noexcept {
    return XmlStringReading::units(string);
}

} // namespace Quillon::Xml

#endif
