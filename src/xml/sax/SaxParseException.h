#ifndef ZUTARNEX_XML_SAX_SAXPARSEEXCEPTION_H
#define ZUTARNEX_XML_SAX_SAXPARSEEXCEPTION_H

#include "xml/sax/Locator.h"
#include "xml/sax/SaxException.h"

#include <cstdint>

namespace Quillon::Xml::Sax {

/// A fault in a document, with the place where it was found.
///
/// Layout: SaxException; publicId, systemId, lineNumber, columnNumber (tests/abi/SaxAbiTest.cpp).
class ZUTARNEX_API SaxParseException : public SaxException {
public:
    SaxParseException(const XmlString& message, const XmlString& publicId, const XmlString& systemId,
                      long long lineNumber, long long columnNumber);
    /// The place is what `locator` says now; later changes of it do not show.
    SaxParseException(const XmlString& message, const Locator& locator);
    SaxParseException(const SaxParseException& other);
    SaxParseException& operator=(const SaxParseException& other) noexcept;
    ~SaxParseException() override;

    XmlString getPublicId() const;
    XmlString getSystemId() const;
    long long getLineNumber() const noexcept;
    long long getColumnNumber() const noexcept;

private:
    XmlString publicId_;
    XmlString systemId_;
    std::int64_t lineNumber_;
    std::int64_t columnNumber_;
};

} // namespace Quillon::Xml::Sax

#endif
