#ifndef ZUTARNEX_XML_IMMUTABLEOBJECTWRITEERROR_H
#define ZUTARNEX_XML_IMMUTABLEOBJECTWRITEERROR_H

#include "zutarnex/export.h"

namespace Quillon::Xml {

/// Somebody tried to modify an immutable XmlString. What is thrown is also a System::InternalException.
class ZUTARNEX_API ImmutableObjectWriteError {
public:
    [[noreturn]] static void doThrow();

    ImmutableObjectWriteError() noexcept;
    ImmutableObjectWriteError(const ImmutableObjectWriteError& other) noexcept;
    virtual ~ImmutableObjectWriteError() = 0;
};

} // namespace Quillon::Xml

#endif
