#ifndef ZUTARNEX_XML_SAX_LEXICALHANDLER_H
#define ZUTARNEX_XML_SAX_LEXICALHANDLER_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// Receives what does not change a document's meaning: comments and the boundaries of the DTD, of entities and of
/// CDATA sections. It is registered with a reader as the property `lexical-handler`.
///
/// Layout:    no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Ownership: arguments belong to the caller; the array of a comment is valid only during the call.
/// Throws:    an implementation may throw SaxException or a kind of Quillon::Xml to stop the parse.
class ZUTARNEX_API LexicalHandler {
public:
    virtual ~LexicalHandler();

    /// A missing identifier is a null or empty string.
    virtual void startDTD(const XmlString& name, const XmlString& publicId, const XmlString& systemId) = 0;
    virtual void endDTD() = 0;
    /// `name` is the entity's; `%name` for a parameter entity, `[dtd]` for the external subset.
    virtual void startEntity(const XmlString& name) = 0;
    virtual void endEntity(const XmlString& name) = 0;
    virtual void startCDATA() = 0;
    virtual void endCDATA() = 0;
    /// The comment's text: `length` UTF-16 code units of `ch`, from index `start`.
    virtual void comment(const unsigned short* ch, unsigned int start, unsigned int length) = 0;
};

} // namespace Quillon::Xml::Sax

#endif
