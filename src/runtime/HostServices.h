#ifndef ZUTARNEX_RUNTIME_HOSTSERVICES_H
#define ZUTARNEX_RUNTIME_HOSTSERVICES_H

#include "zutarnex/export.h"

#include <cstdarg>
#include <cstddef>
#include <cstdint>

namespace Quillon::Runtime {

/// A table of message texts, keyed by 32-bit codes: eight words on a 32-bit platform.
struct MessageTable {
    std::uint32_t count;        ///< how many messages
    std::uint32_t facility;     ///< the upper 16 bits of every code
    const std::uint32_t* codes; ///< `count` codes, ended by 0xFFFFFFFF
    const char* const* names;   ///< `count` symbolic names
    const char* const* formats; ///< `count` printf formats
    const char* facilityText;
    std::uint32_t reserved1; ///< 0
    std::uint32_t reserved2; ///< 0
};

/// What the library asks of the process that hosts it. Every member must be set.
///
/// Ownership: blocks and texts that cross this interface come from `allocate`, `allocateZeroed` or `resize` and go
///            back through `release`, whichever side frees them.
/// Threads:   every member must be callable from several threads at once.
struct HostServices {
    void* (*allocate)(std::size_t bytes);                                ///< null when out of memory
    void* (*allocateZeroed)(std::size_t count, std::size_t elementSize); ///< null when out of memory
    void* (*resize)(void* block, std::size_t bytes); ///< null: out of memory, `block` is kept
    void (*release)(void* block);                    ///< null is allowed

    /// Prints to the host's standard output, as vprintf.
    int (*print)(const char* format, std::va_list arguments);

    /// NUL-terminated text in the local code page, to and from NUL-terminated UTF-16. Ill-formed input becomes
    /// U+FFFD, what the code page lacks becomes `?`. Null when out of memory.
    unsigned short* (*localToUtf16)(const char* text);
    char* (*utf16ToLocal)(const unsigned short* text);

    /// Makes the codes of `table`, which is not copied, known to `formatMessage`. A table may come twice.
    void (*addMessageTable)(void* memoryContext, const MessageTable* table);
    /// The text of `code`, filled with `arguments`; null when out of memory. `identifier` may be null.
    char* (*formatMessage)(const char* identifier, std::uint32_t code, std::va_list arguments);

    void (*fatalError)(int code, const char* text); ///< ends the process; does not return
    void (*panic)(int status);                      ///< ends the process; does not return
    void (*unexpected)(); ///< an exception left a guarded operation; does not return
};

/// The table in force: the default until `setHostServices` has replaced it.
ZUTARNEX_API const HostServices& hostServices() noexcept;

/// The C library's services: malloc and its kin, vprintf to standard output, the code page of the current LC_CTYPE
/// locale. `fatalError` prints `fatal error <code>: <text>` to standard error and ends the process with the exit
/// status `code`; `panic` ends it with `status`; neither runs destructors. `unexpected` is std::terminate.
ZUTARNEX_API const HostServices& defaultHostServices() noexcept;

/// Copies `services`. Call it once, before any other use of the library and before a second thread exists: a block
/// must go back to the allocator that it came from.
ZUTARNEX_API void setHostServices(const HostServices& services) noexcept;

/// Frees a buffer that an operation of this library returned and documented as the host's.
inline void release(void* block) noexcept {
    hostServices().release(block);
}

} // namespace Quillon::Runtime

#endif
