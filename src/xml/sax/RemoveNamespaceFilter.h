#ifndef ZUTARNEX_XML_SAX_REMOVENAMESPACEFILTER_H
#define ZUTARNEX_XML_SAX_REMOVENAMESPACEFILTER_H

#include "xml/sax/XmlFilterImpl.h"

namespace Quillon::Xml::Sax {

/// Takes the elements and attributes of one namespace out of a document. What stays keeps its names.
///
/// Deliberate: only the tags of an element go; its content stays and becomes that of the nearest ancestor left. Prefix
/// mappings are reported as ever (tests/xml/sax/RemoveNamespaceFilterTest.cpp, ContentOfRemovedElementsStays,
/// PrefixMappingsStay).
///
/// Layout: XmlFilterImpl; namespaceUri (tests/abi/SaxAbiTest.cpp).
/// Throws: System::OutOfMemoryException when an element's attributes cannot be copied; otherwise as XmlFilterImpl.
class ZUTARNEX_API RemoveNamespaceFilter : public XmlFilterImpl {
public:
    /// An empty URI removes what is in no namespace.
    RemoveNamespaceFilter(XmlReader* parent, XmlString namespaceUri);
    ~RemoveNamespaceFilter() override;

    /// The handler receives a list of its own, without flags: it lives only for the call.
    void startElement(const XmlString& uri, const XmlString& localName, const XmlString& qName,
                      const Attributes& attributes) override;
    void endElement(const XmlString& uri, const XmlString& localName, const XmlString& qName) override;

private:
    XmlString namespaceUri_;
};

} // namespace Quillon::Xml::Sax

#endif
