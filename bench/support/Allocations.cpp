#include "support/Allocations.h"

#include <cerrno>
#include <cstddef>

namespace Quillon::Bench {

namespace {

// Programs are measured on one thread; the count of a few blocks of another one may be lost.
constinit std::uint64_t count = 0;

} // namespace

std::uint64_t allocationCount() noexcept {
    return count;
}

} // namespace Quillon::Bench

// A definition in the executable is the one that every shared library uses, too. Freeing needs no look: `free` stays
// glibc's own.
extern "C" {

void* __libc_malloc(std::size_t bytes);                          // NOLINT(bugprone-reserved-identifier)
void* __libc_calloc(std::size_t elements, std::size_t bytes);    // NOLINT(bugprone-reserved-identifier)
void* __libc_realloc(void* block, std::size_t bytes);            // NOLINT(bugprone-reserved-identifier)
void* __libc_memalign(std::size_t alignment, std::size_t bytes); // NOLINT(bugprone-reserved-identifier)

void* malloc(std::size_t bytes) {
    ++Quillon::Bench::count;
    return __libc_malloc(bytes);
}

void* calloc(std::size_t elements, std::size_t bytes) {
    ++Quillon::Bench::count;
    return __libc_calloc(elements, bytes);
}

void* realloc(void* block, std::size_t bytes) {
    ++Quillon::Bench::count;
    return __libc_realloc(block, bytes);
}

void* aligned_alloc(std::size_t alignment, std::size_t bytes) {
    ++Quillon::Bench::count;
    return __libc_memalign(alignment, bytes);
}

int posix_memalign(void** block, std::size_t alignment, std::size_t bytes) {
    ++Quillon::Bench::count;
    void* aligned = __libc_memalign(alignment, bytes);
    if (!aligned)
        return ENOMEM;
    *block = aligned;
    return 0;
}
}
