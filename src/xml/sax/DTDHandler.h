#ifndef ZUTARNEX_XML_SAX_DTDHANDLER_H
#define ZUTARNEX_XML_SAX_DTDHANDLER_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// Receives the declarations of a DTD that an application needs in order to understand attribute values: notations
/// and unparsed entities. They come between startDocument and the first startElement.
///
/// Layout: no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Throws: an implementation may throw SaxException or a kind of Quillon::Xml to stop the parse.
class ZUTARNEX_API DTDHandler {
public:
    virtual ~DTDHandler();

    /// A missing identifier is a null or empty string.
    virtual void notationDecl(const XmlString& name, const XmlString& publicId,
                              const XmlString& systemId) = 0;
    virtual void unparsedEntityDecl(const XmlString& name, const XmlString& publicId,
                                    const XmlString& systemId, const XmlString& notationName) = 0;
};

} // namespace Quillon::Xml::Sax

#endif
