#ifndef ZUTARNEX_XML_NULLPOINTEREXCEPTION_H
#define ZUTARNEX_XML_NULLPOINTEREXCEPTION_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {

/// Something that must be there is not, such as the parent of a filter that is to parse. What is thrown is also a
/// System::InternalException.
class ZUTARNEX_API NullPointerException {
public:
    [[noreturn]] static void doThrow();
    /// Deliberate: `what` is ignored, this kind never carries a message (tests/xml/ExceptionsTest.cpp,
    /// NullPointerExceptionIgnoresWhat).
    [[noreturn]] static void doThrow(const XmlString& what);

    NullPointerException() noexcept;
    NullPointerException(const NullPointerException& other) noexcept;
    virtual ~NullPointerException() = 0;
};

} // namespace Quillon::Xml

#endif
