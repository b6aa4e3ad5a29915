#include "net/UriTextInternal.h"

#include "system/OutOfMemoryException.h"

#include <limits>

namespace Quillon::Net {

OwnedText tryAllocateText(std::uint64_t length) noexcept {
    const std::uint64_t room = length + 1;
    if (room > std::numeric_limits<std::uint32_t>::max())
        return nullptr;
    return OwnedText(
        static_cast<unsigned char*>(Runtime::hostServices().allocate(static_cast<std::size_t>(room))));
}

OwnedText allocateText(std::uint64_t length) {
    OwnedText text = tryAllocateText(length);
    if (!text)
        System::OutOfMemoryException::doThrow();
    return text;
}

OwnedText tryDuplicate(TextRange range) noexcept {
    OwnedText copy = tryAllocateText(range.size());
    if (copy)
        *append(copy.get(), range) = 0;
    return copy;
}

OwnedText duplicate(const unsigned char* text) {
    return text ? duplicateOrEmpty(text) : nullptr;
}

OwnedText duplicateOrEmpty(const unsigned char* text) {
    OwnedText copy = tryDuplicate(wholeOf(text));
    if (!copy)
        System::OutOfMemoryException::doThrow();
    return copy;
}

} // namespace Quillon::Net
