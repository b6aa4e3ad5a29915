#ifndef ZUTARNEX_XML_CLOSEABLE_H
#define ZUTARNEX_XML_CLOSEABLE_H

#include "zutarnex/export.h"

#include <cstddef>
#include <new>

namespace Quillon::Xml {

/// Something whose use ends with a call.
///
/// Ownership: allocated and freed through the global operators, whichever module creates or deletes it.
class ZUTARNEX_API Closeable {
public:
    virtual ~Closeable() = 0;

    /// Ends the use of the resource. Throws: IOException.
    virtual void close() = 0;

    static void* operator new(std::size_t bytes);
    static void* operator new[](std::size_t bytes);
    static void* operator new(std::size_t bytes, void* place) noexcept;
    static void* operator new[](std::size_t bytes, void* place) noexcept;
    static void* operator new(std::size_t bytes, const std::nothrow_t& tag) noexcept;
    static void* operator new[](std::size_t bytes, const std::nothrow_t& tag) noexcept;
    static void operator delete(void* block) noexcept;
    static void operator delete[](void* block) noexcept;
    static void operator delete(void* block, void* place) noexcept;
    static void operator delete[](void* block, void* place) noexcept;
    static void operator delete(void* block, const std::nothrow_t& tag) noexcept;
    static void operator delete[](void* block, const std::nothrow_t& tag) noexcept;
};

} // namespace Quillon::Xml

#endif
