#include "xml/sax/DefaultHandler.h"

#include "xml/sax/SaxParseException.h"

namespace Quillon::Xml::Sax {

DefaultHandler::DefaultHandler() = default;
DefaultHandler::~DefaultHandler() = default;

InputSource* DefaultHandler::resolveEntity(const XmlString&, const XmlString&) {
    return nullptr;
}

void DefaultHandler::notationDecl(const XmlString&, const XmlString&, const XmlString&) {}
void DefaultHandler::unparsedEntityDecl(const XmlString&, const XmlString&, const XmlString&,
                                        const XmlString&) {}

void DefaultHandler::setDocumentLocator(Locator*) {}
void DefaultHandler::startDocument() {}
void DefaultHandler::endDocument() {}
void DefaultHandler::startPrefixMapping(const XmlString&, const XmlString&) {}
void DefaultHandler::endPrefixMapping(const XmlString&) {}
void DefaultHandler::startElement(const XmlString&, const XmlString&, const XmlString&, const Attributes&) {}
void DefaultHandler::endElement(const XmlString&, const XmlString&, const XmlString&) {}
void DefaultHandler::characters(const unsigned short*, unsigned int, unsigned int) {}
void DefaultHandler::ignorableWhitespace(const unsigned short*, unsigned int, unsigned int) {}
void DefaultHandler::processingInstruction(const XmlString&, const XmlString&) {}
void DefaultHandler::skippedEntity(const XmlString&) {}

void DefaultHandler::warning(const SaxParseException&) {}
void DefaultHandler::error(const SaxParseException&) {}

void DefaultHandler::fatalError(const SaxParseException& exception) {
    throw SaxParseException(exception);
}

} // namespace Quillon::Xml::Sax
