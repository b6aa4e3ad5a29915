#ifndef ZUTARNEX_XML_SAX_ATTRIBUTES2_H
#define ZUTARNEX_XML_SAX_ATTRIBUTES2_H

#include "xml/sax/Attributes.h"

namespace Quillon::Xml::Sax {

/// Attributes that also know whether the DTD declares them and whether the document, not a default, gave their value.
///
/// Layout: the virtual base Attributes, no data; the slots below follow those of the base (tests/abi/SaxAbiTest.cpp).
/// Throws: ArrayIndexOutOfBoundsException for a bad index, IllegalArgumentException for a name that is not there.
class ZUTARNEX_API Attributes2 : public virtual Attributes {
public:
    ~Attributes2() override;

    virtual bool isDeclared(unsigned int index) const = 0;
    virtual bool isDeclared(const XmlString& qName) const = 0;
    virtual bool isDeclared(const XmlString& uri, const XmlString& localName) const = 0;
    virtual bool isSpecified(unsigned int index) const = 0;
    virtual bool isSpecified(const XmlString& qName) const = 0;
    virtual bool isSpecified(const XmlString& uri, const XmlString& localName) const = 0;
};

} // namespace Quillon::Xml::Sax

#endif
