#include "xml/sax/EventFilter.h"

#include "xml/NullPointerException.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxNotRecognizedException.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/XmlReader.h"

namespace Quillon::Xml::Sax {

namespace {

bool isDeclarationHandler(const XmlString& name) {
    return name.compare(SC_Properties_DeclarationHandler()) == 0;
}

bool isLexicalHandler(const XmlString& name) {
    return name.compare(SC_Properties_LexicalHandler()) == 0;
}

void copyProperty(XmlReader& reader, const EventConsumer* consumer, const XmlString& name) {
    reader.setProperty(name, consumer != nullptr ? consumer->getProperty(name) : nullptr);
}

} // namespace

EventFilter::EventFilter() noexcept = default;

EventFilter::EventFilter(EventConsumer* next) : EventProducer(next) {
    if (next == nullptr)
        return;
    contentHandler_ = contentTarget_ = next->getContentHandler();
    dtdHandler_ = dtdTarget_ = next->getDTDHandler();
    declHandler_ = declTarget_ =
        static_cast<DeclHandler*>(next->getProperty(SC_Properties_DeclarationHandler()));
    lexicalHandler_ = lexicalTarget_ =
        static_cast<LexicalHandler*>(next->getProperty(SC_Properties_LexicalHandler()));
}

EventFilter::~EventFilter() = default;

void EventFilter::setErrorHandler(ErrorHandler* handler) {
    errorHandler_ = handler;
    if (EventConsumer* next = getNext())
        next->setErrorHandler(handler);
}

ContentHandler* EventFilter::getContentHandler() const {
    return contentHandler_;
}

DTDHandler* EventFilter::getDTDHandler() const {
    return dtdHandler_;
}

void* EventFilter::getProperty(const XmlString& name) const {
    if (isDeclarationHandler(name))
        return declHandler_;
    if (isLexicalHandler(name))
        return lexicalHandler_;
    throw SaxNotRecognizedException(name);
}

void EventFilter::setDocumentLocator(Locator* locator) {
    documentLocator_ = locator;
    if (contentTarget_ != nullptr)
        contentTarget_->setDocumentLocator(locator);
}

void EventFilter::startDocument() {
    if (contentTarget_ != nullptr)
        contentTarget_->startDocument();
}

void EventFilter::skippedEntity(const XmlString& name) {
    if (contentTarget_ != nullptr)
        contentTarget_->skippedEntity(name);
}

void EventFilter::processingInstruction(const XmlString& target, const XmlString& data) {
    if (contentTarget_ != nullptr)
        contentTarget_->processingInstruction(target, data);
}

void EventFilter::characters(const unsigned short* ch, unsigned int start, unsigned int length) {
    if (contentTarget_ != nullptr)
        contentTarget_->characters(ch, start, length);
}

void EventFilter::ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) {
    if (contentTarget_ != nullptr)
        contentTarget_->ignorableWhitespace(ch, start, length);
}

void EventFilter::startPrefixMapping(const XmlString& prefix, const XmlString& uri) {
    if (contentTarget_ != nullptr)
        contentTarget_->startPrefixMapping(prefix, uri);
}

void EventFilter::startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                               const Attributes& attributes) {
    if (contentTarget_ != nullptr)
        contentTarget_->startElement(uri, localName, qName, attributes);
}

void EventFilter::endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) {
    if (contentTarget_ != nullptr)
        contentTarget_->endElement(uri, localName, qName);
}

void EventFilter::endPrefixMapping(const XmlString& prefix) {
    if (contentTarget_ != nullptr)
        contentTarget_->endPrefixMapping(prefix);
}

void EventFilter::endDocument() {
    if (contentTarget_ != nullptr)
        contentTarget_->endDocument();
}

void EventFilter::unparsedEntityDecl(const XmlString& name, const XmlString& publicId,
                                     const XmlString& systemId, const XmlString& notationName) {
    if (dtdTarget_ != nullptr)
        dtdTarget_->unparsedEntityDecl(name, publicId, systemId, notationName);
}

void EventFilter::notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    if (dtdTarget_ != nullptr)
        dtdTarget_->notationDecl(name, publicId, systemId);
}

void EventFilter::startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    if (lexicalTarget_ != nullptr)
        lexicalTarget_->startDTD(name, publicId, systemId);
}

void EventFilter::endDTD() {
    if (lexicalTarget_ != nullptr)
        lexicalTarget_->endDTD();
}

void EventFilter::comment(const unsigned short* ch, unsigned int start, unsigned int length) {
    if (lexicalTarget_ != nullptr)
        lexicalTarget_->comment(ch, start, length);
}

void EventFilter::startCDATA() {
    if (lexicalTarget_ != nullptr)
        lexicalTarget_->startCDATA();
}

void EventFilter::endCDATA() {
    if (lexicalTarget_ != nullptr)
        lexicalTarget_->endCDATA();
}

void EventFilter::startEntity(const XmlString& name) {
    if (lexicalTarget_ != nullptr)
        lexicalTarget_->startEntity(name);
}

void EventFilter::endEntity(const XmlString& name) {
    if (lexicalTarget_ != nullptr)
        lexicalTarget_->endEntity(name);
}

void EventFilter::elementDecl(const XmlString& name, const XmlString& model) {
    if (declTarget_ != nullptr)
        declTarget_->elementDecl(name, model);
}

void EventFilter::attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                                const XmlString& mode, const XmlString& value) {
    if (declTarget_ != nullptr)
        declTarget_->attributeDecl(eName, aName, type, mode, value);
}

void EventFilter::externalEntityDecl(const XmlString& name, const XmlString& publicId,
                                     const XmlString& systemId) {
    if (declTarget_ != nullptr)
        declTarget_->externalEntityDecl(name, publicId, systemId);
}

void EventFilter::internalEntityDecl(const XmlString& name, const XmlString& value) {
    if (declTarget_ != nullptr)
        declTarget_->internalEntityDecl(name, value);
}

void EventFilter::setContentHandler(ContentHandler* handler) noexcept {
    contentHandler_ = handler;
}

void EventFilter::setDTDHandler(DTDHandler* handler) noexcept {
    dtdHandler_ = handler;
}

void EventFilter::setProperty(const XmlString& name, void* value) {
    if (getProperty(name) == value)
        return;
    if (isDeclarationHandler(name))
        declHandler_ = static_cast<DeclHandler*>(value);
    else if (isLexicalHandler(name))
        lexicalHandler_ = static_cast<LexicalHandler*>(value);
    else
        throw SaxNotSupportedException(name);
    if (value == nullptr)
        throw SaxNotSupportedException(name);
}

ErrorHandler* EventFilter::getErrorHandler() const noexcept {
    return errorHandler_;
}

Locator* EventFilter::getDocumentLocator() const noexcept {
    return documentLocator_;
}

void EventFilter::chainTo(XmlFilterImpl* filter) {
    if (filter == nullptr)
        NullPointerException::doThrow();
}

void EventFilter::bind(XmlReader* reader, EventConsumer* consumer) {
    if (reader == nullptr)
        NullPointerException::doThrow();
    reader->setFeature(SC_Features_NamespacePrefixes(), true);
    if (consumer != nullptr) {
        if (ContentHandler* handler = consumer->getContentHandler())
            reader->setContentHandler(handler);
        if (DTDHandler* handler = consumer->getDTDHandler())
            reader->setDTDHandler(handler);
    }
    copyProperty(*reader, consumer, SC_Properties_DeclarationHandler());
    copyProperty(*reader, consumer, SC_Properties_LexicalHandler());
    if (consumer != nullptr)
        consumer->setErrorHandler(reader->getErrorHandler());
}

} // namespace Quillon::Xml::Sax
