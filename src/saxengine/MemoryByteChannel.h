#ifndef ZUTARNEX_SAXENGINE_MEMORYBYTECHANNEL_H
#define ZUTARNEX_SAXENGINE_MEMORYBYTECHANNEL_H

#include "xml/ReadableByteChannel.h"

#include <cstddef>

namespace Quillon::Xml {

/// The bytes of a range of memory.
///
/// Ownership: the range is not taken and not copied; it must stay alive until the channel is closed.
/// Threads:   one channel is used by one thread at a time.
/// Throws:    IOException when a closed channel is read.
class MemoryByteChannel : public ReadableByteChannel {
public:
    MemoryByteChannel(const void* bytes, std::size_t byteCount) noexcept; ///< null bytes: an empty range
    MemoryByteChannel(const MemoryByteChannel&) = delete;
    MemoryByteChannel& operator=(const MemoryByteChannel&) = delete;
    ~MemoryByteChannel() override;

    void close() override; ///< closing a closed channel does nothing
    bool isOpen() const override;
    unsigned int read(unsigned char* buffer, unsigned int length) override;

private:
    const unsigned char* next_;
    std::size_t left_;
    bool open_ = true;
};

} // namespace Quillon::Xml

#endif
