#ifndef ZUTARNEX_XML_SAX_DEFAULTHANDLER2_H
#define ZUTARNEX_XML_SAX_DEFAULTHANDLER2_H

#include "xml/sax/DeclHandler.h"
#include "xml/sax/DefaultHandler.h"
#include "xml/sax/EntityResolver2.h"
#include "xml/sax/LexicalHandler.h"

namespace Quillon::Xml::Sax {

/// A DefaultHandler that also ignores lexical and declaration events and supplies no external subset.
///
/// It holds two EntityResolver parts: convert to `DefaultHandler*` or `EntityResolver2*` first.
///
/// Layout: the four bases in this order, no data; DefaultHandler's slots, then the new ones in the order of
///         declaration (tests/abi/SaxAbiTest.cpp).
class ZUTARNEX_API DefaultHandler2 : public DefaultHandler,
                                     public LexicalHandler,
                                     public DeclHandler,
                                     public EntityResolver2 {
public:
    DefaultHandler2();
    ~DefaultHandler2() override;

    void startCDATA() override;
    void endCDATA() override;
    void startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) override;
    void endDTD() override;
    void startEntity(const XmlString& name) override;
    void endEntity(const XmlString& name) override;
    void comment(const unsigned short* ch, unsigned int start, unsigned int length) override;

    void attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                       const XmlString& mode, const XmlString& value) override;
    void elementDecl(const XmlString& name, const XmlString& model) override;
    void externalEntityDecl(const XmlString& name, const XmlString& publicId,
                            const XmlString& systemId) override;
    void internalEntityDecl(const XmlString& name, const XmlString& value) override;

    InputSource* getExternalSubset(const XmlString& name,
                                   const XmlString& baseURI) override; ///< returns null
    InputSource* resolveEntity(const XmlString& name, const XmlString& publicId, const XmlString& baseURI,
                               const XmlString& systemId) override; ///< returns null
    /// Asks the operation of four arguments, an override in a subclass included, with a null name and base.
    InputSource* resolveEntity(const XmlString& publicId, const XmlString& systemId) override;
};

} // namespace Quillon::Xml::Sax

#endif
