#include "xml/sax/RemoveNamespaceFilter.h"

#include "xml/sax/AttributesImpl.h"

namespace Quillon::Xml::Sax {

namespace {

void appendCopy(AttributesImpl& list, const XmlString& uri, const Attributes& source, unsigned int index) {
    const XmlString value = source.getValue(index);
    const XmlString type = source.getType(index);
    const XmlString qName = source.getQName(index);
    const XmlString localName = source.getLocalName(index);
    list.addAttribute(uri, localName, qName, type, value);
}

} // namespace

RemoveNamespaceFilter::RemoveNamespaceFilter(XmlReader* parent, XmlString namespaceUri)
    : XmlFilterImpl(parent), namespaceUri_(namespaceUri) {}

RemoveNamespaceFilter::~RemoveNamespaceFilter() = default;

void RemoveNamespaceFilter::startElement(const XmlString& uri, const XmlString& localName,
                                         const XmlString& qName, const Attributes& attributes) {
    if (uri.compare(namespaceUri_) == 0)
        return;
    AttributesImpl filtered;
    for (unsigned int i = 0; i < attributes.getLength(); ++i) {
        const XmlString attributeUri = attributes.getURI(i);
        if (attributeUri.compare(namespaceUri_) != 0)
            appendCopy(filtered, attributeUri, attributes, i);
    }
    XmlFilterImpl::startElement(uri, localName, qName, filtered);
}

void RemoveNamespaceFilter::endElement(const XmlString& uri, const XmlString& localName,
                                       const XmlString& qName) {
    if (uri.compare(namespaceUri_) == 0)
        return;
    XmlFilterImpl::endElement(uri, localName, qName);
}

} // namespace Quillon::Xml::Sax
