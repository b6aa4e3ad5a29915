#ifndef ZUTARNEX_XML_SAX_LOCATOR2_H
#define ZUTARNEX_XML_SAX_LOCATOR2_H

#include "xml/sax/Locator.h"

namespace Quillon::Xml::Sax {

/// A locator that also knows the XML version and the encoding of the entity that is being read.
///
/// Layout: Locator's slots, then those below.
class ZUTARNEX_API Locator2 : public Locator {
public:
    ~Locator2() override;

    virtual XmlString getXMLVersion() const = 0;
    virtual XmlString getEncoding() const = 0;
};

} // namespace Quillon::Xml::Sax

#endif
