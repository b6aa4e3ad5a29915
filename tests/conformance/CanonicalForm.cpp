#include "conformance/CanonicalForm.h"

#include "support/Text.h"
#include "xml/sax/Attributes.h"

namespace Quillon::Testing {

using Xml::XmlString;

CanonicalForm::~CanonicalForm() = default;

void CanonicalForm::appendEscaped(const std::string& utf8) {
    for (const char c : utf8) {
        switch (c) {
        case '&':
            text_ += "&amp;";
            break;
        case '<':
            text_ += "&lt;";
            break;
        case '>':
            text_ += "&gt;";
            break;
        case '"':
            text_ += "&quot;";
            break;
        case '\t':
            text_ += "&#9;";
            break;
        case '\n':
            text_ += "&#10;";
            break;
        case '\r':
            text_ += "&#13;";
            break;
        default:
            text_ += c;
        }
    }
}

void CanonicalForm::startElement(const XmlString&, const XmlString&, const XmlString& qName,
                                 const Xml::Sax::Attributes& attributes) {
    std::map<std::string, std::string> sorted;
    for (unsigned int i = 0; i < attributes.getLength(); ++i)
        sorted[show(attributes.getQName(i))] = show(attributes.getValue(i));
    text_ += "<" + show(qName);
    for (const auto& [name, value] : sorted) {
        text_ += " " + name + "=\"";
        appendEscaped(value);
        text_ += '"';
    }
    text_ += ">";
}

void CanonicalForm::endElement(const XmlString&, const XmlString&, const XmlString& qName) {
    text_ += "</" + show(qName) + ">";
}

void CanonicalForm::characters(const unsigned short* ch, unsigned int start, unsigned int length) {
    appendEscaped(show(XmlString(0, ch + start, length)));
}

void CanonicalForm::ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) {
    characters(ch, start, length);
}

void CanonicalForm::processingInstruction(const XmlString& target, const XmlString& data) {
    text_ += "<?" + show(target) + " " + show(data) + "?>";
}

void CanonicalForm::notationDecl(const XmlString& name, const XmlString& publicId,
                                 const XmlString& systemId) {
    std::string ids = publicId.isNull() ? "SYSTEM" : "PUBLIC '" + show(publicId) + "'";
    if (!systemId.isNull())
        ids += " '" + show(systemId) + "'";
    notations_[show(name)] = ids;
}

void CanonicalForm::startDTD(const XmlString& name, const XmlString&, const XmlString&) {
    doctype_ = show(name);
}

void CanonicalForm::endDTD() {
    if (notations_.empty())
        return;
    text_ += "<!DOCTYPE " + doctype_ + " [\n";
    for (const auto& [name, ids] : notations_)
        text_ += "<!NOTATION " + name + " " + ids + ">\n";
    text_ += "]>\n";
}

} // namespace Quillon::Testing
