#ifndef ZUTARNEX_XML_SAX_SAXNOTSUPPORTEDEXCEPTION_H
#define ZUTARNEX_XML_SAX_SAXNOTSUPPORTEDEXCEPTION_H

#include "xml/sax/SaxException.h"

namespace Quillon::Xml::Sax {

/// A feature or property is known but cannot be read, or set to the given value, now or at all.
///
/// Layout: that of SaxException.
class ZUTARNEX_API SaxNotSupportedException : public SaxException {
public:
    SaxNotSupportedException(); ///< an empty message. Throws: System::OutOfMemoryException
    SaxNotSupportedException(const XmlString& message);
    SaxNotSupportedException(const SaxNotSupportedException& other);
    SaxNotSupportedException& operator=(const SaxNotSupportedException& other) noexcept;
    ~SaxNotSupportedException() override;
};

} // namespace Quillon::Xml::Sax

#endif
