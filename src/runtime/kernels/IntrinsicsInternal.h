#ifndef ZUTARNEX_RUNTIME_KERNELS_INTRINSICSINTERNAL_H
#define ZUTARNEX_RUNTIME_KERNELS_INTRINSICSINTERNAL_H

// GCC 12 takes the "undefined" operand inside many intrinsics for a mistake (its bug 105593).
#ifndef __clang__
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wuninitialized"
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#endif
#include <immintrin.h>
#ifndef __clang__
#pragma GCC diagnostic pop
#endif

#endif
