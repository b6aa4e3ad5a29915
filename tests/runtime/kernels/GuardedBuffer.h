#ifndef ZUTARNEX_TESTS_RUNTIME_KERNELS_GUARDEDBUFFER_H
#define ZUTARNEX_TESTS_RUNTIME_KERNELS_GUARDEDBUFFER_H

#include <cstddef>
#include <new>
#include <sys/mman.h>
#include <unistd.h>

namespace Quillon::Testing {

/// Memory between two pages that nobody may touch: who reads or writes one byte too far ends the test program.
template <class T>
class GuardedBuffer {
public:
    explicit GuardedBuffer(std::size_t capacity)
        : page_(static_cast<std::size_t>(::sysconf(_SC_PAGESIZE))),
          size_((capacity * sizeof(T) + page_ - 1) / page_ * page_) {
        void* const all = ::mmap(nullptr, size_ + 2 * page_, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (all == MAP_FAILED)
            throw std::bad_alloc();
        begin_ = static_cast<char*>(all) + page_;
        if (::mprotect(begin_, size_, PROT_READ | PROT_WRITE) != 0)
            throw std::bad_alloc();
    }
    GuardedBuffer(const GuardedBuffer&) = delete;
    GuardedBuffer& operator=(const GuardedBuffer&) = delete;
    ~GuardedBuffer() { ::munmap(begin_ - page_, size_ + 2 * page_); }

    /// The first item behind the guarded page.
    T* first() const { return reinterpret_cast<T*>(begin_); }
    /// Where `count` items end just before the guarded page.
    T* last(std::size_t count) const { return reinterpret_cast<T*>(begin_ + size_) - count; }

private:
    std::size_t page_, size_;
    char* begin_;
};

} // namespace Quillon::Testing

#endif
