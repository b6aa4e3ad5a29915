#ifndef ZUTARNEX_XML_SAX_ENTITYRESOLVER_H
#define ZUTARNEX_XML_SAX_ENTITYRESOLVER_H

#include "xml/XmlString.h"
#include "xml/sax/InputSource.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// Says where an external entity is to be read from.
///
/// Layout: no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Throws: an implementation may throw SaxException or a kind of Quillon::Xml to stop the parse.
class ZUTARNEX_API EntityResolver {
public:
    virtual ~EntityResolver();

    /// The source of the entity with these identifiers; a missing one is a null or empty string. Null: the caller
    /// resolves the entity in its default way.
    /// Ownership: the caller deletes the returned object.
    virtual InputSource* resolveEntity(const XmlString& publicId, const XmlString& systemId) = 0;
};

} // namespace Quillon::Xml::Sax

#endif
