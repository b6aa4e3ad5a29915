#ifndef ZUTARNEX_XML_SAX_DEFAULTHANDLER_H
#define ZUTARNEX_XML_SAX_DEFAULTHANDLER_H

#include "xml/sax/ContentHandler.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/EntityResolver.h"
#include "xml/sax/ErrorHandler.h"

namespace Quillon::Xml::Sax {

/// The base of an application's handler: every operation is there, and all but `fatalError` do nothing.
///
/// Layout: the four bases in this order, no data; own slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
class ZUTARNEX_API DefaultHandler : public EntityResolver,
                                    public DTDHandler,
                                    public ContentHandler,
                                    public ErrorHandler {
public:
    DefaultHandler();
    ~DefaultHandler() override;

    /// Returns null: the caller resolves the entity in its default way.
    InputSource* resolveEntity(const XmlString& publicId, const XmlString& systemId) override;

    void notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) override;
    void unparsedEntityDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId,
                            const XmlString& notationName) override;

    void setDocumentLocator(Locator* locator) override; ///< the locator is not stored
    void startDocument() override;
    void endDocument() override;
    void startPrefixMapping(const XmlString& prefix, const XmlString& uri) override;
    void endPrefixMapping(const XmlString& prefix) override;
    void startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const Attributes& attributes) override;
    void endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) override;
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void processingInstruction(const XmlString& target, const XmlString& data) override;
    void skippedEntity(const XmlString& name) override;

    void warning(const SaxParseException& exception) override; ///< ignored: the parse goes on
    void error(const SaxParseException& exception) override;   ///< ignored: the parse goes on
    /// Throws: a SaxParseException copied from `exception`.
    void fatalError(const SaxParseException& exception) override;
};

} // namespace Quillon::Xml::Sax

#endif
