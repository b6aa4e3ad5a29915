#ifndef ZUTARNEX_RUNTIME_HOSTARRAYINTERNAL_H
#define ZUTARNEX_RUNTIME_HOSTARRAYINTERNAL_H

#include "runtime/HostServices.h"

#include <memory>

namespace Quillon::Runtime {

struct HostRelease {
    void operator()(void* block) const noexcept { release(block); }
};

/// An array from the host's allocator that frees itself.
template <class T>
using HostArray = std::unique_ptr<T[], HostRelease>;

} // namespace Quillon::Runtime

#endif
