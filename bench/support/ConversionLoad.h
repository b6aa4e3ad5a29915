#ifndef ZUTARNEX_BENCH_SUPPORT_CONVERSIONLOAD_H
#define ZUTARNEX_BENCH_SUPPORT_CONVERSIONLOAD_H

#include <string>
#include <vector>

namespace Quillon::Bench {

/// 1,024 values of all lengths, and their texts as the C library prints them (double: 16 significant digits).
template <class T>
struct Numbers {
    std::vector<T> values;
    std::vector<std::string> texts;
};

const Numbers<int>& int32Numbers();
const Numbers<unsigned long long>& uint64Numbers();
const Numbers<double>& doubleNumbers();

} // namespace Quillon::Bench

#endif
