#ifndef ZUTARNEX_SAXENGINE_LOCATION_H
#define ZUTARNEX_SAXENGINE_LOCATION_H

#include <cstdint>

namespace Quillon::SaxEngine {

/// A place in an entity. Both numbers count from 1; columns are characters.
struct Location {
    std::int64_t line = 1;
    std::int64_t column = 1;
};

} // namespace Quillon::SaxEngine

#endif
