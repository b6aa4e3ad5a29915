#ifndef ZUTARNEX_XML_SAX_ATTRIBUTESREADINGINTERNAL_H
#define ZUTARNEX_XML_SAX_ATTRIBUTESREADINGINTERNAL_H

#include "xml/XmlStringInternal.h"
#include "xml/sax/AttributesImpl.h"

namespace Quillon::Xml::Sax {

/// The strings of an AttributesImpl where they lie. Its own operations give copies, each of which takes and drops a
/// hold on a shared block.
class AttributesReading {
public:
    enum Field : unsigned int { Uri, LocalName, QName, Type, Value, FieldCount };

    /// The library's own list that `attributes` is; null for any other, whose operations may do what they like.
    static const AttributesImpl* ownList(const Attributes& attributes) noexcept;

    /// What the getters give. REQUIRES: index < list.getLength().
    static Units units(const AttributesImpl& list, unsigned int index, Field field) noexcept {
        return XmlStringReading::unitsOfCopy(string(list, index, field));
    }
    static const XmlString& string(const AttributesImpl& list, unsigned int index, Field field) noexcept {
        return list.data_[std::size_t{index} * FieldCount + field];
    }
    static unsigned int length(const AttributesImpl& list) noexcept { return list.length_; }
};

} // namespace Quillon::Xml::Sax

#endif
