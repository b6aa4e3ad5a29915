#ifndef ZUTARNEX_XML_XMLSTRINGCONVERSION_H
#define ZUTARNEX_XML_XMLSTRINGCONVERSION_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {

/// Text of a string for code that knows nothing of strings.
///
/// Units:     only the units before the first zero unit are converted, whatever the size. REQUIRES: the units end
///            with a zero unit (those of a borrowed string may not).
/// Ownership: each result is a new NUL-terminated buffer that the caller frees by Runtime::release(); null for a
///            null string.
/// Throws:    System::OutOfMemoryException.
class ZUTARNEX_API XmlStringConversion {
public:
    static unsigned short* toUTF16(const XmlString& s);
    static char* toUTF8(const XmlString& s);   ///< ill-formed parts become U+FFFD
    static char* toNative(const XmlString& s); ///< the local code page; what it lacks becomes `?`
};

} // namespace Quillon::Xml

#endif
