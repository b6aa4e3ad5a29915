#include "saxengine/StreamByteChannel.h"

#include "xml/IOException.h"

#include <istream>

namespace Quillon::Xml {

namespace {

/// False when the stream failed for another reason than its end.
bool readFrom(std::istream& stream, char* buffer, std::streamsize length, std::streamsize& count) {
    try {
        stream.read(buffer, length);
    } catch (const std::ios_base::failure&) { // thrown at the end of the stream, too, when it was told to
    }
    count = stream.gcount();
    return !stream.bad() && (!stream.fail() || stream.eof());
}

} // namespace

StreamByteChannel::StreamByteChannel(std::istream& stream) noexcept : stream_(&stream) {}

StreamByteChannel::~StreamByteChannel() = default;

void StreamByteChannel::close() {
    stream_ = nullptr;
}

bool StreamByteChannel::isOpen() const {
    return stream_;
}

unsigned int StreamByteChannel::read(unsigned char* buffer, unsigned int length) {
    if (!isOpen())
        IOException::doThrow();
    if (length == 0 || stream_->eof())
        return 0;
    std::streamsize count = 0;
    if (!readFrom(*stream_, reinterpret_cast<char*>(buffer), static_cast<std::streamsize>(length), count))
        IOException::doThrow();
    return static_cast<unsigned int>(count);
}

} // namespace Quillon::Xml
