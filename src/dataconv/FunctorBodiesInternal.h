#ifndef ZUTARNEX_DATACONV_FUNCTORBODIESINTERNAL_H
#define ZUTARNEX_DATACONV_FUNCTORBODIESINTERNAL_H

// What the functors of all types do. They differ in the type that they read or print as, and in the target's type.

#include "dataconv/IllegalArgumentException.h"
#include "dataconv/RuntimeException.h"
#include "runtime/NumberScanInternal.h"

namespace Quillon::DataConv {

/// Reads a `Scanned` and cuts it to the target's width; `result` is changed only when there is a number.
template <class Scanned, class To>
void scanInteger(const char* text, To& result) {
    if (text == nullptr)
        IllegalArgumentException::doThrow();
    Scanned value;
    const Runtime::NumberScan scan = Runtime::scanNumber(text, value);
    if (scan == Runtime::NumberScan::NoNumber)
        RuntimeException::doThrow();
    if (scan == Runtime::NumberScan::Number)
        result = static_cast<To>(value);
}

/// Reads a `double` and narrows it; without a number, `result` stays as it was and that is all.
template <class To>
void scanFloating(const char* text, To& result) {
    if (text == nullptr)
        IllegalArgumentException::doThrow();
    double value;
    if (Runtime::scanNumber(text, value) == Runtime::NumberScan::Number)
        result = static_cast<To>(value);
}

/// New texts of the host's. Throw: System::OutOfMemoryException.
char* printed(int value);
char* printed(unsigned int value);
char* printed(long value);
char* printed(unsigned long value);
char* printed(long long value);
char* printed(unsigned long long value);
char* printed(float value);  ///< 8 significant digits
char* printed(double value); ///< 16 significant digits

} // namespace Quillon::DataConv

#endif
