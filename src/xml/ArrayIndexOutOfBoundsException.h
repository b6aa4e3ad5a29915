#ifndef ZUTARNEX_XML_ARRAYINDEXOUTOFBOUNDSEXCEPTION_H
#define ZUTARNEX_XML_ARRAYINDEXOUTOFBOUNDSEXCEPTION_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {

/// An index behind the end of a list. What is thrown is also a System::UserException with the message
/// "Array index out of bounds; <what>: <index>.", and Identifiable as "KAVOLT:ArrayIndexOutOfBoundsException".
class ZUTARNEX_API ArrayIndexOutOfBoundsException {
public:
    /// `what` goes into the message in the local code page. Throws instead, when there is no memory for the
    /// message: System::OutOfMemoryException or std::bad_alloc.
    ///
    /// Deliberate: an index above 2^31 - 1 is shown as a negative number (tests/xml/ExceptionsTest.cpp,
    /// IndexAboveIntMaxIsShownNegative).
    [[noreturn]] static void doThrow(const XmlString& what, unsigned int index);

    ArrayIndexOutOfBoundsException() noexcept;
    ArrayIndexOutOfBoundsException(const ArrayIndexOutOfBoundsException& other) noexcept;
    virtual ~ArrayIndexOutOfBoundsException() = 0;
};

} // namespace Quillon::Xml

#endif
