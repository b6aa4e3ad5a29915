#include "ElementAttributes.h"

#include "Text.h"
#include "xml/XmlStringRefillInternal.h"

#include <algorithm>
#include <bit>

namespace Quillon::SaxEngine {

using Xml::XmlString;

namespace {

/// Longer values give their block back with the element, and so do those of further attributes.
constexpr std::size_t kLongestKept = 255, kMostKept = 256;
constexpr XML_Char kRoom[kLongestKept] = {};

} // namespace

ElementAttributes::ElementAttributes(const Vocabulary& words)
    : words_(words), list_(Xml::Sax::attributesFrom(*this)) {}
ElementAttributes::~ElementAttributes() = default;

/// The value as a string. Its block is the last one's when that is free and large enough.
const XmlString& ElementAttributes::value(unsigned int index) const {
    if (index >= values_.size())
        values_.resize(slots_.size());
    hasMuchToGiveBack_ = hasMuchToGiveBack_ || values_.size() > kMostKept;
    Value& value = values_[index];
    if (value.element == element_)
        return value.text;
    const XML_Char* units = slots_[index].value;
    value.element = 0;
    const bool isRefilled =
        Xml::XmlStringRefill::isSoleOwner(value.text) && Xml::XmlStringRefill::refill(value.text, units);
    if (!isRefilled)
        makeValue(value.text, units);
    value.element = element_;
    return value.text;
}

/// A new block, with room for somewhat longer values unless this is a long one.
void ElementAttributes::makeValue(XmlString& text, const XML_Char* units) const {
    const UnitSpan span(units);
    if (span.size > kLongestKept) {
        hasMuchToGiveBack_ = true;
        text.create(0, units, span.size);
    } else {
        text.create(0, kRoom, std::max(16u, std::bit_ceil(span.size + 1)) - 1);
        Xml::XmlStringRefill::refill(text, units);
    }
}

void ElementAttributes::giveBack() {
    if (values_.size() > kMostKept)
        values_.resize(kMostKept);
    values_.shrink_to_fit();
    for (Value& value : values_)
        if (value.text.capacity() > kLongestKept)
            value.text.dissociate();
    hasMuchToGiveBack_ = false;
}

const XmlString* ElementAttributes::declaredType(const Slot& slot) const {
    if (!declaration_)
        return nullptr;
    const auto found = declaration_->attributeTypes.find(slot.name);
    return found == declaration_->attributeTypes.end() ? nullptr : &found->second;
}

const XmlString& ElementAttributes::listedType(const Slot& slot) const {
    const XmlString* declared = declaredType(slot);
    return declared ? *declared : words_.undeclaredType();
}

unsigned int ElementAttributes::length() const noexcept {
    return static_cast<unsigned int>(slots_.size());
}

void ElementAttributes::read(unsigned int index, Entry& entry) const noexcept {
    const Slot& slot = slots_[index];
    entry.uri = Xml::unitsOf(*slot.uri);
    entry.localName = Xml::unitsOf(*slot.localName);
    entry.qName = Xml::unitsOf(slot.name->text);
    entry.value = Xml::Units(slot.value, UnitSpan(slot.value).size);
}

Xml::Units ElementAttributes::type(unsigned int index) const noexcept {
    return Xml::unitsOf(listedType(slots_[index]));
}

const XmlString* ElementAttributes::string(unsigned int index, Field field) const {
    if (index >= slots_.size())
        return nullptr;
    const Slot& slot = slots_[index];
    switch (field) {
    case Field::Uri:
        return slot.uri;
    case Field::LocalName:
        return slot.localName;
    case Field::QName:
        return &slot.name->text;
    case Field::Type:
        return &listedType(slot);
    case Field::Value:
        break;
    }
    return &value(index);
}

bool ElementAttributes::isDeclared(unsigned int index) const {
    return declaredType(slots_[index]);
}

bool ElementAttributes::isSpecified(unsigned int index) const {
    return slots_[index].isSpecified;
}

} // namespace Quillon::SaxEngine
