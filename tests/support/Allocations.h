#ifndef ZUTARNEX_TESTS_SUPPORT_ALLOCATIONS_H
#define ZUTARNEX_TESTS_SUPPORT_ALLOCATIONS_H

#include <atomic>
#include <cstddef>

namespace Quillon::Testing {

/// Counts the requests to one source of memory and lets a chosen one fail. There are two sources: the host's table,
/// which every test program replaces before anything else, and operator new.
class AllocationSource {
public:
    std::ptrdiff_t liveBlocks() const noexcept { return live_; }
    std::size_t requests() const noexcept { return requests_; }

    /// The k-th request from now on (1: the next one) fails, once; 0: none does.
    void failRequest(std::size_t k) noexcept { failIn_ = k; }
    /// Whether a failure that was asked for has not happened yet.
    bool failureIsPending() const noexcept { return failIn_ != 0; }

    /// For the allocators themselves: whether the request may be served.
    bool admit() noexcept {
        ++requests_;
        for (std::size_t left = failIn_; left != 0;)
            if (failIn_.compare_exchange_weak(left, left - 1))
                return left != 1;
        return true;
    }
    void allocated() noexcept { ++live_; }
    void released() noexcept { --live_; }

private:
    std::atomic<std::size_t> requests_{0};
    std::atomic<std::ptrdiff_t> live_{0};
    std::atomic<std::size_t> failIn_{0};
};

AllocationSource& hostMemory() noexcept;
AllocationSource& newMemory() noexcept;

/// Replaces the host's table by the default one with counting, failing memory. Called once, by main.
void installCountingHost() noexcept;

} // namespace Quillon::Testing

#endif
