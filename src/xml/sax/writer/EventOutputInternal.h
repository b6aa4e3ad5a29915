#ifndef ZUTARNEX_XML_SAX_WRITER_EVENTOUTPUTINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_EVENTOUTPUTINTERNAL_H

#include "runtime/kernels/EscapeScanInternal.h"
#include "xml/XmlStringInternal.h"
#include "xml/sax/writer/XmlWriter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace Quillon::Xml::Sax {

/// An encoding of text that is written.
struct OutputEncoding {
    unsigned short lastByte; ///< the highest unit that becomes one byte of the same value; 0: not known here
    bool isUtf8;

    /// Each letter is looked at: what lies behind a pointer may have been changed.
    static OutputEncoding named(const char* name) noexcept {
        return name != nullptr && isSpelled(name, "UTF-8") ? OutputEncoding{0x7F, true}
                                                           : namedOtherwise(name);
    }

private:
    template <std::size_t N>
    static bool isSpelled(const char* name, const char (&known)[N]) noexcept {
        for (std::size_t i = 0; i < N; ++i) {
            if (name[i] != known[i])
                return false;
        }
        return true;
    }
    static OutputEncoding namedOtherwise(const char* name) noexcept;
};

/// The room that a stream buffer has until it must do something. Bytes may be written there without asking it, as its own
/// sputc() does.
class PutArea : private std::streambuf {
public:
    static char* next(const std::streambuf& buffer) { return (buffer.*&PutArea::pptr)(); }
    static char* end(const std::streambuf& buffer) { return (buffer.*&PutArea::epptr)(); }
    /// Makes the next `byteCount` bytes part of what was written. REQUIRES: no more than kMostTaken.
    static constexpr std::ptrdiff_t kMostTaken = std::numeric_limits<int>::max();
    static void take(std::streambuf& buffer, std::ptrdiff_t byteCount) {
        (buffer.*&PutArea::pbump)(static_cast<int>(byteCount));
    }
};

/// Takes the fragments of one operation of a writer, one after the other, and gives them to the writer's stream.
///
///     short fragments -> converted into the put area of the stream's buffer, as long as they fit
///     others, and all behind one -> converted into a buffer on the stack -> one insertion, when that is full and at the end
///
/// In the put area nothing is written but what is put: what lies there already may be a text that is written over.
///
/// Where a stream could tell one insertion from several (a field width, a tied stream, no buffering, exceptions for the
/// second insertion that fails only), and for an encoding that is none of the three that the writer knows, each fragment is
/// converted by the host's converter and inserted alone, at once.
///
/// Throws: what the stream throws; for such an encoding SaxNotSupportedException and System::OutOfMemoryException.
class EventOutput {
public:
    /// Whether that is one of the three encodings that text is converted to here, spelled exactly so.
    static bool knows(const char* encoding) noexcept { return OutputEncoding::named(encoding).lastByte != 0; }

    explicit EventOutput(const XmlWriter& writer) : writer_(writer), stream_(*writer.out_) { reread(); }
    EventOutput(const EventOutput&) = delete;
    EventOutput& operator=(const EventOutput&) = delete;

    // What the writer is set to

    std::uint16_t unwritableMask() const noexcept { return writer_.unwritableMask_; }
    bool isCanonical() const noexcept { return writer_.canonical_; }

    // One fragment each

    void put(char ascii) {
        if (!isPlain_)
            return putAlone(std::string_view(&ascii, 1));
        if (room() == 0)
            makeRoom();
        lastStart_ = end_;
        *end_++ = ascii;
    }
    /// REQUIRES: no more than 64 characters, none of them zero.
    void put(std::string_view ascii) {
        if (!isPlain_)
            return putAlone(ascii);
        if (room() < ascii.size())
            makeRoom();
        lastStart_ = end_;
        std::memcpy(end_, ascii.data(), ascii.size());
        end_ += ascii.size();
    }
    void put(Units text); ///< up to the first zero unit
    /// None for a null string.
    void put(const XmlString& string) {
        if (!XmlStringReading::isNull(string))
            put(unitsOf(string));
    }

    /// The whole of a short text of US-ASCII without a unit of `set`, between `before`, one fragment, and the
    /// characters of `after`, a fragment each; false, and nothing put, for any other text.
    template <const Runtime::Kernels::EscapeSet& set>
    bool putShort(std::string_view before, Units text, std::string_view after) {
        namespace Kernels = Runtime::Kernels;
        const std::size_t byteCount = before.size() + text.size() + after.size();
        const bool fits = isPlain_ && text.size() <= Kernels::kShortText && byteCount <= room();
        char* const start = end_;
        if (!fits || !Kernels::copyShort<set>(text.data(), text.size(), start + before.size()))
            return false;
        std::memcpy(start, before.data(), before.size());
        std::memcpy(start + before.size() + text.size(), after.data(), after.size());
        end_ = start + byteCount;
        lastStart_ = after.empty() ? start + before.size() : start + byteCount - 1;
        return true;
    }
    template <const Runtime::Kernels::EscapeSet& set>
    bool putShort(Units text) {
        return putShort<set>("", text, "");
    }
    /// Text up to its first zero unit, with what stands before and behind it, as above.
    void put(std::string_view before, Units text, std::string_view after) {
        if (!putShort<kZeroUnit>(before, text, after))
            putParts(before, text, after);
    }

    /// The beginning of a text that needs no escape, looked for but not yet put.
    struct Run {
        const unsigned short* text;
        std::size_t length;
        std::size_t converted; ///< units whose bytes lie ready in the buffer
    };
    /// Up to the first unit that is in `set` or has a bit of `unwritableMask`.
    Run runOf(Units text, const Runtime::Kernels::EscapeSet& set, std::uint16_t unwritableMask) {
        namespace Kernels = Runtime::Kernels;
        std::size_t converted = 0;
        if (isPlain_) {
            leavePutArea();
            converted =
                Kernels::copyUnescaped(text.data(), std::min(text.size(), room()), set,
                                       std::min(encoding_.lastByte, lastWritable(unwritableMask)), end_);
            if (converted == text.size())
                return {text.data(), converted, converted};
        }
        const Units rest = text.subspan(converted);
        const std::size_t more = Kernels::firstToEscape(rest.data(), rest.size(), set, unwritableMask);
        return {text.data(), converted + more, converted};
    }
    /// REQUIRES: nothing was put since the run was looked for. One that is empty is no fragment.
    void put(const Run& run) {
        if (run.length == 0)
            return;
        if (!isPlain_)
            return putAlone(Units(run.text, run.length));
        lastStart_ = end_;
        end_ += run.converted;
        if (run.converted != run.length)
            convert(Units(run.text + run.converted, run.length - run.converted));
    }

    /// Gives the stream what it has not got yet.
    void flush() {
        if (putArea_ != nullptr)
            return takeInPutArea();
        if (lastStart_ != nullptr || end_ != buffer_)
            insert();
    }
    /// Looks at the writer and its stream again. To be called after what may have changed them.
    void reread() {
        encoding_ = OutputEncoding::named(writer_.encoding_);
        isPlain_ = encoding_.lastByte != 0 && takesTogether(stream_);
        useBuffer();
        if (isPlain_ && stream_.good())
            usePutArea(*stream_.rdbuf());
    }

private:
    static constexpr std::size_t kBufferSize = 4096;
    static constexpr Runtime::Kernels::EscapeSet kZeroUnit{1, 0xFFFF, ""};

    /// Whether nobody can tell how many insertions a text takes.
    static bool takesTogether(const std::ostream& stream) {
        constexpr auto kBad = std::ios_base::badbit, kFail = std::ios_base::failbit;
        return stream.width() == 0 && stream.tie() == nullptr
               && (stream.flags() & std::ios_base::unitbuf) == 0
               && (stream.exceptions() & (kBad | kFail)) != kFail;
    }

    /// The highest unit that a mask lets pass.
    static unsigned short lastWritable(std::uint16_t unwritableMask) noexcept {
        return static_cast<unsigned short>(~unwritableMask);
    }
    std::size_t room() const noexcept { return static_cast<std::size_t>(limit_ - end_); }
    void useBuffer() noexcept {
        putArea_ = nullptr;
        end_ = buffer_;
        limit_ = buffer_ + kBufferSize;
    }
    void usePutArea(std::streambuf& buffer) {
        char* const next = PutArea::next(buffer);
        const std::ptrdiff_t size = PutArea::end(buffer) - next;
        if (size == 0)
            return;
        putArea_ = &buffer;
        end_ = next;
        limit_ = next + std::min(size, PutArea::kMostTaken);
    }
    void takeInPutArea() {
        PutArea::take(*putArea_, end_ - PutArea::next(*putArea_));
        lastStart_ = nullptr;
    }
    void leavePutArea() {
        if (putArea_ == nullptr)
            return;
        takeInPutArea();
        useBuffer();
    }
    void makeRoom() {
        if (putArea_ != nullptr)
            leavePutArea();
        else
            insert();
    }
    void putParts(std::string_view before, Units text, std::string_view after);
    void insert();
    std::streamsize give(std::streamsize byteCount);
    void convert(Units text);
    void putAlone(Units text);
    void putAlone(std::string_view ascii);

    const XmlWriter& writer_;
    std::ostream& stream_;
    std::streambuf* putArea_; ///< whose put area is being filled; null: the buffer is
    char* end_;               ///< of what was put
    char* limit_;
    const char* lastStart_ =
        nullptr; ///< where the last fragment began; null when none has since the last insertion
    OutputEncoding encoding_;
    bool isPlain_;
    char buffer_[kBufferSize];
};

/// Runs `body` with the output of one operation. What it has put is in the stream when it returns or throws.
template <class Body>
[[gnu::always_inline]] inline void writing(const XmlWriter& writer, Body&& body) {
    EventOutput out(writer);
    try {
        body(out);
    } catch (...) {
        out.flush();
        throw;
    }
    out.flush();
}

} // namespace Quillon::Xml::Sax

#endif
