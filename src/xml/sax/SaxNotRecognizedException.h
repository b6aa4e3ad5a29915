#ifndef ZUTARNEX_XML_SAX_SAXNOTRECOGNIZEDEXCEPTION_H
#define ZUTARNEX_XML_SAX_SAXNOTRECOGNIZEDEXCEPTION_H

#include "xml/sax/SaxException.h"

namespace Quillon::Xml::Sax {

/// The name of a feature or property is unknown.
///
/// Layout: that of SaxException.
class ZUTARNEX_API SaxNotRecognizedException : public SaxException {
public:
    SaxNotRecognizedException(); ///< an empty message. Throws: System::OutOfMemoryException
    SaxNotRecognizedException(const XmlString& message);
    SaxNotRecognizedException(const SaxNotRecognizedException& other);
    SaxNotRecognizedException& operator=(const SaxNotRecognizedException& other) noexcept;
    ~SaxNotRecognizedException() override;
};

} // namespace Quillon::Xml::Sax

#endif
