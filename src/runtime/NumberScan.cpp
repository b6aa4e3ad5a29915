#include "runtime/NumberScanInternal.h"

#include <cstdio>

namespace Quillon::Runtime {

namespace {

NumberScan resultOf(int conversions) noexcept {
    if (conversions == EOF)
        return NumberScan::Nothing;
    return conversions == 1 ? NumberScan::Number : NumberScan::NoNumber;
}

} // namespace

NumberScan scanNumber(const char* text, int& value) noexcept {
    return resultOf(std::sscanf(text, "%d", &value));
}

NumberScan scanNumber(const char* text, unsigned int& value) noexcept {
    return resultOf(std::sscanf(text, "%u", &value));
}

NumberScan scanNumber(const char* text, long& value) noexcept {
    return resultOf(std::sscanf(text, "%ld", &value));
}

NumberScan scanNumber(const char* text, unsigned long& value) noexcept {
    return resultOf(std::sscanf(text, "%lu", &value));
}

NumberScan scanNumber(const char* text, long long& value) noexcept {
    return resultOf(std::sscanf(text, "%lld", &value));
}

NumberScan scanNumber(const char* text, unsigned long long& value) noexcept {
    return resultOf(std::sscanf(text, "%llu", &value));
}

NumberScan scanNumber(const char* text, double& value) noexcept {
    return resultOf(std::sscanf(text, "%lg", &value));
}

} // namespace Quillon::Runtime
