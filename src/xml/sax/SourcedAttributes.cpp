#include "xml/sax/SourcedAttributesInternal.h"

#include "xml/ArrayIndexOutOfBoundsException.h"
#include "xml/IllegalArgumentException.h"
#include "xml/Utf16LiteralInternal.h"

namespace Quillon::Xml::Sax {

namespace {

// The texts of Attributes2Impl.
constexpr Utf16Literal kBadIndex(u"no attribute at index");
constexpr Utf16Literal kQNameNotDeclared(u"qName is not in Attribute declared list");
constexpr Utf16Literal kNameNotDeclared(u"uri-localName is not in Attribute declared list");
constexpr Utf16Literal kQNameNotSpecified(u"qName is not in Attribute specified list");
constexpr Utf16Literal kNameNotSpecified(u"uri-localName is not in Attribute specified list");

unsigned int foundOr(int index, const unsigned short* whatIsMissing) {
    if (index < 0)
        IllegalArgumentException::doThrow(makeString(whatIsMissing));
    return static_cast<unsigned int>(index);
}

} // namespace

std::unique_ptr<Attributes2> attributesFrom(const AttributeSource& source) {
    return std::make_unique<SourcedAttributes>(source);
}

SourcedAttributes::~SourcedAttributes() = default;

void SourcedAttributes::check(unsigned int index) const {
    if (index >= source_.length())
        ArrayIndexOutOfBoundsException::doThrow(makeString(kBadIndex.units), index);
}

unsigned int SourcedAttributes::getLength() const {
    return source_.length();
}

XmlString SourcedAttributes::getURI(unsigned int index) const {
    return string(index, Field::Uri);
}
XmlString SourcedAttributes::getLocalName(unsigned int index) const {
    return string(index, Field::LocalName);
}
XmlString SourcedAttributes::getQName(unsigned int index) const {
    return string(index, Field::QName);
}
XmlString SourcedAttributes::getType(unsigned int index) const {
    return string(index, Field::Type);
}
XmlString SourcedAttributes::getValue(unsigned int index) const {
    return string(index, Field::Value);
}

int SourcedAttributes::getIndex(const XmlString& uri, const XmlString& localName) const {
    for (unsigned int i = 0; i < source_.length(); ++i)
        if (has(i, Field::LocalName, localName) && has(i, Field::Uri, uri))
            return static_cast<int>(i);
    return -1;
}

int SourcedAttributes::getIndex(const XmlString& qName) const {
    for (unsigned int i = 0; i < source_.length(); ++i)
        if (has(i, Field::QName, qName))
            return static_cast<int>(i);
    return -1;
}

// An index of -1 is beyond every end, which gives a null string.
XmlString SourcedAttributes::getType(const XmlString& uri, const XmlString& localName) const {
    return string(static_cast<unsigned int>(getIndex(uri, localName)), Field::Type);
}
XmlString SourcedAttributes::getType(const XmlString& qName) const {
    return string(static_cast<unsigned int>(getIndex(qName)), Field::Type);
}
XmlString SourcedAttributes::getValue(const XmlString& uri, const XmlString& localName) const {
    return string(static_cast<unsigned int>(getIndex(uri, localName)), Field::Value);
}
XmlString SourcedAttributes::getValue(const XmlString& qName) const {
    return string(static_cast<unsigned int>(getIndex(qName)), Field::Value);
}

bool SourcedAttributes::isDeclared(unsigned int index) const {
    check(index);
    return source_.isDeclared(index);
}
bool SourcedAttributes::isDeclared(const XmlString& qName) const {
    return isDeclared(foundOr(getIndex(qName), kQNameNotDeclared.units));
}
bool SourcedAttributes::isDeclared(const XmlString& uri, const XmlString& localName) const {
    return isDeclared(foundOr(getIndex(uri, localName), kNameNotDeclared.units));
}
bool SourcedAttributes::isSpecified(unsigned int index) const {
    check(index);
    return source_.isSpecified(index);
}
bool SourcedAttributes::isSpecified(const XmlString& qName) const {
    return isSpecified(foundOr(getIndex(qName), kQNameNotSpecified.units));
}
bool SourcedAttributes::isSpecified(const XmlString& uri, const XmlString& localName) const {
    return isSpecified(foundOr(getIndex(uri, localName), kNameNotSpecified.units));
}

} // namespace Quillon::Xml::Sax
