#include "xml/sax/writer/StrictAttributesInternal.h"

#include <utility>

namespace Quillon::Xml::Sax {

StrictAttributes::StrictAttributes(StrictAttributeRoom& room, const Attributes& attributes)
    : lent_(room), own_(std::exchange(room, {})) {
    if (const AttributesImpl* const own = AttributesReading::ownList(attributes))
        read(*own);
    else
        fetch(attributes);
}

StrictAttributes::~StrictAttributes() {
    own_.list.clear();
    own_.strings.clear();
    lent_ = std::move(own_);
}

void StrictAttributes::read(const AttributesImpl& attributes) {
    using Field = AttributesReading::Field;
    const unsigned int count = AttributesReading::length(attributes);
    own_.list.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
        const auto units = [&](Field field) { return AttributesReading::units(attributes, i, field); };
        own_.list.push_back({units(Field::Uri), units(Field::LocalName), units(Field::QName),
                             units(Field::Type), units(Field::Value)});
    }
}

/// Room for all strings comes first, so that each is copied but once.
void StrictAttributes::fetch(const Attributes& attributes) {
    const unsigned int count = attributes.getLength();
    own_.list.reserve(count);
    own_.strings.reserve(std::size_t{count} * AttributesReading::FieldCount);
    const auto kept = [&](const XmlString& string) { return unitsOf(own_.strings.emplace_back(string)); };
    for (unsigned int i = 0; i < count; ++i)
        own_.list.push_back({kept(attributes.getURI(i)), kept(attributes.getLocalName(i)),
                             kept(attributes.getQName(i)), kept(attributes.getType(i)),
                             kept(attributes.getValue(i))});
}

} // namespace Quillon::Xml::Sax
