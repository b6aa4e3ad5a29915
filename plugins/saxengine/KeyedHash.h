#ifndef ZUTARNEX_SAXENGINE_KEYEDHASH_H
#define ZUTARNEX_SAXENGINE_KEYEDHASH_H

#include "UnitSpan.h"

#include <cstdint>

namespace Quillon::SaxEngine {

/// SipHash-1-3 of code units under a key that the process draws once: a document cannot be made so that its names
/// collide.
std::uint64_t keyedHash(UnitSpan units);

} // namespace Quillon::SaxEngine

#endif
