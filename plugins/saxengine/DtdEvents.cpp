#include "DtdEvents.h"

#include "ContentModelText.h"
#include "ExternalEntities.h"
#include "ParseContext.h"
#include "SystemIdentifier.h"
#include "Text.h"
#include "xml/Utf16LiteralInternal.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/DeclHandler.h"
#include "xml/sax/LexicalHandler.h"

#include <vector>

namespace Quillon::SaxEngine {

using Xml::XmlString;

namespace {

constexpr Xml::Utf16Literal kNotation(u"NOTATION");

/// Expat writes NOTATION(a|b); a declaration needs the space.
XmlString typeForHandlers(const XML_Char* type) {
    const UnitSpan units(type), notation(kNotation.units);
    if (units.size <= notation.size || !(units.first(notation.size) == notation))
        return ownedString(units);
    std::vector<XML_Char> spaced(units.begin(), units.end());
    spaced.insert(spaced.begin() + notation.size, u' ');
    return ownedString(UnitSpan(spaced.data(), spaced.size()));
}

/// Expat leaves the line ends of a system identifier as the document has them; XML makes each a line feed.
XmlString withPlainLineEnds(const XML_Char* systemId) {
    if (!systemId)
        return XmlString();
    const UnitSpan raw(systemId);
    std::vector<XML_Char> plain;
    for (const XML_Char* unit = raw.begin(); unit != raw.end(); ++unit) {
        const bool isLineEnd = *unit == u'\r';
        plain.push_back(isLineEnd ? u'\n' : *unit);
        if (isLineEnd && unit + 1 != raw.end() && unit[1] == u'\n')
            ++unit;
    }
    return ownedString(UnitSpan(plain.data(), plain.size()));
}

} // namespace

DtdEvents::DtdEvents(ParseContext& context, ExternalEntities& entities)
    : context_(context), entities_(entities) {}

/// A name of an element or attribute in a declaration.
Name& DtdEvents::qualifiedName(const XML_Char* text) {
    Name& name = context_.name(text);
    if (context_.settings.features.namespaces && name.form == NameForm::NotQualified)
        context_.fatal("the name " + toUtf8(name.text) + " is not a qualified name");
    return name;
}

XmlString DtdEvents::declaredSystemId(const XML_Char* base, const XML_Char* systemId) const {
    const XmlString text = withPlainLineEnds(systemId);
    if (!systemId || !base || !context_.settings.features.resolveDtdUris)
        return text;
    return fromUtf8(resolvedUri(toUtf8(UnitSpan(base)), toUtf8(text)));
}

void DtdEvents::startDoctype(const XML_Char* text, const XML_Char* systemId, const XML_Char* publicId) {
    const EventPlace place(context_, context_.entity->declarations.start());
    const Name& name = qualifiedName(text);
    XmlString subsetPublicId = ownedString(publicId), subsetSystemId = withPlainLineEnds(systemId);
    if (!systemId)
        entities_.supplySubset(name.text, subsetPublicId, subsetSystemId);
    if (context_.handlers.lexical)
        context_.handlers.lexical->startDTD(name.text, subsetPublicId, subsetSystemId);
}

void DtdEvents::endDoctype() {
    if (context_.handlers.lexical)
        context_.handlers.lexical->endDTD();
}

void DtdEvents::elementDeclaration(const XML_Char* text, const XML_Content& model) {
    const EventPlace place(context_, context_.entity->declarations.start());
    context_.entity->declarations.reported();
    Name& name = qualifiedName(text);
    if (!name.element)
        name.element = std::make_unique<ElementDeclaration>();
    if (!name.element->isDeclared) {
        name.element->isDeclared = true;
        name.element->hasElementContent = model.type == XML_CTYPE_SEQ || model.type == XML_CTYPE_CHOICE;
    }
    if (!context_.handlers.declaration)
        return;
    const std::vector<XML_Char> modelText = contentModelText(model);
    context_.handlers.declaration->elementDecl(name.text,
                                               ownedString(UnitSpan(modelText.data(), modelText.size())));
}

void DtdEvents::attributeDeclaration(const XML_Char* element, const XML_Char* attribute, const XML_Char* type,
                                     const XML_Char* value, bool isRequiredOrFixed) {
    const EventPlace place(context_, context_.entity->declarations.start());
    context_.entity->declarations.reported();
    Name& elementName = qualifiedName(element);
    const Name& name = qualifiedName(attribute);
    if (!elementName.element)
        elementName.element = std::make_unique<ElementDeclaration>();
    auto& types = elementName.element->attributeTypes;
    if (!types.emplace(&name, context_.words.attributeType(type)).second)
        return; // the first declaration counts
    if (!context_.handlers.declaration)
        return;
    const XmlString& mode = value ? (isRequiredOrFixed ? context_.words.fixed : context_.words.null)
                                  : (isRequiredOrFixed ? context_.words.required : context_.words.implied);
    context_.handlers.declaration->attributeDecl(elementName.text, name.text, typeForHandlers(type), mode,
                                                 ownedString(value));
}

void DtdEvents::internalEntity(const XML_Char* name, bool isParameter, UnitSpan value) {
    const EventPlace place(context_, context_.entity->declarations.start());
    context_.entity->declarations.reported();
    context_.checkPlainName(UnitSpan(name), "an entity");
    if (context_.handlers.declaration)
        context_.handlers.declaration->internalEntityDecl(entityNameForHandlers(name, isParameter),
                                                          ownedString(value));
}

void DtdEvents::externalEntity(const XML_Char* name, bool isParameter, const XML_Char* base,
                               const XML_Char* systemId, const XML_Char* publicId) {
    const EventPlace place(context_, context_.entity->declarations.start());
    context_.entity->declarations.reportedAtEnd();
    context_.checkPlainName(UnitSpan(name), "an entity");
    entities_.declare(name, isParameter, systemId);
    if (context_.handlers.declaration)
        context_.handlers.declaration->externalEntityDecl(entityNameForHandlers(name, isParameter),
                                                          ownedString(publicId),
                                                          declaredSystemId(base, systemId));
}

void DtdEvents::unparsedEntity(const XML_Char* name, const XML_Char* base, const XML_Char* systemId,
                               const XML_Char* publicId, const XML_Char* notation) {
    const EventPlace place(context_, context_.entity->declarations.start());
    context_.entity->declarations.reported();
    context_.checkPlainName(UnitSpan(name), "an entity");
    if (context_.handlers.dtd)
        context_.handlers.dtd->unparsedEntityDecl(ownedString(name), ownedString(publicId),
                                                  declaredSystemId(base, systemId), ownedString(notation));
}

void DtdEvents::notation(const XML_Char* name, const XML_Char* base, const XML_Char* systemId,
                         const XML_Char* publicId) {
    const EventPlace place(context_, context_.entity->declarations.start());
    if (systemId)
        context_.entity->declarations.reported();
    else
        context_.entity->declarations.reportedAtEnd();
    context_.checkPlainName(UnitSpan(name), "a notation");
    if (context_.handlers.dtd)
        context_.handlers.dtd->notationDecl(ownedString(name), ownedString(publicId),
                                            declaredSystemId(base, systemId));
}

} // namespace Quillon::SaxEngine
