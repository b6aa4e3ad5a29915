#ifndef ZUTARNEX_TESTS_CONFORMANCE_CANONICALFORM_H
#define ZUTARNEX_TESTS_CONFORMANCE_CANONICALFORM_H

#include "xml/sax/DefaultHandler2.h"

#include <map>
#include <string>

namespace Quillon::Testing {

/// Writes a document in the "Second Canonical Form" of the W3C's test suite: UTF-8, attributes in the order of their
/// names, comments left out, and a DOCTYPE, where the declaration ends, only if notations are declared. Needs a reader
/// with `namespace-prefixes` on and `resolve-dtd-uris` off, registered as content, DTD and lexical handler.
class CanonicalForm : public Xml::Sax::DefaultHandler2 {
public:
    ~CanonicalForm() override;

    const std::string& text() const { return text_; }

    void startElement(const Xml::XmlString& uri, const Xml::XmlString& localName, const Xml::XmlString& qName,
                      const Xml::Sax::Attributes& attributes) override;
    void endElement(const Xml::XmlString& uri, const Xml::XmlString& localName,
                    const Xml::XmlString& qName) override;
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void processingInstruction(const Xml::XmlString& target, const Xml::XmlString& data) override;
    void notationDecl(const Xml::XmlString& name, const Xml::XmlString& publicId,
                      const Xml::XmlString& systemId) override;
    void startDTD(const Xml::XmlString& name, const Xml::XmlString& publicId,
                  const Xml::XmlString& systemId) override;
    void endDTD() override;

private:
    void appendEscaped(const std::string& utf8);

    std::string text_;
    std::string doctype_;
    std::map<std::string, std::string> notations_;
};

} // namespace Quillon::Testing

#endif
