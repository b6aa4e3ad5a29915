#ifndef ZUTARNEX_XML_SAX_EVENTFILTER_H
#define ZUTARNEX_XML_SAX_EVENTFILTER_H

#include "xml/sax/ContentHandler.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/DeclHandler.h"
#include "xml/sax/EventConsumer.h"
#include "xml/sax/EventProducer.h"
#include "xml/sax/LexicalHandler.h"

namespace Quillon::Xml::Sax {

class XmlFilterImpl;
class XmlReader;

/// A stage between a reader and a consumer that passes every content, DTD, lexical and declaration event on unchanged;
/// a subclass overrides the events that it wants to change.
///
/// For each kind of event there are two pointers: the handler that the filter hands out, and the target to which it
/// forwards. Both start as the consumer's. A filter that wants to see the events of a reader that is bound to it hands
/// out itself:
///
///     filter.setContentHandler(&filter);
///     filter.setProperty(SC_Properties_LexicalHandler(), static_cast<LexicalHandler*>(&filter));
///     EventFilter::bind(&reader, &filter);
///
/// Layout:    EventProducer, EventConsumer, ContentHandler, DTDHandler, LexicalHandler, DeclHandler; contentHandler,
///            contentTarget, declHandler, declTarget, dtdHandler, dtdTarget, lexicalHandler, lexicalTarget,
///            errorHandler, documentLocator; own slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Ownership: nothing is taken: reader, filters, consumer and handlers must stay alive until the parse is over.
class ZUTARNEX_API EventFilter : public EventProducer,
                                 public EventConsumer,
                                 public ContentHandler,
                                 public DTDHandler,
                                 public LexicalHandler,
                                 public DeclHandler {
public:
    EventFilter() noexcept; ///< no consumer: every event is dropped
    /// Takes the handlers of `next`; null: as without. Throws: what `next` throws when asked for them.
    explicit EventFilter(EventConsumer* next);
    ~EventFilter() override;

    void setErrorHandler(ErrorHandler* handler) override; ///< kept, and passed on to the next stage
    ContentHandler* getContentHandler() const override;
    DTDHandler* getDTDHandler() const override;
    /// The handler that the filter hands out. Throws: SaxNotRecognizedException with the bare name as its message.
    void* getProperty(const XmlString& name) const override;

    void setDocumentLocator(Locator* locator) override; ///< kept, and forwarded
    void startDocument() override;
    void skippedEntity(const XmlString& name) override;
    void processingInstruction(const XmlString& target, const XmlString& data) override;
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void startPrefixMapping(const XmlString& prefix, const XmlString& uri) override;
    void startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const Attributes& attributes) override;
    void endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) override;
    void endPrefixMapping(const XmlString& prefix) override;
    void endDocument() override;

    void unparsedEntityDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId,
                            const XmlString& notationName) override;
    void notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) override;

    void startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) override;
    void endDTD() override;
    void comment(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void startCDATA() override;
    void endCDATA() override;
    void startEntity(const XmlString& name) override;
    void endEntity(const XmlString& name) override;

    void elementDecl(const XmlString& name, const XmlString& model) override;
    void attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                       const XmlString& mode, const XmlString& value) override;
    void externalEntityDecl(const XmlString& name, const XmlString& publicId,
                            const XmlString& systemId) override;
    void internalEntityDecl(const XmlString& name, const XmlString& value) override;

    /// These three change what the filter hands out, never where it forwards to.
    void setContentHandler(ContentHandler* handler) noexcept;
    void setDTDHandler(DTDHandler* handler) noexcept;
    /// `value`: a LexicalHandler* or DeclHandler*, converted to exactly that before it becomes `void*`. A value that is
    /// handed out already changes nothing. Throws: SaxNotRecognizedException from getProperty for an unknown name;
    /// SaxNotSupportedException for a name that only a subclass knows, and for null.
    ///
    /// Deliberate: null is stored before the exception is thrown (tests/xml/sax/EventFilterTest.cpp,
    /// NullHandlerIsStoredThenRefused).
    void setProperty(const XmlString& name, void* value);

    ErrorHandler* getErrorHandler() const noexcept;
    Locator* getDocumentLocator() const noexcept;

    /// Throws: NullPointerException when `filter` is null.
    ///
    /// Deliberate: with a filter it does nothing at all; wire filters with XmlFilterImpl::setParent
    /// (tests/xml/sax/EventFilterTest.cpp, ChainToIsInert).
    void chainTo(XmlFilterImpl* filter);

    /// Makes `consumer`'s handlers those of `reader`, which then reports `xmlns` attributes too, and gives the consumer
    /// the reader's error handler. A null `consumer` only takes the lexical and declaration handlers away.
    /// Throws: NullPointerException when `reader` is null; whatever the reader or the consumer throws.
    static void bind(XmlReader* reader, EventConsumer* consumer);

private:
    ContentHandler* contentHandler_ = nullptr;
    ContentHandler* contentTarget_ = nullptr;
    DeclHandler* declHandler_ = nullptr;
    DeclHandler* declTarget_ = nullptr;
    DTDHandler* dtdHandler_ = nullptr;
    DTDHandler* dtdTarget_ = nullptr;
    LexicalHandler* lexicalHandler_ = nullptr;
    LexicalHandler* lexicalTarget_ = nullptr;
    ErrorHandler* errorHandler_ = nullptr;
    Locator* documentLocator_ = nullptr;
};

} // namespace Quillon::Xml::Sax

#endif
