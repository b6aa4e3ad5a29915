#ifndef ZUTARNEX_XML_UTF16LITERALINTERNAL_H
#define ZUTARNEX_XML_UTF16LITERALINTERNAL_H

#include <cstddef>

namespace Quillon::Xml {

/// A constant, NUL-terminated array of code units made at compile time from a u"..." literal (char16_t and
/// unsigned short are different types, so a cast of the pointer would break the aliasing rules):
///
///     constexpr Utf16Literal kXmlns(u"xmlns");
///     XmlString name(Immutable | Borrowed, kXmlns.units);
template <std::size_t N>
struct Utf16Literal {
    unsigned short units[N]{};

    consteval Utf16Literal(const char16_t (&literal)[N]) {
        for (std::size_t i = 0; i < N; ++i)
            units[i] = literal[i];
    }
};

} // namespace Quillon::Xml

#endif
