#ifndef ZUTARNEX_SAXENGINE_TEXTPOSITION_H
#define ZUTARNEX_SAXENGINE_TEXTPOSITION_H

#include "Location.h"

#include <cstddef>

namespace Quillon::SaxEngine {

/// Follows the text of an entity to know where it ends so far: for faults in bytes that Expat is never given.
/// CR, LF and CR LF each end one line.
class TextPosition {
public:
    void advanceUtf8(const char* bytes, std::size_t count);
    void advanceUtf16(const char* bytes, std::size_t count, bool bigEndian); ///< `count` is even
    Location location() const { return location_; }

private:
    void advance(unsigned int unit, bool continuesCharacter);

    Location location_;
    bool afterCarriageReturn_ = false;
};

} // namespace Quillon::SaxEngine

#endif
