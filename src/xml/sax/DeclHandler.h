#ifndef ZUTARNEX_XML_SAX_DECLHANDLER_H
#define ZUTARNEX_XML_SAX_DECLHANDLER_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// Receives the declarations of a DTD that DTDHandler does not report. It is registered with a reader as the
/// property `declaration-handler`.
///
/// Layout: no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Throws: an implementation may throw SaxException or a kind of Quillon::Xml to stop the parse.
class ZUTARNEX_API DeclHandler {
public:
    virtual ~DeclHandler();

    /// `model` is the content model as text, such as `(a,b?)` or `EMPTY`.
    virtual void elementDecl(const XmlString& name, const XmlString& model) = 0;
    /// `mode` is `#IMPLIED`, `#REQUIRED`, `#FIXED` or null; `value` is the default or null.
    virtual void attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                               const XmlString& mode, const XmlString& value) = 0;
    /// A parameter entity's `name` starts with `%`.
    virtual void internalEntityDecl(const XmlString& name, const XmlString& value) = 0;
    virtual void externalEntityDecl(const XmlString& name, const XmlString& publicId,
                                    const XmlString& systemId) = 0;
};

} // namespace Quillon::Xml::Sax

#endif
