#ifndef ZUTARNEX_XML_SAX_ENTITYRESOLVER2_H
#define ZUTARNEX_XML_SAX_ENTITYRESOLVER2_H

#include "xml/sax/EntityResolver.h"

namespace Quillon::Xml::Sax {

/// An entity resolver that also learns the entity's name and the base of its system identifier, and that may supply
/// an external subset to documents that name none.
///
/// Layout: EntityResolver's slots, then those below.
class ZUTARNEX_API EntityResolver2 : public EntityResolver {
public:
    ~EntityResolver2() override;

    using EntityResolver::resolveEntity;

    /// The external subset for the document with the root element `name`, or null for none.
    /// Ownership: the caller deletes the returned object.
    virtual InputSource* getExternalSubset(const XmlString& name, const XmlString& baseURI) = 0;
    /// As the operation of two arguments; `systemId` is as the document has it, not made absolute.
    /// Ownership: the caller deletes the returned object.
    virtual InputSource* resolveEntity(const XmlString& name, const XmlString& publicId,
                                       const XmlString& baseURI, const XmlString& systemId) = 0;
};

} // namespace Quillon::Xml::Sax

#endif
