#include "ExternalEntities.h"

#include "ParseContext.h"
#include "ParseSession.h"
#include "RootName.h"
#include "SystemIdentifier.h"
#include "Text.h"
#include "system/OutOfMemoryException.h"
#include "xml/sax/ContentHandler.h"
#include "xml/sax/EntityResolver2.h"
#include "xml/sax/InputSource.h"
#include "xml/sax/LexicalHandler.h"

#include <utility>
#include <vector>

namespace Quillon::SaxEngine {

using Xml::XmlString;
using Xml::Sax::InputSource;

namespace {

/// What parts the names of a context (see XML_ExternalEntityParserCreate).
constexpr XML_Char kContextSeparator = u'\f';

/// External entities inside each other take stack and open files; no document in use comes near this.
constexpr unsigned int kMaximumEntityDepth = 256;

XmlString presentOrNull(const XmlString& identifier) {
    return identifier.size() == 0 ? XmlString() : identifier;
}

template <class Value>
class Restore {
public:
    Restore(Value& variable, Value now) : variable_(variable), before_(std::exchange(variable, now)) {}
    Restore(const Restore&) = delete;
    Restore& operator=(const Restore&) = delete;
    ~Restore() { variable_ = before_; }

private:
    Value& variable_;
    Value before_;
};

} // namespace

XmlString entityNameForHandlers(const XML_Char* name, bool isParameter) {
    if (!isParameter)
        return ownedString(name);
    const UnitSpan units(name);
    std::vector<XML_Char> marked(1, u'%');
    marked.insert(marked.end(), units.begin(), units.end());
    return ownedString(UnitSpan(marked.data(), marked.size()));
}

ExternalEntities::ExternalEntities(ParseContext& context, ParseSession& session)
    : context_(context), session_(session) {}
ExternalEntities::~ExternalEntities() = default;

void ExternalEntities::declare(const XML_Char* name, bool isParameter, const XML_Char* systemId) {
    if (isParameter) {
        parameter_.emplace(systemId, entityNameForHandlers(name, true));
        return;
    }
    const UnitSpan units(name);
    general_.intern(units, [&] {
        auto entity = std::make_unique<General>();
        entity->text = ownedString(units);
        return entity;
    });
}

Xml::Sax::EntityResolver2* ExternalEntities::resolver2() const {
    if (!context_.handlers.resolver || !context_.settings.features.useEntityResolver2)
        return nullptr;
    return dynamic_cast<Xml::Sax::EntityResolver2*>(context_.handlers.resolver);
}

void ExternalEntities::supplySubset(const XmlString& rootName, XmlString& publicId, XmlString& systemId) {
    Xml::Sax::EntityResolver2* resolver = resolver2();
    subsetWasAskedFor_ = true;
    if (!resolver || !context_.settings.features.externalParameterEntities)
        return;
    subset_.reset(resolver->getExternalSubset(rootName, fromUtf8OrNull(context_.entity->source().uri)));
    if (!subset_)
        return;
    publicId = presentOrNull(subset_->getPublicId());
    systemId = presentOrNull(subset_->getSystemId());
}

void ExternalEntities::reference(const XML_Char* context, const XML_Char* base, const XML_Char* systemId,
                                 const XML_Char* publicId) {
    const Reference reference{XmlString(), context, base, systemId, publicId, true};
    if (context)
        generalReference(reference);
    else if (systemId)
        parameterReference(reference);
    else
        suppliedSubset(reference);
}

/// The context names all entities that are open, internal ones too, in no order. All external ones among them were
/// opened here, but for the one that is wanted now.
ExternalEntities::General* ExternalEntities::openedBy(const XML_Char* context) const {
    while (*context) {
        const XML_Char* end = context;
        while (*end && *end != kContextSeparator)
            ++end;
        General* entity = general_.find(UnitSpan(context, static_cast<std::size_t>(end - context)));
        if (entity && !entity->isOpen)
            return entity;
        context = *end ? end + 1 : end;
    }
    return nullptr;
}

void ExternalEntities::generalReference(const Reference& reference) {
    General* entity = openedBy(reference.context);
    if (!entity)
        context_.fatal("a reference to an external entity that was not declared");
    if (!context_.settings.features.externalGeneralEntities) {
        if (context_.handlers.content)
            context_.handlers.content->skippedEntity(entity->text);
        return;
    }
    const Restore<bool> open(entity->isOpen, true);
    Reference named = reference;
    named.name = entity->text;
    resolveAndRead(named);
}

void ExternalEntities::parameterReference(Reference reference) {
    if (!context_.settings.features.externalParameterEntities)
        return;
    const auto found = parameter_.find(reference.systemId);
    reference.name = found == parameter_.end() ? context_.words.externalSubset : found->second;
    // A reference inside a declaration cannot be shown between events.
    reference.isShown =
        context_.settings.features.parameterEntityEvents && !context_.entity->declarations.isInside();
    resolveAndRead(reference);
}

/// Behind a DOCTYPE without an external subset, or at the root element of a document without a DOCTYPE.
void ExternalEntities::suppliedSubset(Reference reference) {
    const bool hasDoctype = subsetWasAskedFor_;
    XmlString publicId, systemId;
    if (!hasDoctype)
        supplySubset(XmlString(), publicId, systemId);
    const std::unique_ptr<InputSource> source = std::move(subset_);
    if (!source)
        return;
    reference.name = context_.words.externalSubset;
    reference.isShown = context_.settings.features.parameterEntityEvents;
    if (!hasDoctype && context_.handlers.lexical)
        context_.handlers.lexical->startDTD(rootName(*context_.entity), publicId, systemId);
    read(reference, *source, context_.entity->source().uri);
    if (!hasDoctype && context_.handlers.lexical)
        context_.handlers.lexical->endDTD();
}

std::unique_ptr<InputSource> ExternalEntities::ask(const Reference& reference, const std::string& uri) const {
    if (!context_.handlers.resolver)
        return nullptr;
    const XmlString publicId = ownedString(reference.publicId);
    if (Xml::Sax::EntityResolver2* resolver = resolver2())
        return std::unique_ptr<InputSource>(resolver->resolveEntity(
            reference.name, publicId, ownedString(reference.base), ownedString(reference.systemId)));
    return std::unique_ptr<InputSource>(context_.handlers.resolver->resolveEntity(publicId, fromUtf8(uri)));
}

void ExternalEntities::resolveAndRead(const Reference& reference) {
    const std::string base = reference.base ? toUtf8(UnitSpan(reference.base)) : std::string();
    const std::string uri = resolvedUri(base, toUtf8(UnitSpan(reference.systemId)));
    const std::unique_ptr<InputSource> answer = ask(reference, uri);
    if (answer)
        read(reference, *answer, uri);
    else
        read(reference, InputSource(fromUtf8(uri)), uri);
}

void ExternalEntities::read(const Reference& reference, const InputSource& input, const std::string& uri) {
    const Restore<unsigned int> depth(depth_, depth_ + 1);
    if (depth_ > kMaximumEntityDepth)
        context_.fatal("external entities are nested deeper than the limit of "
                       + std::to_string(kMaximumEntityDepth));
    EntitySource source(input, uri);
    if (source.publicId.isNull())
        source.publicId.copy(ownedString(reference.publicId));
    ParserPointer parser(
        XML_ExternalEntityParserCreate(context_.entity->parser(), reference.context, nullptr));
    if (!parser)
        System::OutOfMemoryException::doThrow();
    if (reference.isShown && context_.handlers.lexical)
        context_.handlers.lexical->startEntity(reference.name);
    OpenEntity entity(std::move(parser), std::move(source),
                      reference.context ? OpenEntity::Kind::Content : OpenEntity::Kind::Dtd);
    session_.read(entity);
    if (reference.isShown && context_.handlers.lexical)
        context_.handlers.lexical->endEntity(reference.name);
}

} // namespace Quillon::SaxEngine
