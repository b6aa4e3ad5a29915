#ifndef ZUTARNEX_XML_SAX_ATTRIBUTESREADINGINTERNAL_H
#define ZUTARNEX_XML_SAX_ATTRIBUTESREADINGINTERNAL_H

#include "xml/XmlStringInternal.h"
#include "xml/sax/AttributeSourceInternal.h"
#include "xml/sax/AttributesImpl.h"

namespace Quillon::Xml::Sax {

/// A list of attributes, read where its strings lie if it is one of the library's own. Its operations give copies, each
/// of which takes and drops a hold on a shared block.
class AttributesReading {
public:
    enum Field : unsigned int { Uri, LocalName, QName, Type, Value, FieldCount };

    explicit AttributesReading(const Attributes& attributes) noexcept;
    AttributesReading(const AttributesReading&) = delete;
    AttributesReading& operator=(const AttributesReading&) = delete;

    /// Null for a list of somebody else's, whose operations may do what they like: a class derived from one of the
    /// library's is somebody else's, too.
    const AttributeUnits* units() const noexcept { return units_; }

private:
    /// What the getters of an AttributesImpl give.
    class UnitsOfImpl final : public AttributeUnits {
    public:
        unsigned int length() const noexcept override { return list->length_; }
        void read(unsigned int index, Entry& entry) const noexcept override {
            entry.uri = field(index, Uri);
            entry.localName = field(index, LocalName);
            entry.qName = field(index, QName);
            entry.value = field(index, Value);
        }
        Units type(unsigned int index) const noexcept override { return field(index, Type); }

        const AttributesImpl* list = nullptr;

    private:
        Units field(unsigned int index, Field field) const noexcept {
            return XmlStringReading::unitsOfCopy(list->data_[std::size_t{index} * FieldCount + field]);
        }
    };

    UnitsOfImpl impl_;
    const AttributeUnits* units_ = nullptr;
};

} // namespace Quillon::Xml::Sax

#endif
