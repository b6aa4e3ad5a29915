#include "dataconv/FunctorBodiesInternal.h"

#include "runtime/CStringInternal.h"
#include "system/OutOfMemoryException.h"

#include <cstddef>

namespace Quillon::DataConv {

namespace {

/// The longest text is that of a double, "-1.797693134862316e+308"; a locale's decimal point may take several bytes.
constexpr std::size_t kTextCapacity = 64;

template <class Value>
char* formatted(const char* format, Value value) {
    char text[kTextCapacity];
    Runtime::printBounded(text, sizeof text, format, value);
    char* copy = Runtime::duplicate(text);
    if (copy == nullptr)
        System::OutOfMemoryException::doThrow();
    return copy;
}

} // namespace

char* printed(int value) {
    return formatted("%d", value);
}

char* printed(unsigned int value) {
    return formatted("%u", value);
}

char* printed(long value) {
    return formatted("%ld", value);
}

char* printed(unsigned long value) {
    return formatted("%lu", value);
}

char* printed(long long value) {
    return formatted("%lld", value);
}

char* printed(unsigned long long value) {
    return formatted("%llu", value);
}

char* printed(float value) {
    return formatted("%.8g", static_cast<double>(value));
}

char* printed(double value) {
    return formatted("%.16g", value);
}

} // namespace Quillon::DataConv
