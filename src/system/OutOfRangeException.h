#ifndef ZUTARNEX_SYSTEM_OUTOFRANGEEXCEPTION_H
#define ZUTARNEX_SYSTEM_OUTOFRANGEEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::System {

/// A number is outside the range that an operation can serve. What is thrown is an InternalException, too; it
/// carries nothing.
class ZUTARNEX_API OutOfRangeException {
public:
    [[noreturn]] static void doThrow();

    OutOfRangeException() noexcept = default;
    OutOfRangeException(const OutOfRangeException& other) noexcept = default;
    virtual ~OutOfRangeException() = 0;
};

} // namespace Quillon::System

#endif
