#ifndef ZUTARNEX_TESTS_XML_STRINGFIELDS_H
#define ZUTARNEX_TESTS_XML_STRINGFIELDS_H

#include "xml/XmlString.h"

#include <cstdint>
#include <cstring>

namespace Quillon::Testing {

/// What a string's bytes hold, flags included, for which there is no getter.
struct StringFields {
    const unsigned short* data;
    std::uint32_t capacity;
    std::uint32_t size;
    std::uint8_t flags;

    bool operator==(const StringFields& other) const {
        return data == other.data && capacity == other.capacity && size == other.size && flags == other.flags;
    }
};

inline StringFields fieldsOf(const Xml::XmlString& string) {
    constexpr std::size_t pointerSize = sizeof(void*);
    const char* bytes = reinterpret_cast<const char*>(&string);
    StringFields fields{};
    std::memcpy(&fields.data, bytes, pointerSize);
    std::memcpy(&fields.capacity, bytes + pointerSize, 4);
    std::memcpy(&fields.size, bytes + pointerSize + 4, 4);
    std::memcpy(&fields.flags, bytes + pointerSize + 8, 1);
    return fields;
}

inline unsigned int flagsOf(const Xml::XmlString& string) {
    return fieldsOf(string).flags;
}

} // namespace Quillon::Testing

#endif
