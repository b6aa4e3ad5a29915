#include "saxengine/MemoryByteChannel.h"

#include "xml/IOException.h"

#include <algorithm>
#include <cstring>

namespace Quillon::Xml {

MemoryByteChannel::MemoryByteChannel(const void* bytes, std::size_t byteCount) noexcept
    : next_(static_cast<const unsigned char*>(bytes)), left_(bytes ? byteCount : 0) {}

MemoryByteChannel::~MemoryByteChannel() = default;

void MemoryByteChannel::close() {
    open_ = false;
}

bool MemoryByteChannel::isOpen() const {
    return open_;
}

unsigned int MemoryByteChannel::read(unsigned char* buffer, unsigned int length) {
    if (!open_)
        IOException::doThrow();
    const auto count = static_cast<unsigned int>(std::min<std::size_t>(left_, length));
    if (count != 0)
        std::memcpy(buffer, next_, count);
    next_ += count;
    left_ -= count;
    return count;
}

} // namespace Quillon::Xml
