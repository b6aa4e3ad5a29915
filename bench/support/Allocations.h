#ifndef ZUTARNEX_BENCH_SUPPORT_ALLOCATIONS_H
#define ZUTARNEX_BENCH_SUPPORT_ALLOCATIONS_H

#include <cstdint>

namespace Quillon::Bench {

/// How many blocks the process has asked the C library for: malloc, calloc, realloc and aligned ones, whoever calls them,
/// so `operator new`, the library's host and every peer alike. Not for use while other threads allocate.
std::uint64_t allocationCount() noexcept;

} // namespace Quillon::Bench

#endif
