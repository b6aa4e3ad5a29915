#ifndef ZUTARNEX_XML_SAX_XMLREADER_H
#define ZUTARNEX_XML_SAX_XMLREADER_H

#include "xml/XmlString.h"
#include "xml/sax/ContentHandler.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/EntityResolver.h"
#include "xml/sax/ErrorHandler.h"
#include "xml/sax/InputSource.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// Reads documents and delivers their events to the handlers that are registered with it.
///
/// Features and properties are named by SaxIdentifiers.h. A property's value is a `void*`; for the lexical and the
/// declaration handler it is a LexicalHandler* or a DeclHandler*, converted to exactly that before it becomes `void*`.
///
/// Layout:    no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Ownership: handlers are not taken; they must stay alive until the parse is over.
/// Threads:   a parse runs, and calls the handlers, on the thread that called `parse`.
/// Throws:    SaxNotRecognizedException for an unknown feature or property, SaxNotSupportedException for a known one
///            that cannot be had so. `parse` throws SaxException, IOException and whatever a handler throws.
class ZUTARNEX_API XmlReader {
public:
    virtual ~XmlReader();

    virtual void setFeature(const XmlString& name, bool value) = 0;
    virtual bool getFeature(const XmlString& name) const = 0;
    virtual void setProperty(const XmlString& name, void* value) = 0;
    virtual void* getProperty(const XmlString& name) const = 0;

    /// Null: none.
    virtual void setEntityResolver(EntityResolver* resolver) = 0;
    virtual EntityResolver* getEntityResolver() const = 0;
    virtual void setDTDHandler(DTDHandler* handler) = 0;
    virtual DTDHandler* getDTDHandler() const = 0;
    virtual void setContentHandler(ContentHandler* handler) = 0;
    virtual ContentHandler* getContentHandler() const = 0;
    virtual void setErrorHandler(ErrorHandler* handler) = 0;
    virtual ErrorHandler* getErrorHandler() const = 0;

    virtual void parse(InputSource& source) = 0;
    virtual void parse(const XmlString& systemId) = 0;
};

} // namespace Quillon::Xml::Sax

#endif
