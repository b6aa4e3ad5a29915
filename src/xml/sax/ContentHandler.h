#ifndef ZUTARNEX_XML_SAX_CONTENTHANDLER_H
#define ZUTARNEX_XML_SAX_CONTENTHANDLER_H

#include "xml/XmlString.h"
#include "xml/sax/Attributes.h"
#include "xml/sax/Locator.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// Receives the content of a document, in document order:
///
///     setDocumentLocator, startDocument,
///       startPrefixMapping*, startElement,
///         (characters | ignorableWhitespace | processingInstruction | skippedEntity | an element)*,
///       endElement, endPrefixMapping*,
///     endDocument
///
/// Layout:    no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Units:     text is `length` UTF-16 code units of the array `ch`, from index `start`; one run of text may come in
///            several events.
/// Ownership: arguments belong to the caller. Attributes and character arrays are valid only during the call;
///            strings may be copied, which shares them; the locator is valid until endDocument has returned.
/// Throws:    an implementation may throw SaxException or a kind of Quillon::Xml to stop the parse.
class ZUTARNEX_API ContentHandler {
public:
    virtual ~ContentHandler();

    /// `locator` tells where in the document each later event stands.
    virtual void setDocumentLocator(Locator* locator) = 0;
    virtual void startDocument() = 0;
    virtual void endDocument() = 0;
    virtual void startPrefixMapping(const XmlString& prefix, const XmlString& uri) = 0;
    virtual void endPrefixMapping(const XmlString& prefix) = 0;
    /// An element in no namespace has a null or empty `uri`.
    virtual void startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                              const Attributes& attributes) = 0;
    virtual void endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) = 0;
    virtual void characters(const unsigned short* ch, unsigned int start, unsigned int length) = 0;
    virtual void ignorableWhitespace(const unsigned short* ch, unsigned int start, unsigned int length) = 0;
    virtual void processingInstruction(const XmlString& target, const XmlString& data) = 0;
    virtual void skippedEntity(const XmlString& name) = 0;
};

} // namespace Quillon::Xml::Sax

#endif
