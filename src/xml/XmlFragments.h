#ifndef ZUTARNEX_XML_XMLFRAGMENTS_H
#define ZUTARNEX_XML_XMLFRAGMENTS_H

#include "zutarnex/export.h"

namespace Quillon::Xml {

/// Pieces of XML text: constant, NUL-terminated arrays that live as long as the library is loaded.
ZUTARNEX_API const unsigned short* uniStartEntity() noexcept;     ///< `<!ENTITY `
ZUTARNEX_API const unsigned short* uniStartPI() noexcept;         ///< `<?`
ZUTARNEX_API const unsigned short* uniEndPI() noexcept;           ///< `?>`
ZUTARNEX_API const unsigned short* uniXMLDeclStringV1() noexcept; ///< `<?xml version="1.0"?>`
ZUTARNEX_API const unsigned short*
uniXMLDeclStringV1Encoding() noexcept;                       ///< `<?xml version="1.0" encoding="`
ZUTARNEX_API const unsigned short* uniXMLDecl2() noexcept;   ///< `"?>` and a line feed
ZUTARNEX_API const unsigned short* uniEndElement() noexcept; ///< `</`
ZUTARNEX_API const unsigned short* uniTrue() noexcept;       ///< `true`
ZUTARNEX_API const unsigned short* uniFalse() noexcept;      ///< `false`
ZUTARNEX_API const unsigned short* uniZeroString() noexcept; ///< `0`
ZUTARNEX_API const unsigned short* uniOneString() noexcept;  ///< `1`

} // namespace Quillon::Xml

#endif
