#ifndef ZUTARNEX_XML_ILLEGALARGUMENTEXCEPTION_H
#define ZUTARNEX_XML_ILLEGALARGUMENTEXCEPTION_H

#include "xml/XmlString.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {

/// An argument that an operation cannot take. What is thrown is also a System::UserException with the message
/// "Illegal argument provided: <what>.", and Identifiable as "KAVOLT:IllegalArgumentException".
class ZUTARNEX_API IllegalArgumentException {
public:
    /// `what` goes into the message in the local code page. Throws instead, when there is no memory for the
    /// message: System::OutOfMemoryException or std::bad_alloc.
    [[noreturn]] static void doThrow(const XmlString& what);

    IllegalArgumentException() noexcept;
    IllegalArgumentException(const IllegalArgumentException& other) noexcept;
    virtual ~IllegalArgumentException() = 0;
};

} // namespace Quillon::Xml

#endif
