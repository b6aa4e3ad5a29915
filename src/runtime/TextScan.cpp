#include "runtime/TextScan.h"

#include "runtime/kernels/EscapeScanInternal.h"

namespace Quillon::Runtime {

namespace {

constexpr Kernels::EscapeSet kNotPlain(0x20, 0xFFFD, "<&]\r");

} // namespace

std::size_t lengthOfPlainText(const unsigned short* text, std::size_t unitCount) noexcept {
    return Kernels::firstToEscape(text, unitCount, kNotPlain, 0);
}

} // namespace Quillon::Runtime
