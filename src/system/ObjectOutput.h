#ifndef ZUTARNEX_SYSTEM_OBJECTOUTPUT_H
#define ZUTARNEX_SYSTEM_OBJECTOUTPUT_H

#include "zutarnex/export.h"

#include <cstddef>

namespace Quillon::System {

/// A sink of bytes to which exceptions write what they know.
class ZUTARNEX_API ObjectOutput {
public:
    virtual ~ObjectOutput();

    virtual void write(const char* bytes, std::size_t count) = 0;
};

} // namespace Quillon::System

#endif
