#include "ExpatCallbacks.h"

#include "ParseSession.h"

#include <memory>

namespace Quillon::SaxEngine {

namespace {

ParseSession& sessionOf(void* userData) {
    return *static_cast<ParseSession*>(userData);
}

void XMLCALL onStartElement(void* userData, const XML_Char* name, const XML_Char** attributes) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.content.startElement(name, attributes); });
}

void XMLCALL onEndElement(void* userData, const XML_Char*) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.content.endElement(); });
}

void XMLCALL onText(void* userData, const XML_Char* units, int count) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.content.text(UnitSpan(units, static_cast<std::size_t>(count))); });
}

void XMLCALL onProcessingInstruction(void* userData, const XML_Char* target, const XML_Char* data) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.content.processingInstruction(target, data); });
}

void XMLCALL onComment(void* userData, const XML_Char* text) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.content.comment(text); });
}

void XMLCALL onStartCdata(void* userData) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.content.startCdata(); });
}

void XMLCALL onEndCdata(void* userData) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.content.endCdata(); });
}

void XMLCALL onSkippedEntity(void* userData, const XML_Char* name, int isParameter) {
    ParseSession& s = sessionOf(userData);
    if (!isParameter)
        s.deliver([&] { s.content.skippedEntity(name); });
}

void XMLCALL onXmlDeclaration(void* userData, const XML_Char* version, const XML_Char* encoding,
                              int standalone) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.declaration(version, encoding, standalone); });
}

void XMLCALL onDefault(void* userData, const XML_Char* units, int count) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.showDefault(UnitSpan(units, static_cast<std::size_t>(count))); });
}

void XMLCALL onStartDoctype(void* userData, const XML_Char* name, const XML_Char* systemId,
                            const XML_Char* publicId, int) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.dtd.startDoctype(name, systemId, publicId); });
}

void XMLCALL onEndDoctype(void* userData) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.dtd.endDoctype(); });
}

void XMLCALL onElementDeclaration(void* userData, const XML_Char* name, XML_Content* model) {
    ParseSession& s = sessionOf(userData);
    const XML_Parser parser = s.context.entity->parser();
    s.deliver([&] { s.dtd.elementDeclaration(name, *model); });
    XML_FreeContentModel(parser, model); // it is ours, also when the parse has failed
}

void XMLCALL onAttributeDeclaration(void* userData, const XML_Char* element, const XML_Char* attribute,
                                    const XML_Char* type, const XML_Char* value, int isRequiredOrFixed) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.dtd.attributeDeclaration(element, attribute, type, value, isRequiredOrFixed != 0); });
}

void XMLCALL onEntityDeclaration(void* userData, const XML_Char* name, int isParameter, const XML_Char* value,
                                 int valueLength, const XML_Char* base, const XML_Char* systemId,
                                 const XML_Char* publicId, const XML_Char* notation) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] {
        if (notation)
            s.dtd.unparsedEntity(name, base, systemId, publicId, notation);
        else if (systemId)
            s.dtd.externalEntity(name, isParameter != 0, base, systemId, publicId);
        else
            s.dtd.internalEntity(name, isParameter != 0,
                                 UnitSpan(value, static_cast<std::size_t>(valueLength)));
    });
}

void XMLCALL onNotation(void* userData, const XML_Char* name, const XML_Char* base, const XML_Char* systemId,
                        const XML_Char* publicId) {
    ParseSession& s = sessionOf(userData);
    s.deliver([&] { s.dtd.notation(name, base, systemId, publicId); });
}

/// The first argument is what XML_SetExternalEntityRefHandlerArg was given, not a parser.
int XMLCALL onExternalEntity(XML_Parser argument, const XML_Char* context, const XML_Char* base,
                             const XML_Char* systemId, const XML_Char* publicId) {
    ParseSession& s = sessionOf(argument);
    const bool isRead = s.deliver([&] {
        s.content.endText();
        s.entities.reference(context, base, systemId, publicId);
    });
    return isRead ? XML_STATUS_OK : XML_STATUS_ERROR;
}

} // namespace

void setCallbacks(XML_Parser parser, ParseSession& session) {
    XML_SetUserData(parser, &session);
    XML_SetElementHandler(parser, onStartElement, onEndElement);
    XML_SetCharacterDataHandler(parser, onText);
    XML_SetProcessingInstructionHandler(parser, onProcessingInstruction);
    XML_SetCommentHandler(parser, onComment);
    XML_SetCdataSectionHandler(parser, onStartCdata, onEndCdata);
    XML_SetSkippedEntityHandler(parser, onSkippedEntity);
    XML_SetXmlDeclHandler(parser, onXmlDeclaration);
    XML_SetDefaultHandlerExpand(parser, onDefault);
    XML_SetEndDoctypeDeclHandler(parser, onEndDoctype);
    XML_SetExternalEntityRefHandler(parser, onExternalEntity);
    XML_SetExternalEntityRefHandlerArg(parser, &session);
    reportElementDeclarations(parser,
                              false); // a parser of an entity takes over what its parent's handlers are
    reportAttributeDeclarations(parser, false);
    reportEntityDeclarations(parser, false);
    reportNotationDeclarations(parser, false);
}

void reportDoctype(XML_Parser parser) {
    XML_SetStartDoctypeDeclHandler(parser, onStartDoctype);
}
void reportElementDeclarations(XML_Parser parser, bool on) {
    XML_SetElementDeclHandler(parser, on ? onElementDeclaration : nullptr);
}
void reportAttributeDeclarations(XML_Parser parser, bool on) {
    XML_SetAttlistDeclHandler(parser, on ? onAttributeDeclaration : nullptr);
}
void reportEntityDeclarations(XML_Parser parser, bool on) {
    XML_SetEntityDeclHandler(parser, on ? onEntityDeclaration : nullptr);
}
void reportNotationDeclarations(XML_Parser parser, bool on) {
    XML_SetNotationDeclHandler(parser, on ? onNotation : nullptr);
}

} // namespace Quillon::SaxEngine
