#include "dataconv/FunctorBodiesInternal.h"

#include "runtime/CStringInternal.h"
#include "runtime/NumberPrintInternal.h"
#include "system/OutOfMemoryException.h"

#include <cstddef>

namespace Quillon::DataConv {

namespace {

template <class Value>
char* newText(Value value) {
    Runtime::NumberBuffer text;
    const std::size_t length = Runtime::printNumber(text, value);
    char* copy = Runtime::duplicate(text, length);
    if (copy == nullptr)
        System::OutOfMemoryException::doThrow();
    return copy;
}

} // namespace

char* printed(int value) {
    return newText(value);
}

char* printed(unsigned int value) {
    return newText(value);
}

char* printed(long value) {
    return newText(value);
}

char* printed(unsigned long value) {
    return newText(value);
}

char* printed(long long value) {
    return newText(value);
}

char* printed(unsigned long long value) {
    return newText(value);
}

char* printed(float value) {
    return newText(value);
}

char* printed(double value) {
    return newText(value);
}

} // namespace Quillon::DataConv
