#include "xml/sax/writer/StrictAttributesInternal.h"

#include "xml/sax/AttributesReadingInternal.h"

namespace Quillon::Xml::Sax {

// The delegation makes the object complete before somebody else's list is asked, so that a failure gives the room back.
StrictAttributes::StrictAttributes(StrictAttributeRoom& room, const Attributes& attributes)
    : StrictAttributes(room) {
    const AttributesReading reading(attributes);
    if (reading.units() != nullptr)
        read(*reading.units());
    else
        fetch(attributes);
}

/// REQUIRES: count != 0.
void StrictAttributes::take(std::size_t count) {
    if (room_->isTaken)
        room_ = &other_;
    if (room_->entries.size() < count)
        room_->entries.resize(count);
    room_->isTaken = true;
    list_ = StrictAttributeList(room_->entries).first(count);
}

void StrictAttributes::read(const AttributeUnits& attributes) {
    const unsigned int count = attributes.length();
    if (count == 0)
        return;
    take(count);
    for (unsigned int i = 0; i < count; ++i) {
        attributes.read(i, list_[i]);
        list_[i].type = attributes.type(i);
    }
}

/// Room for all strings comes first, so that each is copied but once.
void StrictAttributes::fetch(const Attributes& attributes) {
    constexpr std::size_t kFields = 5;
    const unsigned int count = attributes.getLength();
    if (count == 0)
        return;
    take(count);
    room_->strings.reserve(count * kFields);
    const auto kept = [&](const XmlString& string) { return unitsOf(room_->strings.emplace_back(string)); };
    for (unsigned int i = 0; i < count; ++i) {
        StrictAttribute& attribute = list_[i];
        attribute.uri = kept(attributes.getURI(i));
        attribute.localName = kept(attributes.getLocalName(i));
        attribute.qName = kept(attributes.getQName(i));
        attribute.type = kept(attributes.getType(i));
        attribute.value = kept(attributes.getValue(i));
    }
}

} // namespace Quillon::Xml::Sax
