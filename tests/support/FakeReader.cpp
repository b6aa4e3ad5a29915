#include "support/FakeReader.h"

#include "support/RecordingHandler.h"
#include "support/Text.h"
#include "xml/sax/AttributesImpl.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxNotRecognizedException.h"
#include "xml/sax/SaxParseException.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace Quillon::Testing {

namespace {

using Xml::XmlString;
namespace Sax = Xml::Sax;

/// Plays one event into the handler that `getHandler` finds, if there is one.
template <class GetHandler, class Play>
FakeReader::Event eventFor(GetHandler getHandler, Play play) {
    return [=](FakeReader& reader) {
        if (auto* handler = (reader.*getHandler)())
            play(*handler);
    };
}

template <class Play>
FakeReader::Event contentEvent(Play play) {
    return eventFor(&FakeReader::getContentHandler, play);
}

template <class Play>
FakeReader::Event lexicalEvent(Play play) {
    return eventFor(&FakeReader::lexicalHandler, play);
}

template <class Play>
FakeReader::Event declEvent(Play play) {
    return eventFor(&FakeReader::declHandler, play);
}

/// A text inside a larger array, so that whoever ignores the start is found out.
struct Run {
    explicit Run(const char16_t* text)
        : units(Testing::units((std::u16string(u"<<") + text + u">>").c_str())) {}
    unsigned int length() const {
        return static_cast<unsigned int>(units.size()) - 5;
    } // two marks each, and the end

    std::vector<unsigned short> units;
    static constexpr unsigned int kStart = 2;
};

std::string setOrNull(const void* pointer) {
    return pointer != nullptr ? "set" : "null";
}

} // namespace

FakeReader::FakeReader() = default;
FakeReader::~FakeReader() = default;

FakeReader& FakeReader::add(Event event) {
    script_.push_back(std::move(event));
    return *this;
}

void FakeReader::clearScript() {
    script_.clear();
}

FakeReader& FakeReader::setDocumentLocator(Sax::Locator* locator) {
    return add(contentEvent([=](Sax::ContentHandler& handler) { handler.setDocumentLocator(locator); }));
}

FakeReader& FakeReader::startDocument() {
    return add(contentEvent([](Sax::ContentHandler& handler) { handler.startDocument(); }));
}

FakeReader& FakeReader::endDocument() {
    return add(contentEvent([](Sax::ContentHandler& handler) { handler.endDocument(); }));
}

FakeReader& FakeReader::startPrefixMapping(const char16_t* prefix, const char16_t* uri) {
    return add(contentEvent([p = text(prefix), u = text(uri)](Sax::ContentHandler& handler) {
        handler.startPrefixMapping(p, u);
    }));
}

FakeReader& FakeReader::endPrefixMapping(const char16_t* prefix) {
    return add(
        contentEvent([p = text(prefix)](Sax::ContentHandler& handler) { handler.endPrefixMapping(p); }));
}

FakeReader& FakeReader::startElement(const char16_t* uri, const char16_t* localName, const char16_t* qName) {
    return startElement(uri, localName, qName, Sax::AttributesImpl());
}

FakeReader& FakeReader::startElement(const char16_t* uri, const char16_t* localName, const char16_t* qName,
                                     const Sax::AttributesImpl& attributes) {
    return add(
        contentEvent([u = text(uri), l = text(localName), q = text(qName), attributes](
                         Sax::ContentHandler& handler) { handler.startElement(u, l, q, attributes); }));
}

FakeReader& FakeReader::endElement(const char16_t* uri, const char16_t* localName, const char16_t* qName) {
    return add(contentEvent([u = text(uri), l = text(localName), q = text(qName)](
                                Sax::ContentHandler& handler) { handler.endElement(u, l, q); }));
}

FakeReader& FakeReader::characters(const char16_t* text) {
    return add(contentEvent([run = Run(text)](Sax::ContentHandler& handler) {
        handler.characters(run.units.data(), Run::kStart, run.length());
    }));
}

FakeReader& FakeReader::ignorableWhitespace(const char16_t* text) {
    return add(contentEvent([run = Run(text)](Sax::ContentHandler& handler) {
        handler.ignorableWhitespace(run.units.data(), Run::kStart, run.length());
    }));
}

FakeReader& FakeReader::processingInstruction(const char16_t* target, const char16_t* data) {
    return add(contentEvent([t = text(target), d = text(data)](Sax::ContentHandler& handler) {
        handler.processingInstruction(t, d);
    }));
}

FakeReader& FakeReader::skippedEntity(const char16_t* name) {
    return add(contentEvent([n = text(name)](Sax::ContentHandler& handler) { handler.skippedEntity(n); }));
}

FakeReader& FakeReader::notationDecl(const char16_t* name, const char16_t* publicId,
                                     const char16_t* systemId) {
    return add(eventFor(&FakeReader::getDTDHandler,
                        [n = text(name), p = text(publicId), s = text(systemId)](Sax::DTDHandler& handler) {
                            handler.notationDecl(n, p, s);
                        }));
}

FakeReader& FakeReader::unparsedEntityDecl(const char16_t* name, const char16_t* publicId,
                                           const char16_t* systemId, const char16_t* notationName) {
    return add(
        eventFor(&FakeReader::getDTDHandler,
                 [n = text(name), p = text(publicId), s = text(systemId), notation = text(notationName)](
                     Sax::DTDHandler& handler) { handler.unparsedEntityDecl(n, p, s, notation); }));
}

FakeReader& FakeReader::startDTD(const char16_t* name, const char16_t* publicId, const char16_t* systemId) {
    return add(lexicalEvent([n = text(name), p = text(publicId), s = text(systemId)](
                                Sax::LexicalHandler& handler) { handler.startDTD(n, p, s); }));
}

FakeReader& FakeReader::endDTD() {
    return add(lexicalEvent([](Sax::LexicalHandler& handler) { handler.endDTD(); }));
}

FakeReader& FakeReader::startEntity(const char16_t* name) {
    return add(lexicalEvent([n = text(name)](Sax::LexicalHandler& handler) { handler.startEntity(n); }));
}

FakeReader& FakeReader::endEntity(const char16_t* name) {
    return add(lexicalEvent([n = text(name)](Sax::LexicalHandler& handler) { handler.endEntity(n); }));
}

FakeReader& FakeReader::startCDATA() {
    return add(lexicalEvent([](Sax::LexicalHandler& handler) { handler.startCDATA(); }));
}

FakeReader& FakeReader::endCDATA() {
    return add(lexicalEvent([](Sax::LexicalHandler& handler) { handler.endCDATA(); }));
}

FakeReader& FakeReader::comment(const char16_t* text) {
    return add(lexicalEvent([run = Run(text)](Sax::LexicalHandler& handler) {
        handler.comment(run.units.data(), Run::kStart, run.length());
    }));
}

FakeReader& FakeReader::elementDecl(const char16_t* name, const char16_t* model) {
    return add(declEvent(
        [n = text(name), m = text(model)](Sax::DeclHandler& handler) { handler.elementDecl(n, m); }));
}

FakeReader& FakeReader::attributeDecl(const char16_t* eName, const char16_t* aName, const char16_t* type,
                                      const char16_t* mode, const char16_t* value) {
    return add(declEvent([e = text(eName), a = text(aName), t = text(type), m = text(mode), v = text(value)](
                             Sax::DeclHandler& handler) { handler.attributeDecl(e, a, t, m, v); }));
}

FakeReader& FakeReader::internalEntityDecl(const char16_t* name, const char16_t* value) {
    return add(declEvent(
        [n = text(name), v = text(value)](Sax::DeclHandler& handler) { handler.internalEntityDecl(n, v); }));
}

FakeReader& FakeReader::externalEntityDecl(const char16_t* name, const char16_t* publicId,
                                           const char16_t* systemId) {
    return add(declEvent([n = text(name), p = text(publicId), s = text(systemId)](Sax::DeclHandler& handler) {
        handler.externalEntityDecl(n, p, s);
    }));
}

FakeReader& FakeReader::warning(const Sax::SaxParseException& exception) {
    return add(eventFor(&FakeReader::getErrorHandler,
                        [=](Sax::ErrorHandler& handler) { handler.warning(exception); }));
}

FakeReader& FakeReader::error(const Sax::SaxParseException& exception) {
    return add(eventFor(&FakeReader::getErrorHandler,
                        [=](Sax::ErrorHandler& handler) { handler.error(exception); }));
}

FakeReader& FakeReader::fatalError(const Sax::SaxParseException& exception) {
    return add(eventFor(&FakeReader::getErrorHandler,
                        [=](Sax::ErrorHandler& handler) { handler.fatalError(exception); }));
}

FakeReader& FakeReader::resolveEntity(const char16_t* publicId, const char16_t* systemId) {
    return add([p = text(publicId), s = text(systemId)](FakeReader& reader) {
        Sax::EntityResolver* resolver = reader.getEntityResolver();
        std::unique_ptr<Sax::InputSource> answer(resolver != nullptr ? resolver->resolveEntity(p, s)
                                                                     : nullptr);
        reader.resolvedCount_ += answer != nullptr;
    });
}

void FakeReader::refuse(const XmlString& name) {
    refused_.push_back(show(name));
}

void FakeReader::checkKnown(const XmlString& name) const {
    if (std::find(refused_.begin(), refused_.end(), show(name)) != refused_.end())
        throw Sax::SaxNotRecognizedException(name);
}

Sax::LexicalHandler* FakeReader::lexicalHandler() const {
    const auto found = properties_.find(show(Sax::SC_Properties_LexicalHandler()));
    return found != properties_.end() ? static_cast<Sax::LexicalHandler*>(found->second) : nullptr;
}

Sax::DeclHandler* FakeReader::declHandler() const {
    const auto found = properties_.find(show(Sax::SC_Properties_DeclarationHandler()));
    return found != properties_.end() ? static_cast<Sax::DeclHandler*>(found->second) : nullptr;
}

void FakeReader::setFeature(const XmlString& name, bool value) {
    calls_.push_back("setFeature(" + quoted(name) + (value ? ", true)" : ", false)"));
    checkKnown(name);
    features_[show(name)] = value;
}

bool FakeReader::getFeature(const XmlString& name) const {
    calls_.push_back("getFeature(" + quoted(name) + ")");
    checkKnown(name);
    const auto found = features_.find(show(name));
    return found != features_.end() && found->second;
}

void FakeReader::setProperty(const XmlString& name, void* value) {
    calls_.push_back("setProperty(" + quoted(name) + ", " + setOrNull(value) + ")");
    checkKnown(name);
    properties_[show(name)] = value;
}

void* FakeReader::getProperty(const XmlString& name) const {
    calls_.push_back("getProperty(" + quoted(name) + ")");
    checkKnown(name);
    const auto found = properties_.find(show(name));
    return found != properties_.end() ? found->second : nullptr;
}

void FakeReader::setEntityResolver(Sax::EntityResolver* resolver) {
    calls_.push_back("setEntityResolver(" + setOrNull(resolver) + ")");
    entityResolver_ = resolver;
}

Sax::EntityResolver* FakeReader::getEntityResolver() const {
    return entityResolver_;
}

void FakeReader::setDTDHandler(Sax::DTDHandler* handler) {
    calls_.push_back("setDTDHandler(" + setOrNull(handler) + ")");
    dtdHandler_ = handler;
}

Sax::DTDHandler* FakeReader::getDTDHandler() const {
    return dtdHandler_;
}

void FakeReader::setContentHandler(Sax::ContentHandler* handler) {
    calls_.push_back("setContentHandler(" + setOrNull(handler) + ")");
    contentHandler_ = handler;
}

Sax::ContentHandler* FakeReader::getContentHandler() const {
    return contentHandler_;
}

void FakeReader::setErrorHandler(Sax::ErrorHandler* handler) {
    calls_.push_back("setErrorHandler(" + setOrNull(handler) + ")");
    errorHandler_ = handler;
}

Sax::ErrorHandler* FakeReader::getErrorHandler() const {
    return errorHandler_;
}

void FakeReader::parse(Sax::InputSource& source) {
    calls_.push_back("parse(" + quoted(source.getSystemId()) + ")");
    const std::vector<Event> script = script_; // an event may change the script
    for (const Event& event : script)
        event(*this);
}

void FakeReader::parse(const XmlString& systemId) {
    Sax::InputSource source(systemId);
    parse(source);
}

} // namespace Quillon::Testing
