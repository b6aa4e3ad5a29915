#include "EventPrinter.h"

#include "Failure.h"
#include "OutputFile.h"
#include "runtime/HostServices.h"
#include "runtime/Transcoding.h"
#include "system/OutOfMemoryException.h"
#include "xml/sax/Attributes2.h"

#include <cstdio>
#include <memory>

namespace Quillon::Tool {

namespace {

using Xml::XmlString;
using Xml::Sax::Attributes;
using Xml::Sax::Attributes2;

bool isSurrogate(unsigned short unit) {
    return (unit & 0xF800) == 0xD800;
}
bool isPair(unsigned short first, unsigned short second) {
    return (first & 0xFC00) == 0xD800 && (second & 0xFC00) == 0xDC00;
}

/// The two or six characters that stand for a unit that is not printed as it is; empty for one that is.
struct Escape {
    char text[8] = "";

    explicit Escape(unsigned short unit) {
        switch (unit) {
        case '"':
        case '\\':
            std::snprintf(text, sizeof text, "\\%c", unit);
            break;
        case '\n':
            std::snprintf(text, sizeof text, "\\n");
            break;
        case '\t':
            std::snprintf(text, sizeof text, "\\t");
            break;
        case '\r':
            std::snprintf(text, sizeof text, "\\r");
            break;
        default:
            if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || isSurrogate(unit))
                std::snprintf(text, sizeof text, "\\u%04X", static_cast<unsigned int>(unit));
        }
    }
    bool isEmpty() const { return text[0] == '\0'; }
};

void printRun(std::ostream& out, const unsigned short* run, std::size_t length) {
    if (length == 0)
        return;
    const std::unique_ptr<char, void (*)(void*)> bytes(Runtime::utf16ToUtf8(run, length), Runtime::release);
    if (!bytes)
        System::OutOfMemoryException::doThrow();
    out << bytes.get();
}

void printEscaped(std::ostream& out, const unsigned short* units, std::size_t length) {
    std::size_t runStart = 0;
    for (std::size_t i = 0; i < length; ++i) {
        if (i + 1 < length && isPair(units[i], units[i + 1])) {
            ++i;
            continue;
        }
        const Escape escape(units[i]);
        if (escape.isEmpty())
            continue;
        printRun(out, units + runStart, i - runStart);
        out << escape.text;
        runStart = i + 1;
    }
    printRun(out, units + runStart, length - runStart);
}

/// The receiver of `<<` for a quoted string.
struct Quoted {
    const XmlString& string;
};

std::ostream& operator<<(std::ostream& out, const Quoted& quoted) {
    if (quoted.string.isNull())
        return out << "null";
    out << '"';
    printEscaped(out, quoted.string.data(), quoted.string.size());
    return out << '"';
}

} // namespace

EventPrinter::EventPrinter(OutputFile& out) : file_(out), out_(out.stream()) {}

void EventPrinter::endText() {
    if (openText_ != OpenText::None)
        out_ << "\"\n";
    openText_ = OpenText::None;
    file_.check();
}

void EventPrinter::continueText(OpenText kind, const char* event, const unsigned short* ch,
                                unsigned int start, unsigned int length) {
    if (openText_ != kind) {
        endText();
        out_ << event << " \"";
        openText_ = kind;
    }
    printEscaped(out_, ch + start, length);
}

template <class... Strings>
void EventPrinter::line(const char* event, const Strings&... strings) {
    endText();
    out_ << event;
    ((out_ << ' ' << Quoted{strings}), ...);
    out_ << '\n';
}

void EventPrinter::printAttribute(const Attributes& attributes, unsigned int index) {
    out_ << " {" << Quoted{attributes.getURI(index)} << ' ' << Quoted{attributes.getLocalName(index)} << ' '
         << Quoted{attributes.getQName(index)} << ' ';
    const XmlString type = attributes.getType(index);
    printEscaped(out_, type.data(), type.size());
    out_ << ' ' << Quoted{attributes.getValue(index)};
    if (const auto* more = dynamic_cast<const Attributes2*>(&attributes))
        out_ << (more->isDeclared(index) ? " declared" : "")
             << (more->isSpecified(index) ? " specified" : "");
    out_ << '}';
}

void EventPrinter::startDocument() {
    line("startDocument");
}

void EventPrinter::endDocument() {
    line("endDocument");
}

void EventPrinter::startPrefixMapping(const XmlString& prefix, const XmlString& uri) {
    line("startPrefixMapping", prefix, uri);
}

void EventPrinter::endPrefixMapping(const XmlString& prefix) {
    line("endPrefixMapping", prefix);
}

void EventPrinter::startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                                const Attributes& attributes) {
    endText();
    out_ << "startElement " << Quoted{uri} << ' ' << Quoted{localName} << ' ' << Quoted{qName};
    for (unsigned int i = 0; i < attributes.getLength(); ++i)
        printAttribute(attributes, i);
    out_ << '\n';
}

void EventPrinter::endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) {
    line("endElement", uri, localName, qName);
}

void EventPrinter::characters(const unsigned short* ch, unsigned int start, unsigned int length) {
    continueText(OpenText::Characters, "characters", ch, start, length);
}

void EventPrinter::ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) {
    continueText(OpenText::IgnorableWhitespace, "ignorableWhitespace", ch, start, length);
}

void EventPrinter::processingInstruction(const XmlString& target, const XmlString& data) {
    line("processingInstruction", target, data);
}

void EventPrinter::skippedEntity(const XmlString& name) {
    line("skippedEntity", name);
}

void EventPrinter::notationDecl(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    line("notationDecl", name, publicId, systemId);
}

void EventPrinter::unparsedEntityDecl(const XmlString& name, const XmlString& publicId,
                                      const XmlString& systemId, const XmlString& notationName) {
    line("unparsedEntityDecl", name, publicId, systemId, notationName);
}

void EventPrinter::startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    line("startDTD", name, publicId, systemId);
}

void EventPrinter::endDTD() {
    line("endDTD");
}

void EventPrinter::startEntity(const XmlString& name) {
    line("startEntity", name);
}

void EventPrinter::endEntity(const XmlString& name) {
    line("endEntity", name);
}

void EventPrinter::startCDATA() {
    line("startCDATA");
}

void EventPrinter::endCDATA() {
    line("endCDATA");
}

void EventPrinter::comment(const unsigned short* ch, unsigned int start, unsigned int length) {
    endText();
    out_ << "comment \"";
    printEscaped(out_, ch + start, length);
    out_ << "\"\n";
}

void EventPrinter::elementDecl(const XmlString& name, const XmlString& model) {
    line("elementDecl", name, model);
}

void EventPrinter::attributeDecl(const XmlString& elementName, const XmlString& attributeName,
                                 const XmlString& type, const XmlString& mode, const XmlString& value) {
    line("attributeDecl", elementName, attributeName, type, mode, value);
}

void EventPrinter::internalEntityDecl(const XmlString& name, const XmlString& value) {
    line("internalEntityDecl", name, value);
}

void EventPrinter::externalEntityDecl(const XmlString& name, const XmlString& publicId,
                                      const XmlString& systemId) {
    line("externalEntityDecl", name, publicId, systemId);
}

} // namespace Quillon::Tool
