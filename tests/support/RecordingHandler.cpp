#include "support/RecordingHandler.h"

#include "support/Text.h"
#include "xml/sax/Attributes2.h"
#include "xml/sax/SaxParseException.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <utility>

namespace Quillon::Testing {

namespace {

using Xml::XmlString;

std::string escaped(const std::string& utf8) {
    std::string out;
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\n') {
            out += "\\n";
        } else if (c == '\t') {
            out += "\\t";
        } else if (c == '\r') {
            out += "\\r";
        } else if (c == '"' || byte < 0x20 || byte == 0x7F) {
            char escape[8];
            std::snprintf(escape, sizeof escape, c == '"' ? "\\\"" : "\\x%02X", static_cast<unsigned>(byte));
            out += escape;
        } else {
            out += c;
        }
    }
    return out;
}

std::u16string textOf(const unsigned short* ch, unsigned int start, unsigned int length) {
    return length != 0 ? std::u16string(ch + start, ch + start + length) : std::u16string();
}

std::string flagsOf(const Xml::Sax::Attributes2& attributes, unsigned int index) {
    return std::string(attributes.isDeclared(index) ? " declared" : "")
           + (attributes.isSpecified(index) ? " specified" : "");
}

std::string listed(const Xml::Sax::Attributes& attributes, bool withFlags) {
    const auto* flagged = withFlags ? dynamic_cast<const Xml::Sax::Attributes2*>(&attributes) : nullptr;
    std::string out = "[";
    for (unsigned int i = 0; i < attributes.getLength(); ++i) {
        out += i != 0 ? ", (" : "(";
        out += quoted(attributes.getURI(i)) + ", " + quoted(attributes.getLocalName(i)) + ", "
               + quoted(attributes.getQName(i)) + ", " + quoted(attributes.getType(i)) + ", "
               + quoted(attributes.getValue(i));
        out += (flagged != nullptr ? flagsOf(*flagged, i) : "") + ")";
    }
    return out + "]";
}

} // namespace

std::string quoted(const XmlString& string) {
    return string.isNull() ? "null" : '"' + escaped(show(string)) + '"';
}

std::string quoted(const std::u16string& units) {
    return quoted(text(units));
}

RecordingHandler::RecordingHandler() = default;
RecordingHandler::~RecordingHandler() = default;

std::vector<std::string> RecordingHandler::linesOf(const std::string& name) const {
    std::vector<std::string> result;
    std::copy_if(lines_.begin(), lines_.end(), std::back_inserter(result),
                 [&](const std::string& line) { return line.compare(0, name.size() + 1, name + '(') == 0; });
    return result;
}

std::string RecordingHandler::text() const {
    std::string out;
    for (const std::string& line : lines_)
        out += line + '\n';
    return out;
}

void RecordingHandler::clear() {
    lines_.clear();
    eventCount_ = 0;
    openRun_ = nullptr;
    locator_ = nullptr;
}

void RecordingHandler::throwAt(std::size_t n, std::function<void()> thrower) {
    throwIn_ = n;
    thrower_ = std::move(thrower);
}

void RecordingHandler::count() {
    ++eventCount_;
    if (throwIn_ == 0 || --throwIn_ != 0)
        return;
    if (thrower_)
        thrower_();
    throw Xml::Sax::SaxException(Testing::text(u"thrown by the handler"));
}

void RecordingHandler::add(std::string line) {
    openRun_ = nullptr;
    lines_.push_back(std::move(line));
    count();
}

void RecordingHandler::record(const char* name, std::initializer_list<const XmlString*> arguments) {
    std::string line = std::string(name) + '(';
    for (const XmlString* argument : arguments)
        line += (line.back() == '(' ? "" : ", ") + quoted(*argument);
    add(line + ')');
}

void RecordingHandler::recordText(const char* name, const std::u16string& text) {
    add(std::string(name) + '(' + quoted(text) + ')');
}

void RecordingHandler::recordRun(const char* name, const std::u16string& text) {
    const bool joined = joinText_ && openRun_ && std::strcmp(openRun_, name) == 0;
    openText_ = (joined ? openText_ : std::u16string()) + text;
    if (joined)
        lines_.pop_back();
    lines_.push_back(std::string(name) + '(' + quoted(openText_) + ')');
    openRun_ = name;
    count();
}

void RecordingHandler::recordError(const char* name, const Xml::Sax::SaxParseException& exception) {
    add(std::string(name) + '(' + quoted(exception.getMessage()) + ", " + quoted(exception.getPublicId())
        + ", " + quoted(exception.getSystemId()) + ", " + std::to_string(exception.getLineNumber()) + ", "
        + std::to_string(exception.getColumnNumber()) + ')');
}

Xml::Sax::InputSource* RecordingHandler::resolveEntity(const XmlString& publicId, const XmlString& systemId) {
    record("resolveEntity", {&publicId, &systemId});
    return resolver_ ? resolver_(publicId, systemId) : nullptr;
}

Xml::Sax::InputSource* RecordingHandler::getExternalSubset(const XmlString& name, const XmlString& baseURI) {
    record("getExternalSubset", {&name, &baseURI});
    return std::exchange(subset_, nullptr);
}

Xml::Sax::InputSource* RecordingHandler::resolveEntity(const XmlString& name, const XmlString& publicId,
                                                       const XmlString& baseURI, const XmlString& systemId) {
    record("resolveEntity", {&name, &publicId, &baseURI, &systemId});
    return resolver_ ? resolver_(publicId, systemId) : nullptr;
}

void RecordingHandler::notationDecl(const XmlString& name, const XmlString& publicId,
                                    const XmlString& systemId) {
    record("notationDecl", {&name, &publicId, &systemId});
}

void RecordingHandler::unparsedEntityDecl(const XmlString& name, const XmlString& publicId,
                                          const XmlString& systemId, const XmlString& notationName) {
    record("unparsedEntityDecl", {&name, &publicId, &systemId, &notationName});
}

void RecordingHandler::setDocumentLocator(Xml::Sax::Locator* locator) {
    locator_ = locator;
    add(locator != nullptr ? "setDocumentLocator(locator)" : "setDocumentLocator(null)");
}

void RecordingHandler::startDocument() {
    record("startDocument");
}

void RecordingHandler::endDocument() {
    record("endDocument");
}

void RecordingHandler::startPrefixMapping(const XmlString& prefix, const XmlString& uri) {
    record("startPrefixMapping", {&prefix, &uri});
}

void RecordingHandler::endPrefixMapping(const XmlString& prefix) {
    record("endPrefixMapping", {&prefix});
}

void RecordingHandler::startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                                    const Xml::Sax::Attributes& attributes) {
    add("startElement(" + quoted(uri) + ", " + quoted(localName) + ", " + quoted(qName) + ", "
        + listed(attributes, flags_) + ')');
}

void RecordingHandler::endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) {
    record("endElement", {&uri, &localName, &qName});
}

void RecordingHandler::characters(const unsigned short* ch, unsigned int start, unsigned int length) {
    recordRun("characters", textOf(ch, start, length));
}

void RecordingHandler::ignorableWhitespace(const unsigned short* ch, unsigned int start,
                                           unsigned int length) {
    recordRun("ignorableWhitespace", textOf(ch, start, length));
}

void RecordingHandler::processingInstruction(const XmlString& target, const XmlString& data) {
    record("processingInstruction", {&target, &data});
}

void RecordingHandler::skippedEntity(const XmlString& name) {
    record("skippedEntity", {&name});
}

void RecordingHandler::warning(const Xml::Sax::SaxParseException& exception) {
    recordError("warning", exception);
}

void RecordingHandler::error(const Xml::Sax::SaxParseException& exception) {
    recordError("error", exception);
}

void RecordingHandler::fatalError(const Xml::Sax::SaxParseException& exception) {
    recordError("fatalError", exception);
}

void RecordingHandler::startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) {
    record("startDTD", {&name, &publicId, &systemId});
}

void RecordingHandler::endDTD() {
    record("endDTD");
}

void RecordingHandler::startEntity(const XmlString& name) {
    record("startEntity", {&name});
}

void RecordingHandler::endEntity(const XmlString& name) {
    record("endEntity", {&name});
}

void RecordingHandler::startCDATA() {
    record("startCDATA");
}

void RecordingHandler::endCDATA() {
    record("endCDATA");
}

void RecordingHandler::comment(const unsigned short* ch, unsigned int start, unsigned int length) {
    recordText("comment", textOf(ch, start, length));
}

void RecordingHandler::elementDecl(const XmlString& name, const XmlString& model) {
    record("elementDecl", {&name, &model});
}

void RecordingHandler::attributeDecl(const XmlString& eName, const XmlString& aName, const XmlString& type,
                                     const XmlString& mode, const XmlString& value) {
    record("attributeDecl", {&eName, &aName, &type, &mode, &value});
}

void RecordingHandler::internalEntityDecl(const XmlString& name, const XmlString& value) {
    record("internalEntityDecl", {&name, &value});
}

void RecordingHandler::externalEntityDecl(const XmlString& name, const XmlString& publicId,
                                          const XmlString& systemId) {
    record("externalEntityDecl", {&name, &publicId, &systemId});
}

} // namespace Quillon::Testing
