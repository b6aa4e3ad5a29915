#ifndef ZUTARNEX_XML_SAX_XMLFILTER_H
#define ZUTARNEX_XML_SAX_XMLFILTER_H

#include "xml/sax/XmlReader.h"

namespace Quillon::Xml::Sax {

/// A reader that gets its events from another reader, its parent.
///
/// Layout:    XmlReader's slots, then those below.
/// Ownership: the parent is not taken; it must stay alive until the filter's last use.
class ZUTARNEX_API XmlFilter : public XmlReader {
public:
    ~XmlFilter() override;

    virtual void setParent(XmlReader* parent) = 0;
    virtual XmlReader* getParent() const = 0;
};

} // namespace Quillon::Xml::Sax

#endif
