#include "xml/sax/writer/EventOutputInternal.h"

#include "runtime/HostArrayInternal.h"
#include "runtime/Transcoding.h"
#include "runtime/kernels/TranscodeInternal.h"
#include "system/OutOfMemoryException.h"
#include "xml/Utf16LiteralInternal.h"
#include "xml/sax/SaxNotSupportedException.h"
#include "xml/sax/writer/SaxMessageInternal.h"

#include <algorithm>
#include <cxxabi.h>
#include <utility>

namespace Quillon::Xml::Sax {

namespace {

namespace Kernels = Runtime::Kernels;

constexpr Utf16Literal kEncoding(u"Encoding: ");
constexpr std::size_t kMaxBytesPerUnit = 3;
constexpr std::size_t kSmallestPiece = 64; ///< units worth a call of a kernel

using HostText = Runtime::HostArray<char>;

/// Makes it bad without the exception that it may have been told to throw then.
void makeBadQuietly(std::ostream& stream) {
    try {
        stream.setstate(std::ios_base::badbit);
    } catch (const std::ios_base::failure&) {
    }
}

bool isInsidePair(const unsigned short* at) noexcept {
    return (at[-1] & 0xFC00) == 0xD800 && (*at & 0xFC00) == 0xDC00;
}

[[noreturn]] void throwConversionFailed(const char* encoding) {
    if (!Runtime::isKnownEncoding(encoding))
        throw SaxNotSupportedException(prefixed(kEncoding.units, makeString(encoding)));
    System::OutOfMemoryException::doThrow();
}

} // namespace

OutputEncoding OutputEncoding::namedOtherwise(const char* name) noexcept {
    if (name == nullptr)
        return {0, false};
    if (isSpelled(name, "US-ASCII"))
        return {0x7F, false};
    return {static_cast<unsigned short>(isSpelled(name, "ISO-8859-1") ? 0xFF : 0), false};
}

void EventOutput::put(Units text) {
    if (putShort<kZeroUnit>(text))
        return;
    if (!isPlain_)
        return putAlone(text);
    const Run run = runOf(text, kZeroUnit, 0);
    if (run.length != 0)
        put(run);
    else
        lastStart_ = end_;
}

void EventOutput::putParts(std::string_view before, Units text, std::string_view after) {
    if (!before.empty())
        put(before);
    put(text);
    for (const char c : after)
        put(c);
}

/// Converts units of the fragment that was begun into the buffer, by pieces that fit.
void EventOutput::convert(Units text) {
    while (!text.empty()) {
        if (room() / kMaxBytesPerUnit < std::min(text.size(), kSmallestPiece))
            insert();
        std::size_t count = std::min(text.size(), room() / kMaxBytesPerUnit);
        if (count < text.size() && isInsidePair(text.data() + count))
            --count;
        end_ = encoding_.isUtf8 ? Kernels::utf16ToUtf8(text.data(), count, end_)
                                : Kernels::utf16ToSingleByte(text.data(), count, encoding_.lastByte, end_);
        text = text.subspan(count);
    }
}

/// Leaves the stream in the state that one insertion for each fragment would leave: one that fails makes it bad, and
/// the next one is refused, which makes it fail.
void EventOutput::insert() {
    const char* const lastStart = std::exchange(lastStart_, nullptr);
    const std::streamsize byteCount = std::exchange(end_, buffer_) - buffer_;
    if (!stream_.good()) {
        if (lastStart != nullptr)
            stream_.write(buffer_, 0);
        return;
    }
    const std::streamsize taken = give(byteCount);
    if (taken == byteCount)
        return;
    stream_.setstate(std::ios_base::badbit);
    if (lastStart != nullptr && lastStart - buffer_ > taken)
        stream_.setstate(std::ios_base::failbit);
}

/// What std::ostream::write does, without the calls around it, which cost ten times as much (bench/writer). Returns how
/// many bytes were taken: as if none when the buffer of the stream throws and the stream keeps that to itself.
std::streamsize EventOutput::give(std::streamsize byteCount) {
    try {
        return stream_.rdbuf()->sputn(buffer_, byteCount);
    } catch (const abi::__forced_unwind&) { // the end of the thread
        makeBadQuietly(stream_);
        throw;
    } catch (...) {
        makeBadQuietly(stream_);
        if ((stream_.exceptions() & std::ios_base::badbit) != 0)
            throw;
        return 0;
    }
}

void EventOutput::putAlone(Units text) {
    const char* const encoding = writer_.encoding_;
    const HostText bytes(Runtime::utf16ToEncoding(encoding, text.data(), text.size()));
    if (!bytes)
        throwConversionFailed(encoding);
    stream_ << bytes.get();
}

void EventOutput::putAlone(std::string_view ascii) {
    unsigned short units[64];
    std::copy(ascii.begin(), ascii.end(), units);
    putAlone(Units(units, ascii.size()));
}

} // namespace Quillon::Xml::Sax
