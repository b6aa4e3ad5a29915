#include "EventLocator.h"

#include "ParseContext.h"

namespace Quillon::SaxEngine {

using Xml::XmlString;

EventLocator::EventLocator(const ParseContext& context) : context_(context) {}
EventLocator::~EventLocator() = default;

XmlString EventLocator::getPublicId() const {
    return context_.entity ? context_.entity->source().publicId : XmlString();
}

XmlString EventLocator::getSystemId() const {
    return context_.entity ? context_.entity->source().systemId : XmlString();
}

long long EventLocator::getLineNumber() const {
    return context_.location().line;
}

long long EventLocator::getColumnNumber() const {
    return context_.location().column;
}

XmlString EventLocator::getXMLVersion() const {
    return context_.entity ? context_.entity->version : XmlString();
}

XmlString EventLocator::getEncoding() const {
    return context_.entity ? context_.entity->encoding : XmlString();
}

} // namespace Quillon::SaxEngine
