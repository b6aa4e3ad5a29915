#ifndef ZUTARNEX_XML_NAMESPACECONTEXT_H
#define ZUTARNEX_XML_NAMESPACECONTEXT_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

#include <vector>

namespace Quillon::Xml {

/// Which prefix stands for which namespace URI at some place of a document. For users to implement: the library
/// neither implements nor calls it.
class ZUTARNEX_API NamespaceContext {
public:
    virtual ~NamespaceContext() = 0;

    /// The URI that `prefix` is bound to; null when it is not bound.
    virtual XmlString getNamespaceURI(const XmlString& prefix) const = 0;
    /// One of the prefixes bound to `uri`; null when there is none.
    virtual XmlString getPrefix(const XmlString& uri) const = 0;
    /// All prefixes bound to `uri`.
    virtual std::vector<XmlString> getPrefixes(const XmlString& uri) const = 0;
};

} // namespace Quillon::Xml

#endif
