#ifndef ZUTARNEX_BENCH_SUPPORT_POOLLOAD_H
#define ZUTARNEX_BENCH_SUPPORT_POOLLOAD_H

#include <cstddef>
#include <string>
#include <vector>

namespace Quillon::Bench {

/// 10,000 distinct names of 6 to 20 letters, as of elements and attributes: what a pool is filled with.
const std::vector<std::u16string>& poolNames();
/// 4,096 of them in random order: what is looked up. The look-ups are made with texts of their own, not with those
/// that the pool was filled with.
const std::vector<std::u16string>& lookedUpNames();

} // namespace Quillon::Bench

#endif
