#include "xml/sax/writer/StrictAttributesInternal.h"

#include "xml/sax/AttributesReadingInternal.h"

namespace Quillon::Xml::Sax {

StrictAttributes::StrictAttributes(StrictAttributeRoom& room, const Attributes& attributes) : lent_(room) {
    const AttributesReading reading(attributes);
    if (reading.units() != nullptr)
        read(*reading.units());
    else
        fetch(attributes);
}

/// A list that has not needed the room has left it where it was.
StrictAttributes::~StrictAttributes() {
    if (list_.empty())
        return;
    own_.entries.swap(lent_.entries);
    own_.strings.clear();
    own_.strings.swap(lent_.strings);
}

void StrictAttributes::borrow(std::size_t count) {
    own_.entries.swap(lent_.entries);
    own_.strings.swap(lent_.strings);
    if (own_.entries.size() < count)
        own_.entries.resize(count);
    list_ = StrictAttributeList(own_.entries).first(count);
}

void StrictAttributes::read(const AttributeUnits& attributes) {
    const unsigned int count = attributes.length();
    if (count == 0)
        return;
    borrow(count);
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
    borrow(count);
    own_.strings.reserve(count * kFields);
    const auto kept = [&](const XmlString& string) { return unitsOf(own_.strings.emplace_back(string)); };
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
