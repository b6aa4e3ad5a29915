#ifndef ZUTARNEX_SYSTEM_OUTOFMEMORYEXCEPTION_H
#define ZUTARNEX_SYSTEM_OUTOFMEMORYEXCEPTION_H

#include "system/Throwable.h"

namespace Quillon::System {

/// The host's allocator could not give a block, or more was asked for than a 32-bit count of bytes can hold.
/// (Objects come from `new`, whose failure is std::bad_alloc.)
class ZUTARNEX_API OutOfMemoryException : public Throwable {
public:
    [[noreturn]] static void doThrow();

    OutOfMemoryException() noexcept;
    OutOfMemoryException(const OutOfMemoryException& other) noexcept;
    OutOfMemoryException& operator=(const OutOfMemoryException& other) noexcept;
    ~OutOfMemoryException() override;

    const char* what() const noexcept override;
};

} // namespace Quillon::System

#endif
