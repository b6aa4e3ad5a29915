#ifndef ZUTARNEX_SAXENGINE_UNITSPAN_H
#define ZUTARNEX_SAXENGINE_UNITSPAN_H

#include "xml/XmlString.h"

#include <cstdint>
#include <cstring>
#include <expat.h>
#include <type_traits>

namespace Quillon::SaxEngine {

static_assert(sizeof(XML_Char) == 2 && std::is_same_v<XML_Char, unsigned short>,
              "the plug-in needs libexpatw, whose characters are UTF-16 code units");

/// A view on UTF-16 code units of Expat or of a string.
struct UnitSpan {
    const XML_Char* data = nullptr;
    std::uint32_t size = 0;

    UnitSpan() = default;
    UnitSpan(const XML_Char* units, std::size_t count)
        : data(units), size(static_cast<std::uint32_t>(count)) {}
    explicit UnitSpan(const Xml::XmlString& string)
        : data(string.data()), size(string.isNull() ? 0 : string.size()) {}
    explicit UnitSpan(const XML_Char* terminated) : data(terminated) {
        while (data[size])
            ++size;
    }

    const XML_Char* begin() const { return data; }
    const XML_Char* end() const { return data + size; }
    UnitSpan from(std::uint32_t index) const { return {data + index, size - index}; }
    UnitSpan first(std::uint32_t count) const { return {data, count}; }

    friend bool operator==(UnitSpan a, UnitSpan b) {
        return a.size == b.size
               && (a.size == 0 || std::memcmp(a.data, b.data, a.size * sizeof(XML_Char)) == 0);
    }
};

} // namespace Quillon::SaxEngine

#endif
