#ifndef ZUTARNEX_XML_SAX_ATTRIBUTES_H
#define ZUTARNEX_XML_SAX_ATTRIBUTES_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// The attributes of an element, as startElement receives them: valid only during that call.
///
/// Layout: no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
class ZUTARNEX_API Attributes {
public:
    virtual ~Attributes();

    virtual unsigned int getLength() const = 0;

    /// By index, from 0. An index that is too large gives a null string.
    virtual XmlString getURI(unsigned int index) const = 0;
    virtual XmlString getLocalName(unsigned int index) const = 0;
    virtual XmlString getQName(unsigned int index) const = 0;
    virtual XmlString getType(unsigned int index) const = 0;
    virtual XmlString getValue(unsigned int index) const = 0;

    /// The lowest index of an attribute with this name, or -1.
    virtual int getIndex(const XmlString& uri, const XmlString& localName) const = 0;
    virtual int getIndex(const XmlString& qName) const = 0;

    /// By name. A name that is not there gives a null string.
    virtual XmlString getType(const XmlString& uri, const XmlString& localName) const = 0;
    virtual XmlString getType(const XmlString& qName) const = 0;
    virtual XmlString getValue(const XmlString& uri, const XmlString& localName) const = 0;
    virtual XmlString getValue(const XmlString& qName) const = 0;
};

} // namespace Quillon::Xml::Sax

#endif
