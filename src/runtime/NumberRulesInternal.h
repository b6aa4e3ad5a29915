#ifndef ZUTARNEX_RUNTIME_NUMBERRULESINTERNAL_H
#define ZUTARNEX_RUNTIME_NUMBERRULESINTERNAL_H

// What the C library's scan and print of floating-point numbers go by beside the text or the value: the thread's
// locale and the processor's rounding mode. Both are asked each time; a copy could be out of date.

#include <cstdint>
#include <fpu_control.h>
#include <langinfo.h>

namespace Quillon::Runtime {

/// The decimal point of the LC_NUMERIC locale: one character or several bytes.
inline const char* decimalPoint() noexcept {
    return nl_langinfo(RADIXCHAR);
}

/// Whether the processor rounds as it does unless told otherwise: to the nearest, which the C library sees in the x87
/// control word on both platforms, and which double follows in that of SSE; and long double to all of its 64 bits.
inline bool roundsAsUsual() noexcept {
    constexpr unsigned int kSseRoundingBits = 0x6000; // none of them: to the nearest
    fpu_control_t control;
    _FPU_GETCW(control);
    return (control & (_FPU_RC_ZERO | _FPU_EXTENDED)) == (_FPU_RC_NEAREST | _FPU_EXTENDED)
           && (__builtin_ia32_stmxcsr() & kSseRoundingBits) == 0;
}

} // namespace Quillon::Runtime

#endif
