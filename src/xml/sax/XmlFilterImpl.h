#ifndef ZUTARNEX_XML_SAX_XMLFILTERIMPL_H
#define ZUTARNEX_XML_SAX_XMLFILTERIMPL_H

#include "xml/sax/ContentHandler.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/EntityResolver.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/XmlFilter.h"

namespace Quillon::Xml::Sax {

/// The base of filters: requests go down to the parent, events come up to the registered handlers, both unchanged. A
/// filter overrides the events that it wants to change and hands the result to the operation of this class.
///
///     application -- parse, features, properties --> filter --> parent
///     handlers   <-- events ------------------------ filter <-- parent
///
/// Lexical and declaration events do not pass through: the parent delivers them straight to the handlers that are set
/// as its properties.
///
/// Layout:    XmlFilter, EntityResolver, DTDHandler, ContentHandler, ErrorHandler; parent, locator, entityResolver,
///            dtdHandler, contentHandler, errorHandler (tests/abi/SaxAbiTest.cpp).
/// Ownership: nothing is taken: parent and handlers must stay alive until the parse is over.
/// Throws:    SaxNotRecognizedException from the feature and property operations of a filter without a parent, with
///            the message "Feature: " or "Property: " and the name; NullPointerException from `parse` without a parent;
///            whatever the parent or a handler throws, unchanged.
class ZUTARNEX_API XmlFilterImpl : public XmlFilter,
                                   public EntityResolver,
                                   public DTDHandler,
                                   public ContentHandler,
                                   public ErrorHandler {
public:
    XmlFilterImpl() noexcept;
    XmlFilterImpl(XmlReader* parent) noexcept;
    ~XmlFilterImpl() override;

    void setFeature(const XmlString& name, bool value) override;
    bool getFeature(const XmlString& name) const override;
    void setProperty(const XmlString& name, void* value) override;
    void* getProperty(const XmlString& name) const override;

    /// The filter's own handlers; the parent's become the filter itself at each parse.
    void setEntityResolver(EntityResolver* resolver) override;
    EntityResolver* getEntityResolver() const override;
    void setDTDHandler(DTDHandler* handler) override;
    DTDHandler* getDTDHandler() const override;
    void setContentHandler(ContentHandler* handler) override;
    ContentHandler* getContentHandler() const override;
    void setErrorHandler(ErrorHandler* handler) override;
    ErrorHandler* getErrorHandler() const override;

    void parse(InputSource& source) override;
    /// Calls the other `parse`, an override in a subclass included.
    void parse(const XmlString& systemId) override;

    void setParent(XmlReader* parent) override;
    XmlReader* getParent() const override;

    InputSource* resolveEntity(const XmlString& publicId, const XmlString& systemId) override;

    void notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) override;
    void unparsedEntityDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId,
                            const XmlString& notationName) override;

    void setDocumentLocator(Locator* locator) override;
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

    /// Deliberate: without an error handler nothing happens, so that a fatal error does not stop the parse here
    /// (tests/xml/sax/XmlFilterImplTest.cpp, FatalErrorWithoutHandlerIsDropped).
    void warning(const SaxParseException& exception) override;
    void error(const SaxParseException& exception) override;
    void fatalError(const SaxParseException& exception) override;

protected:
    /// Makes the filter all four handlers of its parent. Throws: NullPointerException without a parent.
    void setupParse();

    /// The locator that came last: valid during the parse that supplied it, null before the first.
    Locator* getDocumentLocator() const noexcept;

private:
    XmlReader* parent_ = nullptr;
    Locator* locator_ = nullptr;
    EntityResolver* entityResolver_ = nullptr;
    DTDHandler* dtdHandler_ = nullptr;
    ContentHandler* contentHandler_ = nullptr;
    ErrorHandler* errorHandler_ = nullptr;
};

} // namespace Quillon::Xml::Sax

#endif
