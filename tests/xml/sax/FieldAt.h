#ifndef ZUTARNEX_TESTS_XML_SAX_FIELDAT_H
#define ZUTARNEX_TESTS_XML_SAX_FIELDAT_H

#include <cstddef>
#include <cstring>

namespace Quillon::Testing {

constexpr std::size_t kWord = sizeof(void*);

/// A field for which there is no getter: the bytes of `object` at `offset`.
template <class T, class Object>
T fieldAt(const Object& object, std::size_t offset) {
    T value;
    std::memcpy(&value, reinterpret_cast<const char*>(&object) + offset, sizeof value);
    return value;
}

/// How far the base part `Part` stands behind the start of `object`.
template <class Part, class Object>
std::size_t offsetOfPart(const Object& object) {
    return static_cast<std::size_t>(reinterpret_cast<const char*>(static_cast<const Part*>(&object))
                                    - reinterpret_cast<const char*>(&object));
}

} // namespace Quillon::Testing

#endif
