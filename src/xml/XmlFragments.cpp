#include "xml/XmlFragments.h"

#include "xml/Utf16LiteralInternal.h"

namespace Quillon::Xml {

namespace {

constexpr Utf16Literal kStartEntity(u"<!ENTITY ");
constexpr Utf16Literal kStartPI(u"<?");
constexpr Utf16Literal kEndPI(u"?>");
constexpr Utf16Literal kXMLDeclStringV1(u"<?xml version=\"1.0\"?>");
constexpr Utf16Literal kXMLDeclStringV1Encoding(u"<?xml version=\"1.0\" encoding=\"");
constexpr Utf16Literal kXMLDecl2(u"\"?>\n");
constexpr Utf16Literal kEndElement(u"</");
constexpr Utf16Literal kTrue(u"true");
constexpr Utf16Literal kFalse(u"false");
constexpr Utf16Literal kZeroString(u"0");
constexpr Utf16Literal kOneString(u"1");

} // namespace

const unsigned short* uniStartEntity() noexcept {
    return kStartEntity.units;
}
const unsigned short* uniStartPI() noexcept {
    return kStartPI.units;
}
const unsigned short* uniEndPI() noexcept {
    return kEndPI.units;
}
const unsigned short* uniXMLDeclStringV1() noexcept {
    return kXMLDeclStringV1.units;
}
const unsigned short* uniXMLDeclStringV1Encoding() noexcept {
    return kXMLDeclStringV1Encoding.units;
}
const unsigned short* uniXMLDecl2() noexcept {
    return kXMLDecl2.units;
}
const unsigned short* uniEndElement() noexcept {
    return kEndElement.units;
}
const unsigned short* uniTrue() noexcept {
    return kTrue.units;
}
const unsigned short* uniFalse() noexcept {
    return kFalse.units;
}
const unsigned short* uniZeroString() noexcept {
    return kZeroString.units;
}
const unsigned short* uniOneString() noexcept {
    return kOneString.units;
}

} // namespace Quillon::Xml
