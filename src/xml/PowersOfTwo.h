#ifndef ZUTARNEX_XML_POWERSOFTWO_H
#define ZUTARNEX_XML_POWERSOFTWO_H

#include "zutarnex/export.h"

namespace Quillon::Xml {

/// Sizes that buffers grow by.
class ZUTARNEX_API PowersOfTwo {
public:
    /// The smallest power of two that is not below `n`; 0 for 0. Throws: System::OutOfRangeException above 2^31.
    unsigned int roundUp(unsigned int n) const;
    /// The largest power of two that is not above `n`; 0 for 0.
    unsigned int roundDown(unsigned int n) const noexcept;
};

} // namespace Quillon::Xml

#endif
