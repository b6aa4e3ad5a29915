#ifndef ZUTARNEX_SAXENGINE_STREAMBYTECHANNEL_H
#define ZUTARNEX_SAXENGINE_STREAMBYTECHANNEL_H

#include "xml/ReadableByteChannel.h"

#include <iosfwd>

namespace Quillon::Xml {

/// The bytes of an input stream, from where it stands.
///
/// Ownership: the stream is not taken; it must stay alive until the channel is closed, and is not closed with it.
/// Threads:   one channel is used by one thread at a time.
/// Throws:    IOException when the stream is bad, or had failed before, or throws its own failure; and when a closed
///            channel is read. The end of the stream is no failure.
class StreamByteChannel : public ReadableByteChannel {
public:
    explicit StreamByteChannel(std::istream& stream) noexcept;
    StreamByteChannel(const StreamByteChannel&) = delete;
    StreamByteChannel& operator=(const StreamByteChannel&) = delete;
    ~StreamByteChannel() override;

    void close() override; ///< closing a closed channel does nothing
    bool isOpen() const override;
    unsigned int read(unsigned char* buffer, unsigned int length) override;

private:
    std::istream* stream_; ///< null: closed
};

} // namespace Quillon::Xml

#endif
