#ifndef ZUTARNEX_TOOLS_EVENTPRINTER_H
#define ZUTARNEX_TOOLS_EVENTPRINTER_H

#include "xml/XmlString.h"
#include "xml/sax/DefaultHandler2.h"

#include <ostream>

namespace Quillon::Tool {

class OutputFile;

/// Prints each SAX event as one line: its name, then its arguments, strings in quotation marks, null strings as
/// `null`; an attribute in braces, with its type and what is known of its declaration.
///
///     startElement "urn:a" "b" "a:b" {"" "id" "id" ID "x1" declared specified}
///     characters "text\n"
///
/// Adjacent `characters` (and `ignorableWhitespace`) events make one line, so that the output does not depend on how
/// a reader cuts its input. In strings, `"` and `\` stand behind a `\`; controls are \n, \t, \r or \uXXXX, and so are
/// lone surrogates.
class EventPrinter : public Xml::Sax::DefaultHandler2 {
public:
    explicit EventPrinter(OutputFile& out);

    /// Ends the line that a parse which stopped inside a text has left open.
    void finish() { endText(); }

    void startDocument() override;
    void endDocument() override;
    void startPrefixMapping(const Xml::XmlString& prefix, const Xml::XmlString& uri) override;
    void endPrefixMapping(const Xml::XmlString& prefix) override;
    void startElement(const Xml::XmlString& uri, const Xml::XmlString& localName, const Xml::XmlString& qName,
                      const Xml::Sax::Attributes& attributes) override;
    void endElement(const Xml::XmlString& uri, const Xml::XmlString& localName,
                    const Xml::XmlString& qName) override;
    void characters(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) override;
    void processingInstruction(const Xml::XmlString& target, const Xml::XmlString& data) override;
    void skippedEntity(const Xml::XmlString& name) override;

    void notationDecl(const Xml::XmlString& name, const Xml::XmlString& publicId,
                      const Xml::XmlString& systemId) override;
    void unparsedEntityDecl(const Xml::XmlString& name, const Xml::XmlString& publicId,
                            const Xml::XmlString& systemId, const Xml::XmlString& notationName) override;

    void startDTD(const Xml::XmlString& name, const Xml::XmlString& publicId,
                  const Xml::XmlString& systemId) override;
    void endDTD() override;
    void startEntity(const Xml::XmlString& name) override;
    void endEntity(const Xml::XmlString& name) override;
    void startCDATA() override;
    void endCDATA() override;
    void comment(const unsigned short* ch, unsigned int start, unsigned int length) override;

    void elementDecl(const Xml::XmlString& name, const Xml::XmlString& model) override;
    void attributeDecl(const Xml::XmlString& elementName, const Xml::XmlString& attributeName,
                       const Xml::XmlString& type, const Xml::XmlString& mode,
                       const Xml::XmlString& value) override;
    void internalEntityDecl(const Xml::XmlString& name, const Xml::XmlString& value) override;
    void externalEntityDecl(const Xml::XmlString& name, const Xml::XmlString& publicId,
                            const Xml::XmlString& systemId) override;

private:
    enum class OpenText { None, Characters, IgnorableWhitespace };

    void endText();
    void continueText(OpenText kind, const char* event, const unsigned short* ch, unsigned int start,
                      unsigned int length);
    /// The whole line of an event that has only strings.
    template <class... Strings>
    void line(const char* event, const Strings&... strings);
    void printAttribute(const Xml::Sax::Attributes& attributes, unsigned int index);

    OutputFile& file_;
    std::ostream& out_;
    OpenText openText_ = OpenText::None;
};

} // namespace Quillon::Tool

#endif
