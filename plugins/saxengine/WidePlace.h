#ifndef ZUTARNEX_SAXENGINE_WIDEPLACE_H
#define ZUTARNEX_SAXENGINE_WIDEPLACE_H

#include "Location.h"

#include <cstdint>

namespace Quillon::SaxEngine {

/// Makes 64-bit places of those of a counter that wraps: Expat counts in unsigned long, which has 32 bits on i386.
///
/// The line only grows, the column does within a line, and neither by 2^32 from one call to the next (entities are read
/// in chunks, and each is followed by a call); so the differences are right, whatever their width.
template <class Size>
class WidePlace {
public:
    /// `line` counts from 1, `column` from 0, as Expat's do.
    Location advance(Size line, Size column) {
        const Size newLines = static_cast<Size>(line - line_);
        const Size newColumns = static_cast<Size>(column - column_);
        if (newLines != 0)
            place_.column = static_cast<std::int64_t>(column) + 1;
        else
            place_.column += static_cast<std::int64_t>(newColumns);
        place_.line += static_cast<std::int64_t>(newLines);
        line_ = line;
        column_ = column;
        return place_;
    }

private:
    Location place_;
    Size line_ = 1;
    Size column_ = 0;
};

} // namespace Quillon::SaxEngine

#endif
