#include "support/Allocations.h"

#include "runtime/HostServices.h"

#include <cstdlib>
#include <new>

namespace Quillon::Testing {

namespace {

constinit AllocationSource hostSource;
constinit AllocationSource newSource;

void* counted(AllocationSource& source, void* block) noexcept {
    if (block)
        source.allocated();
    return block;
}

void* hostAllocate(std::size_t bytes) {
    return hostSource.admit() ? counted(hostSource, std::malloc(bytes)) : nullptr;
}

void* hostAllocateZeroed(std::size_t count, std::size_t size) {
    return hostSource.admit() ? counted(hostSource, std::calloc(count, size)) : nullptr;
}

void* hostResize(void* block, std::size_t bytes) {
    if (!hostSource.admit())
        return nullptr;
    void* resized = std::realloc(block, bytes);
    return block ? resized : counted(hostSource, resized);
}

void hostRelease(void* block) {
    if (block)
        hostSource.released();
    std::free(block);
}

void* newBlock(std::size_t bytes, std::size_t alignment) noexcept {
    if (!newSource.admit())
        return nullptr;
    void* block = alignment <= alignof(std::max_align_t)
                      ? std::malloc(bytes ? bytes : 1)
                      : std::aligned_alloc(alignment, (bytes + alignment - 1) / alignment * alignment);
    return counted(newSource, block);
}

void* newOrThrow(std::size_t bytes, std::size_t alignment) {
    void* block = newBlock(bytes, alignment);
    if (!block)
        throw std::bad_alloc();
    return block;
}

void deleteBlock(void* block) noexcept {
    if (block)
        newSource.released();
    std::free(block);
}

constexpr std::size_t kPlain = alignof(std::max_align_t);

} // namespace

AllocationSource& hostMemory() noexcept {
    return hostSource;
}
AllocationSource& newMemory() noexcept {
    return newSource;
}

void installCountingHost() noexcept {
    Runtime::HostServices services = Runtime::defaultHostServices();
    services.allocate = hostAllocate;
    services.allocateZeroed = hostAllocateZeroed;
    services.resize = hostResize;
    services.release = hostRelease;
    Runtime::setHostServices(services);
}

} // namespace Quillon::Testing

using namespace Quillon::Testing;

void* operator new(std::size_t n) {
    return newOrThrow(n, kPlain);
}
void* operator new[](std::size_t n) {
    return newOrThrow(n, kPlain);
}
void* operator new(std::size_t n, const std::nothrow_t&) noexcept {
    return newBlock(n, kPlain);
}
void* operator new[](std::size_t n, const std::nothrow_t&) noexcept {
    return newBlock(n, kPlain);
}
void* operator new(std::size_t n, std::align_val_t a) {
    return newOrThrow(n, static_cast<std::size_t>(a));
}
void* operator new[](std::size_t n, std::align_val_t a) {
    return newOrThrow(n, static_cast<std::size_t>(a));
}
void operator delete(void* p) noexcept {
    deleteBlock(p);
}
void operator delete[](void* p) noexcept {
    deleteBlock(p);
}
void operator delete(void* p, std::size_t) noexcept {
    deleteBlock(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    deleteBlock(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
    deleteBlock(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
    deleteBlock(p);
}
void operator delete(void* p, std::align_val_t) noexcept {
    deleteBlock(p);
}
void operator delete[](void* p, std::align_val_t) noexcept {
    deleteBlock(p);
}
void operator delete(void* p, std::size_t, std::align_val_t) noexcept {
    deleteBlock(p);
}
void operator delete[](void* p, std::size_t, std::align_val_t) noexcept {
    deleteBlock(p);
}
