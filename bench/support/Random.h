#ifndef ZUTARNEX_BENCH_SUPPORT_RANDOM_H
#define ZUTARNEX_BENCH_SUPPORT_RANDOM_H

#include <cstdint>

namespace Quillon::Bench {

/// The same numbers on every platform and in every run (SplitMix64).
class Random {
public:
    explicit Random(std::uint64_t seed) noexcept : state_(seed) {}

    std::uint64_t next() noexcept {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15U);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBU;
        return z ^ (z >> 31);
    }

    /// 0 to `limit` - 1.
    std::uint32_t below(std::uint32_t limit) noexcept { return static_cast<std::uint32_t>(next() % limit); }
    /// `low` to `high`, both included.
    std::uint32_t between(std::uint32_t low, std::uint32_t high) noexcept {
        return low + below(high - low + 1);
    }

private:
    std::uint64_t state_;
};

} // namespace Quillon::Bench

#endif
