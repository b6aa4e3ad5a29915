#ifndef ZUTARNEX_XML_SAX_LOCATOR_H
#define ZUTARNEX_XML_SAX_LOCATOR_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// Where in a document the event stands that is being delivered.
///
/// Layout: no base, no data; slots in the order of declaration (tests/abi/SaxAbiTest.cpp).
/// Units:  lines and columns count from 1; numbers have 64 bits on every platform.
class ZUTARNEX_API Locator {
public:
    virtual ~Locator();

    virtual XmlString getPublicId() const = 0;
    virtual XmlString getSystemId() const = 0;
    virtual long long getLineNumber() const = 0;
    virtual long long getColumnNumber() const = 0;
};

} // namespace Quillon::Xml::Sax

#endif
