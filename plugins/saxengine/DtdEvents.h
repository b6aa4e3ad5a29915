#ifndef ZUTARNEX_SAXENGINE_DTDEVENTS_H
#define ZUTARNEX_SAXENGINE_DTDEVENTS_H

#include "UnitSpan.h"
#include "xml/XmlString.h"

namespace Quillon::SaxEngine {

struct ParseContext;
class ExternalEntities;
struct Name;

/// Turns what Expat reports of the document type declaration into events, and keeps what later events need: the types
/// of attributes, which elements hold elements only, and the external entities.
class DtdEvents {
public:
    DtdEvents(ParseContext& context, ExternalEntities& entities);

    void startDoctype(const XML_Char* name, const XML_Char* systemId, const XML_Char* publicId);
    void endDoctype();
    void elementDeclaration(const XML_Char* name, const XML_Content& model);
    void attributeDeclaration(const XML_Char* element, const XML_Char* attribute, const XML_Char* type,
                              const XML_Char* value, bool isRequiredOrFixed);
    void internalEntity(const XML_Char* name, bool isParameter, UnitSpan value);
    void externalEntity(const XML_Char* name, bool isParameter, const XML_Char* base,
                        const XML_Char* systemId, const XML_Char* publicId);
    void unparsedEntity(const XML_Char* name, const XML_Char* base, const XML_Char* systemId,
                        const XML_Char* publicId, const XML_Char* notation);
    void notation(const XML_Char* name, const XML_Char* base, const XML_Char* systemId,
                  const XML_Char* publicId);

private:
    Name& qualifiedName(const XML_Char* name);
    Xml::XmlString declaredSystemId(const XML_Char* base, const XML_Char* systemId) const;

    ParseContext& context_;
    ExternalEntities& entities_;
};

} // namespace Quillon::SaxEngine

#endif
