#ifndef ZUTARNEX_SYSTEM_SHAREDLIBRARYNOTFOUNDEXCEPTION_H
#define ZUTARNEX_SYSTEM_SHAREDLIBRARYNOTFOUNDEXCEPTION_H

#include "zutarnex/export.h"

namespace Quillon::System {

/// A shared object could not be opened. What is thrown is an InternalException, too; it carries neither path nor
/// reason.
class ZUTARNEX_API SharedLibraryNotFoundException {
public:
    [[noreturn]] static void doThrow();

    SharedLibraryNotFoundException() noexcept = default;
    SharedLibraryNotFoundException(const SharedLibraryNotFoundException& other) noexcept = default;
    virtual ~SharedLibraryNotFoundException() = 0;
};

} // namespace Quillon::System

#endif
