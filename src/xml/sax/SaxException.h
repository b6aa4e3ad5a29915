#ifndef ZUTARNEX_XML_SAX_SAXEXCEPTION_H
#define ZUTARNEX_XML_SAX_SAXEXCEPTION_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// What handlers and readers throw to end a parse.
///
/// It stands apart from the other exceptions of the library: it has no base, so it is caught neither as
/// System::Throwable nor as std::exception.
///
/// Layout:    message (tests/abi/SaxAbiTest.cpp).
/// Ownership: copies share the text; a message that is a view on a buffer of the application must not outlive it.
class ZUTARNEX_API SaxException {
public:
    SaxException(); ///< an empty message. Throws: System::OutOfMemoryException
    SaxException(const XmlString& message);
    SaxException(const SaxException& other);
    SaxException& operator=(const SaxException& other) noexcept;
    virtual ~SaxException();

    XmlString getMessage() const;

private:
    XmlString message_;
};

} // namespace Quillon::Xml::Sax

#endif
