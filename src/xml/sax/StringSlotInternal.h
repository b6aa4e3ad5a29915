#ifndef ZUTARNEX_XML_SAX_STRINGSLOTINTERNAL_H
#define ZUTARNEX_XML_SAX_STRINGSLOTINTERNAL_H

#include "xml/Utf16LiteralInternal.h"
#include "xml/XmlString.h"

namespace Quillon::Xml::Sax {

inline constexpr Utf16Literal kEmptyText(u"");

/// An owned empty string: unlike a view on a literal, it can be assigned to.
inline XmlString emptyString() {
    return XmlString(0, kEmptyText.units);
}

/// Gives `slot` the value of `value`, whatever flags `slot` had: create() looks at none. Not for `value` itself.
inline void replaceSlot(XmlString& slot, const XmlString& value) noexcept {
    slot.create(0, nullptr, 0);
    slot = value;
}

} // namespace Quillon::Xml::Sax

#endif
