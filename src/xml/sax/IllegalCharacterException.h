#ifndef ZUTARNEX_XML_SAX_ILLEGALCHARACTEREXCEPTION_H
#define ZUTARNEX_XML_SAX_ILLEGALCHARACTEREXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::Xml::Sax {

/// A character cannot be written. What is thrown is also a System::UserException, with the message
/// `Illegal or non-writable character: U+....`, and a System::Identifiable, "KAVOLT:IllegalCharacterException".
///
/// Layout: no data.
class ZUTARNEX_API IllegalCharacterException {
public:
    /// `ch` is printed in hexadecimal, with at least four digits. Throws instead, when there is no memory for the
    /// message: System::OutOfMemoryException or std::bad_alloc.
    [[noreturn]] static void doThrow(int ch);

    IllegalCharacterException() noexcept;
    IllegalCharacterException(const IllegalCharacterException& other) noexcept;
    virtual ~IllegalCharacterException() = 0;
};

} // namespace Quillon::Xml::Sax

#endif
