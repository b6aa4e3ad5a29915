#ifndef ZUTARNEX_SAXENGINE_FILEBYTECHANNEL_H
#define ZUTARNEX_SAXENGINE_FILEBYTECHANNEL_H

#include "xml/ReadableByteChannel.h"

namespace Quillon::Xml {

/// The bytes of a file, from its beginning, or of a pipe or device.
///
/// Ownership: owns the open file and closes it with the channel, at the latest in the destructor.
/// Threads:   one channel is used by one thread at a time.
/// Throws:    IOException when the file cannot be opened or read, is a directory, or when the channel is closed;
///            `errno` then says why, but for a closed channel.
class FileByteChannel : public ReadableByteChannel {
public:
    explicit FileByteChannel(const char* path); ///< a null path cannot be opened
    FileByteChannel(const FileByteChannel&) = delete;
    FileByteChannel& operator=(const FileByteChannel&) = delete;
    ~FileByteChannel() override;

    void close() override; ///< closing a closed channel does nothing
    bool isOpen() const override;
    unsigned int read(unsigned char* buffer, unsigned int length) override;

private:
    int descriptor_; ///< -1: closed
};

} // namespace Quillon::Xml

#endif
