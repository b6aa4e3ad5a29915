#include "ElementAttributes.h"

#include "Text.h"
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/IllegalArgumentException.h"
#include "xml/Utf16LiteralInternal.h"
#include "xml/XmlStringRefillInternal.h"

#include <algorithm>
#include <bit>

namespace Quillon::SaxEngine {

using Xml::XmlString;

namespace {

// The texts of Attributes2Impl, whose place this list takes.
constexpr Xml::Utf16Literal kBadIndex(u"no attribute at index");
constexpr Xml::Utf16Literal kQNameNotDeclared(u"qName is not in Attribute declared list");
constexpr Xml::Utf16Literal kNameNotDeclared(u"uri-localName is not in Attribute declared list");
constexpr Xml::Utf16Literal kQNameNotSpecified(u"qName is not in Attribute specified list");
constexpr Xml::Utf16Literal kNameNotSpecified(u"uri-localName is not in Attribute specified list");

/// Longer values give their block back with the element, and so do those of further attributes.
constexpr std::size_t kLongestKept = 255, kMostKept = 256;
constexpr XML_Char kRoom[kLongestKept] = {};

unsigned int foundOr(int index, const XML_Char* whatIsMissing) {
    if (index < 0)
        Xml::IllegalArgumentException::doThrow(Xml::makeString(whatIsMissing));
    return static_cast<unsigned int>(index);
}

} // namespace

ElementAttributes::ElementAttributes(const Vocabulary& words) : words_(words) {}
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

const ElementAttributes::Slot& ElementAttributes::checked(unsigned int index) const {
    if (index >= slots_.size())
        Xml::ArrayIndexOutOfBoundsException::doThrow(Xml::makeString(kBadIndex.units), index);
    return slots_[index];
}

unsigned int ElementAttributes::getLength() const {
    return static_cast<unsigned int>(slots_.size());
}

XmlString ElementAttributes::getURI(unsigned int index) const {
    return index < slots_.size() ? *slots_[index].uri : XmlString();
}

XmlString ElementAttributes::getLocalName(unsigned int index) const {
    return index < slots_.size() ? *slots_[index].localName : XmlString();
}

XmlString ElementAttributes::getQName(unsigned int index) const {
    return index < slots_.size() ? slots_[index].name->text : XmlString();
}

XmlString ElementAttributes::getType(unsigned int index) const {
    if (index >= slots_.size())
        return XmlString();
    const XmlString* declared = declaredType(slots_[index]);
    return declared ? *declared : words_.undeclaredType();
}

XmlString ElementAttributes::getValue(unsigned int index) const {
    if (index >= slots_.size())
        return XmlString();
    return value(index);
}

int ElementAttributes::getIndex(const XmlString& uri, const XmlString& localName) const {
    for (std::size_t i = 0; i < slots_.size(); ++i)
        if (slots_[i].localName->compare(localName) == 0 && slots_[i].uri->compare(uri) == 0)
            return static_cast<int>(i);
    return -1;
}

int ElementAttributes::getIndex(const XmlString& qName) const {
    for (std::size_t i = 0; i < slots_.size(); ++i)
        if (slots_[i].name->text.compare(qName) == 0)
            return static_cast<int>(i);
    return -1;
}

// An index of -1 is beyond every end, which gives a null string.
XmlString ElementAttributes::getType(const XmlString& uri, const XmlString& localName) const {
    return getType(static_cast<unsigned int>(getIndex(uri, localName)));
}
XmlString ElementAttributes::getType(const XmlString& qName) const {
    return getType(static_cast<unsigned int>(getIndex(qName)));
}
XmlString ElementAttributes::getValue(const XmlString& uri, const XmlString& localName) const {
    return getValue(static_cast<unsigned int>(getIndex(uri, localName)));
}
XmlString ElementAttributes::getValue(const XmlString& qName) const {
    return getValue(static_cast<unsigned int>(getIndex(qName)));
}

bool ElementAttributes::isDeclared(unsigned int index) const {
    return declaredType(checked(index));
}
bool ElementAttributes::isDeclared(const XmlString& qName) const {
    return isDeclared(foundOr(getIndex(qName), kQNameNotDeclared.units));
}
bool ElementAttributes::isDeclared(const XmlString& uri, const XmlString& localName) const {
    return isDeclared(foundOr(getIndex(uri, localName), kNameNotDeclared.units));
}
bool ElementAttributes::isSpecified(unsigned int index) const {
    return checked(index).isSpecified;
}
bool ElementAttributes::isSpecified(const XmlString& qName) const {
    return isSpecified(foundOr(getIndex(qName), kQNameNotSpecified.units));
}
bool ElementAttributes::isSpecified(const XmlString& uri, const XmlString& localName) const {
    return isSpecified(foundOr(getIndex(uri, localName), kNameNotSpecified.units));
}

} // namespace Quillon::SaxEngine
