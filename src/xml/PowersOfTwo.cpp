#include "xml/PowersOfTwo.h"

#include "system/OutOfRangeException.h"

#include <bit>
#include <limits>

namespace Quillon::Xml {

unsigned int PowersOfTwo::roundUp(unsigned int n) const {
    if (n > std::numeric_limits<unsigned int>::max() / 2 + 1)
        System::OutOfRangeException::doThrow();
    return n == 0 ? 0 : std::bit_ceil(n);
}

unsigned int PowersOfTwo::roundDown(unsigned int n) const noexcept {
    return std::bit_floor(n);
}

} // namespace Quillon::Xml
