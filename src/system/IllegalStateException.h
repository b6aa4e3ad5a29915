#ifndef ZUTARNEX_SYSTEM_ILLEGALSTATEEXCEPTION_H
#define ZUTARNEX_SYSTEM_ILLEGALSTATEEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::System {

/// An operation was called at a time when it must not be.
///
/// Deliberate: what is thrown has this class as its only base, so neither Throwable nor std::exception catches it;
/// and the reason is dropped (tests/system/SystemExceptionsTest.cpp, IllegalStateIsNoThrowable).
class ZUTARNEX_API IllegalStateException {
public:
    [[noreturn]] static void doThrow(const char* reason);

    IllegalStateException() noexcept = default;
    IllegalStateException(const IllegalStateException& other) noexcept = default;
    virtual ~IllegalStateException() = 0;
};

} // namespace Quillon::System

#endif
