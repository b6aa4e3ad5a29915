#include "xml/sax/DefaultHandler2.h"

namespace Quillon::Xml::Sax {

DefaultHandler2::DefaultHandler2() = default;
DefaultHandler2::~DefaultHandler2() = default;

void DefaultHandler2::startCDATA() {}
void DefaultHandler2::endCDATA() {}
void DefaultHandler2::startDTD(const XmlString&, const XmlString&, const XmlString&) {}
void DefaultHandler2::endDTD() {}
void DefaultHandler2::startEntity(const XmlString&) {}
void DefaultHandler2::endEntity(const XmlString&) {}
void DefaultHandler2::comment(const unsigned short*, unsigned int, unsigned int) {}

void DefaultHandler2::attributeDecl(const XmlString&, const XmlString&, const XmlString&, const XmlString&,
                                    const XmlString&) {}
void DefaultHandler2::elementDecl(const XmlString&, const XmlString&) {}
void DefaultHandler2::externalEntityDecl(const XmlString&, const XmlString&, const XmlString&) {}
void DefaultHandler2::internalEntityDecl(const XmlString&, const XmlString&) {}

InputSource* DefaultHandler2::getExternalSubset(const XmlString&, const XmlString&) {
    return nullptr;
}

InputSource* DefaultHandler2::resolveEntity(const XmlString&, const XmlString&, const XmlString&,
                                            const XmlString&) {
    return nullptr;
}

InputSource* DefaultHandler2::resolveEntity(const XmlString& publicId, const XmlString& systemId) {
    const XmlString name = makeString(0, nullptr);
    const XmlString baseURI = makeString(0, nullptr);
    return resolveEntity(name, publicId, baseURI, systemId);
}

} // namespace Quillon::Xml::Sax
