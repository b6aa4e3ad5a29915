#ifndef ZUTARNEX_XML_IOEXCEPTION_H
#define ZUTARNEX_XML_IOEXCEPTION_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {

/// A channel could not do its work. The library itself never throws it: implementations of byte channels do.
/// What is thrown is also a System::InternalException.
class ZUTARNEX_API IOException {
public:
    [[noreturn]] static void doThrow();
    /// Deliberate: `what` is ignored, this kind never carries a message (tests/xml/ExceptionsTest.cpp,
    /// IOExceptionIgnoresWhat).
    [[noreturn]] static void doThrow(const XmlString& what);

    IOException() noexcept;
    IOException(const IOException& other) noexcept;
    virtual ~IOException() = 0;
};

} // namespace Quillon::Xml

#endif
