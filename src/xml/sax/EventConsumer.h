#ifndef ZUTARNEX_XML_SAX_EVENTCONSUMER_H
#define ZUTARNEX_XML_SAX_EVENTCONSUMER_H

#include "xml/XmlString.h"
#include "xml/sax/ContentHandler.h"
#include "xml/sax/DTDHandler.h"
#include "xml/sax/ErrorHandler.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// The receiving end of an event pipeline: it hands out the handlers to which a producer delivers its events.
///
/// Layout:    no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Ownership: nothing is given away or taken; the handlers live as long as their consumer.
class ZUTARNEX_API EventConsumer {
public:
    virtual ~EventConsumer();

    virtual ContentHandler* getContentHandler() const = 0;
    virtual DTDHandler* getDTDHandler() const = 0;
    /// For SC_Properties_LexicalHandler() a LexicalHandler*, for SC_Properties_DeclarationHandler() a DeclHandler*,
    /// each as `void*`. Throws: SaxNotRecognizedException for any other name.
    virtual void* getProperty(const XmlString& name) const = 0;
    virtual void setErrorHandler(ErrorHandler* handler) = 0;
};

} // namespace Quillon::Xml::Sax

#endif
