#include "xml/sax/XmlFilterImpl.h"

#include "xml/NullPointerException.h"
#include "xml/Utf16LiteralInternal.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/SaxNotRecognizedException.h"

namespace Quillon::Xml::Sax {

namespace {

constexpr Utf16Literal kFeature(u"Feature: ");
constexpr Utf16Literal kProperty(u"Property: ");
constexpr Utf16Literal kNoParent(u"XmlFilterImpl::setupParse(): No Parent for filter");

[[noreturn]] void throwNotRecognized(const unsigned short* kind, const XmlString& name) {
    XmlString message(0, kind);
    if (!name.isNull() && name.size() != 0) // appending an empty string would leave the message invalid
        message += XmlString(0, name.data(), name.size());
    throw SaxNotRecognizedException(message);
}

} // namespace

XmlFilterImpl::XmlFilterImpl() noexcept = default;
XmlFilterImpl::XmlFilterImpl(XmlReader* parent) noexcept : parent_(parent) {}
XmlFilterImpl::~XmlFilterImpl() = default;

void XmlFilterImpl::setFeature(const XmlString& name, bool value) {
    if (parent_ == nullptr)
        throwNotRecognized(kFeature.units, name);
    parent_->setFeature(name, value);
}

bool XmlFilterImpl::getFeature(const XmlString& name) const {
    if (parent_ == nullptr)
        throwNotRecognized(kFeature.units, name);
    return parent_->getFeature(name);
}

void XmlFilterImpl::setProperty(const XmlString& name, void* value) {
    if (parent_ == nullptr)
        throwNotRecognized(kProperty.units, name);
    parent_->setProperty(name, value);
}

void* XmlFilterImpl::getProperty(const XmlString& name) const {
    if (parent_ == nullptr)
        throwNotRecognized(kProperty.units, name);
    return parent_->getProperty(name);
}

void XmlFilterImpl::setEntityResolver(EntityResolver* resolver) {
    entityResolver_ = resolver;
}

EntityResolver* XmlFilterImpl::getEntityResolver() const {
    return entityResolver_;
}

void XmlFilterImpl::setDTDHandler(DTDHandler* handler) {
    dtdHandler_ = handler;
}

DTDHandler* XmlFilterImpl::getDTDHandler() const {
    return dtdHandler_;
}

void XmlFilterImpl::setContentHandler(ContentHandler* handler) {
    contentHandler_ = handler;
}

ContentHandler* XmlFilterImpl::getContentHandler() const {
    return contentHandler_;
}

void XmlFilterImpl::setErrorHandler(ErrorHandler* handler) {
    errorHandler_ = handler;
}

ErrorHandler* XmlFilterImpl::getErrorHandler() const {
    return errorHandler_;
}

void XmlFilterImpl::parse(InputSource& source) {
    setupParse();
    parent_->parse(source);
}

void XmlFilterImpl::parse(const XmlString& systemId) {
    InputSource source(systemId);
    parse(source);
}

void XmlFilterImpl::setParent(XmlReader* parent) {
    parent_ = parent;
}

XmlReader* XmlFilterImpl::getParent() const {
    return parent_;
}

void XmlFilterImpl::setupParse() {
    if (parent_ == nullptr)
        NullPointerException::doThrow(XmlString(Immutable | Borrowed, kNoParent.units));
    parent_->setEntityResolver(this);
    parent_->setDTDHandler(this);
    parent_->setContentHandler(this);
    parent_->setErrorHandler(this);
}

Locator* XmlFilterImpl::getDocumentLocator() const noexcept {
    return locator_;
}

InputSource* XmlFilterImpl::resolveEntity(const XmlString& publicId, const XmlString& systemId) {
    return entityResolver_ != nullptr ? entityResolver_->resolveEntity(publicId, systemId) : nullptr;
}

void XmlFilterImpl::notationDecl(const XmlString& name, const XmlString& publicId,
                                 const XmlString& systemId) {
    if (dtdHandler_ != nullptr)
        dtdHandler_->notationDecl(name, publicId, systemId);
}

void XmlFilterImpl::unparsedEntityDecl(const XmlString& name, const XmlString& publicId,
                                       const XmlString& systemId, const XmlString& notationName) {
    if (dtdHandler_ != nullptr)
        dtdHandler_->unparsedEntityDecl(name, publicId, systemId, notationName);
}

void XmlFilterImpl::setDocumentLocator(Locator* locator) {
    locator_ = locator;
    if (contentHandler_ != nullptr)
        contentHandler_->setDocumentLocator(locator);
}

void XmlFilterImpl::startDocument() {
    if (contentHandler_ != nullptr)
        contentHandler_->startDocument();
}

void XmlFilterImpl::endDocument() {
    if (contentHandler_ != nullptr)
        contentHandler_->endDocument();
}

void XmlFilterImpl::startPrefixMapping(const XmlString& prefix, const XmlString& uri) {
    if (contentHandler_ != nullptr)
        contentHandler_->startPrefixMapping(prefix, uri);
}

void XmlFilterImpl::endPrefixMapping(const XmlString& prefix) {
    if (contentHandler_ != nullptr)
        contentHandler_->endPrefixMapping(prefix);
}

void XmlFilterImpl::startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                                 const Attributes& attributes) {
    if (contentHandler_ != nullptr)
        contentHandler_->startElement(uri, localName, qName, attributes);
}

void XmlFilterImpl::endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) {
    if (contentHandler_ != nullptr)
        contentHandler_->endElement(uri, localName, qName);
}

void XmlFilterImpl::characters(const unsigned short* ch, unsigned int start, unsigned int length) {
    if (contentHandler_ != nullptr)
        contentHandler_->characters(ch, start, length);
}

void XmlFilterImpl::ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) {
    if (contentHandler_ != nullptr)
        contentHandler_->ignorableWhitespace(ch, start, length);
}

void XmlFilterImpl::processingInstruction(const XmlString& target, const XmlString& data) {
    if (contentHandler_ != nullptr)
        contentHandler_->processingInstruction(target, data);
}

void XmlFilterImpl::skippedEntity(const XmlString& name) {
    if (contentHandler_ != nullptr)
        contentHandler_->skippedEntity(name);
}

void XmlFilterImpl::warning(const SaxParseException& exception) {
    if (errorHandler_ != nullptr)
        errorHandler_->warning(exception);
}

void XmlFilterImpl::error(const SaxParseException& exception) {
    if (errorHandler_ != nullptr)
        errorHandler_->error(exception);
}

void XmlFilterImpl::fatalError(const SaxParseException& exception) {
    if (errorHandler_ != nullptr)
        errorHandler_->fatalError(exception);
}

} // namespace Quillon::Xml::Sax
