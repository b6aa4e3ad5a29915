#include "Reader.h"

#include "ParseSession.h"
#include "Text.h"
#include "xml/sax/DeclHandler.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/LexicalHandler.h"
#include "xml/sax/SaxIdentifiers.h"
#include "xml/sax/SaxNotRecognizedException.h"
#include "xml/sax/SaxNotSupportedException.h"

namespace Quillon::SaxEngine {

using namespace Xml::Sax;
using Xml::XmlString;

namespace {

/// A feature that may be set at will between parses.
struct Switch {
    XmlString (*name)();
    bool Features::*value;
};
constexpr Switch kSwitches[] = {
    {SC_Features_Namespaces, &Features::namespaces},
    {SC_Features_NamespacePrefixes, &Features::namespacePrefixes},
    {SC_Features_XmlNsUris, &Features::xmlnsUris},
    {SC_Features_ExternalGeneralEntities, &Features::externalGeneralEntities},
    {SC_Features_ExternalParameterEntities, &Features::externalParameterEntities},
    {SC_Features_LexicalHandler_ParameterEntities, &Features::parameterEntityEvents},
    {SC_Features_ResolveDtdUris, &Features::resolveDtdUris},
    {SC_Features_UseEntityResolver2, &Features::useEntityResolver2},
};

/// A feature that has one value for good.
struct Constant {
    XmlString (*name)();
    bool value;
};
constexpr Constant kConstants[] = {
    {SC_Features_UseAttributes2, true},
    {SC_Features_UseLocator2, true},
    {SC_Features_StringInterning, true},
    {SC_Features_Validation, false},
    {SC_Features_UnicodeNormalizationChecking, false},
    {SC_Features_Xml1_1, false},
};

template <class Row, std::size_t N>
const Row* rowOf(const Row (&table)[N], const XmlString& name) {
    for (const Row& row : table)
        if (row.name().compare(name) == 0)
            return &row;
    return nullptr;
}

bool isNamed(const XmlString& name, XmlString (*identifier)()) {
    return identifier().compare(name) == 0;
}

XmlString message(const char* kind, const XmlString& name, const char* why = "") {
    return fromUtf8(kind + toUtf8(name) + why);
}

[[noreturn]] void throwUnknown(const char* kind, const XmlString& name) {
    throw SaxNotRecognizedException(message(kind, name));
}

[[noreturn]] void throwUnsupported(const char* kind, const XmlString& name, const char* why) {
    throw SaxNotSupportedException(message(kind, name, why));
}

constexpr char kFeature[] = "Feature: ";
constexpr char kProperty[] = "Property: ";
constexpr char kOnlyDuringParse[] = " (known only during a parse)";

bool isUnsupportedProperty(const XmlString& name) {
    return isNamed(name, SC_Properties_DomNode) || isNamed(name, SC_Properties_XmlString);
}

} // namespace

Reader::Reader(const XML_Memory_Handling_Suite* memory) {
    settings_.memory = memory;
}
Reader::~Reader() = default;

void Reader::setFeature(const XmlString& name, bool value) {
    const Switch* feature = rowOf(kSwitches, name);
    const Constant* constant = rowOf(kConstants, name);
    const bool isStandalone = isNamed(name, SC_Features_IsStandalone);
    if (!feature && !constant && !isStandalone)
        throwUnknown(kFeature, name);
    if (session_)
        throwUnsupported(kFeature, name, " (cannot be set during a parse)");
    if (isStandalone)
        throwUnsupported(kFeature, name, " (can only be read)");
    if (constant && constant->value != value)
        throwUnsupported(kFeature, name, value ? " (cannot be turned on)" : " (cannot be turned off)");
    if (feature)
        settings_.features.*feature->value = value;
}

bool Reader::getFeature(const XmlString& name) const {
    if (const Switch* feature = rowOf(kSwitches, name))
        return settings_.features.*feature->value;
    if (const Constant* constant = rowOf(kConstants, name))
        return constant->value;
    if (!isNamed(name, SC_Features_IsStandalone))
        throwUnknown(kFeature, name);
    if (!session_)
        throwUnsupported(kFeature, name, kOnlyDuringParse);
    return session_->context.isStandalone;
}

void Reader::setProperty(const XmlString& name, void* value) {
    if (isNamed(name, SC_Properties_LexicalHandler))
        settings_.handlers.lexical = static_cast<LexicalHandler*>(value);
    else if (isNamed(name, SC_Properties_DeclarationHandler))
        settings_.handlers.declaration = static_cast<DeclHandler*>(value);
    else if (isNamed(name, SC_Properties_DocumentXmlVersion))
        throwUnsupported(kProperty, name, " (can only be read)");
    else if (isUnsupportedProperty(name))
        throwUnsupported(kProperty, name, "");
    else
        throwUnknown(kProperty, name);
}

void* Reader::getProperty(const XmlString& name) const {
    if (isNamed(name, SC_Properties_LexicalHandler))
        return settings_.handlers.lexical;
    if (isNamed(name, SC_Properties_DeclarationHandler))
        return settings_.handlers.declaration;
    if (isUnsupportedProperty(name))
        throwUnsupported(kProperty, name, "");
    if (!isNamed(name, SC_Properties_DocumentXmlVersion))
        throwUnknown(kProperty, name);
    if (!session_)
        throwUnsupported(kProperty, name, kOnlyDuringParse);
    return &session_->context.documentVersion;
}

void Reader::setEntityResolver(EntityResolver* resolver) {
    settings_.handlers.resolver = resolver;
}
EntityResolver* Reader::getEntityResolver() const {
    return settings_.handlers.resolver;
}
void Reader::setDTDHandler(DTDHandler* handler) {
    settings_.handlers.dtd = handler;
}
DTDHandler* Reader::getDTDHandler() const {
    return settings_.handlers.dtd;
}
void Reader::setContentHandler(ContentHandler* handler) {
    settings_.handlers.content = handler;
}
ContentHandler* Reader::getContentHandler() const {
    return settings_.handlers.content;
}
void Reader::setErrorHandler(ErrorHandler* handler) {
    settings_.handlers.error = handler;
}
ErrorHandler* Reader::getErrorHandler() const {
    return settings_.handlers.error;
}

void Reader::parse(InputSource& source) {
    if (session_)
        throw SaxException(ownedAscii("the reader is in the middle of a parse"));
    ParseSession session(settings_, words_);
    struct Running {
        explicit Running(ParseSession*& slot, ParseSession& session) : slot_(slot) { slot_ = &session; }
        ~Running() { slot_ = nullptr; }
        ParseSession*& slot_;
    } const running(session_, session);
    session.run(source);
}

void Reader::parse(const XmlString& systemId) {
    InputSource source(systemId);
    parse(source);
}

} // namespace Quillon::SaxEngine
