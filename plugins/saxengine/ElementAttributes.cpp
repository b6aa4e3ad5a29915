#include "ElementAttributes.h"

#include "Text.h"
#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/IllegalArgumentException.h"
#include "xml/Utf16LiteralInternal.h"

namespace Quillon::SaxEngine {

using Xml::XmlString;

namespace {

// The texts of Attributes2Impl, whose place this list takes.
constexpr Xml::Utf16Literal kBadIndex(u"no attribute at index");
constexpr Xml::Utf16Literal kQNameNotDeclared(u"qName is not in Attribute declared list");
constexpr Xml::Utf16Literal kNameNotDeclared(u"uri-localName is not in Attribute declared list");
constexpr Xml::Utf16Literal kQNameNotSpecified(u"qName is not in Attribute specified list");
constexpr Xml::Utf16Literal kNameNotSpecified(u"uri-localName is not in Attribute specified list");

unsigned int foundOr(int index, const XML_Char* whatIsMissing) {
    if (index < 0)
        Xml::IllegalArgumentException::doThrow(Xml::makeString(whatIsMissing));
    return static_cast<unsigned int>(index);
}

} // namespace

ElementAttributes::ElementAttributes(const Vocabulary& words) : words_(words) {}
ElementAttributes::~ElementAttributes() = default;

void ElementAttributes::begin(const ElementDeclaration* declaration) {
    slots_.clear();
    declaration_ = declaration;
}

ElementAttributes::Slot& ElementAttributes::add(const Name& name, const XML_Char* value, bool isSpecified) {
    slots_.push_back({&name, &words_.empty, &words_.empty, value, isSpecified, XmlString()});
    return slots_.back();
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
    const Slot& slot = slots_[index];
    if (slot.text.isNull())
        slot.text = ownedString(slot.value);
    return slot.text;
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
