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
    if (own_.list.capacity() == 0)
        return;
    own_.list.clear();
    own_.list.swap(lent_.list);
    own_.strings.clear();
    if (own_.strings.capacity() != 0)
        own_.strings.swap(lent_.strings);
}

void StrictAttributes::read(const AttributeUnits& attributes) {
    const unsigned int count = attributes.length();
    if (count == 0)
        return;
    own_.list.swap(lent_.list);
    own_.list.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
        const AttributeUnits::Entry entry = attributes.entry(i);
        own_.list.push_back(
            {entry.uri, entry.localName, entry.qName, attributes.type(i), entry.value, QualifiedName()});
    }
}

/// Room for all strings comes first, so that each is copied but once.
void StrictAttributes::fetch(const Attributes& attributes) {
    constexpr std::size_t kFields = 5;
    const unsigned int count = attributes.getLength();
    if (count == 0)
        return;
    own_.list.swap(lent_.list);
    own_.strings.swap(lent_.strings);
    own_.list.reserve(count);
    own_.strings.reserve(count * kFields);
    const auto kept = [&](const XmlString& string) { return unitsOf(own_.strings.emplace_back(string)); };
    for (unsigned int i = 0; i < count; ++i)
        own_.list.push_back({kept(attributes.getURI(i)), kept(attributes.getLocalName(i)),
                             kept(attributes.getQName(i)), kept(attributes.getType(i)),
                             kept(attributes.getValue(i)), QualifiedName()});
}

} // namespace Quillon::Xml::Sax
