#ifndef ZUTARNEX_NET_URITEXTINTERNAL_H
#define ZUTARNEX_NET_URITEXTINTERNAL_H

#include "runtime/HostArrayInternal.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Quillon::Net {

/// A part of a text; absent when it begins nowhere.
struct TextRange {
    const unsigned char* begin = nullptr;
    const unsigned char* end = nullptr;

    bool isPresent() const noexcept { return begin != nullptr; }
    bool isEmpty() const noexcept { return begin == end; }
    std::size_t size() const noexcept { return static_cast<std::size_t>(end - begin); }
};

/// Bytes before the terminator; 0 for null.
inline std::size_t lengthOf(const unsigned char* text) noexcept {
    return text ? std::strlen(reinterpret_cast<const char*>(text)) : 0;
}

/// A whole text; an absent range for null.
inline TextRange wholeOf(const unsigned char* text) noexcept {
    return {text, text + lengthOf(text)};
}

/// A NUL-terminated text from the host's allocator.
using OwnedText = Runtime::HostArray<unsigned char>;

/// Room for `length` bytes and the terminator, not initialised; null when memory has run out or when 32 bits cannot
/// count the bytes.
OwnedText tryAllocateText(std::uint64_t length) noexcept;
/// The same; System::OutOfMemoryException instead of null.
OwnedText allocateText(std::uint64_t length);

/// A terminated copy; null when memory has run out. REQUIRES: `range` is present.
OwnedText tryDuplicate(TextRange range) noexcept;
/// A copy, null for null. Throws: System::OutOfMemoryException.
OwnedText duplicate(const unsigned char* text);
/// A copy, an empty text for null. Throws: System::OutOfMemoryException.
OwnedText duplicateOrEmpty(const unsigned char* text);

/// Copies `range` to `target` and returns the place behind the copy.
inline unsigned char* append(unsigned char* target, TextRange range) noexcept {
    if (range.isPresent())
        std::memcpy(target, range.begin, range.size());
    return target + range.size();
}

} // namespace Quillon::Net

#endif
