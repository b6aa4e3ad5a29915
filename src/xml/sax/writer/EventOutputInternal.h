#ifndef ZUTARNEX_XML_SAX_WRITER_EVENTOUTPUTINTERNAL_H
#define ZUTARNEX_XML_SAX_WRITER_EVENTOUTPUTINTERNAL_H

#include "runtime/kernels/EscapeScanInternal.h"
#include "xml/XmlStringInternal.h"
#include "xml/sax/writer/XmlWriter.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ostream>
#include <string_view>

namespace Quillon::Xml::Sax {

/// An encoding of text that is written.
struct OutputEncoding {
    unsigned short lastByte; ///< the highest unit that becomes one byte of the same value; 0: not known here
    bool isUtf8;

    /// Each letter is looked at: what lies behind a pointer may have been changed.
    static OutputEncoding named(const char* name) noexcept {
        return name != nullptr && isSpelled(name, "UTF-8") ? OutputEncoding{0x7F, true} : namedOtherwise(name);
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

/// Takes the fragments of one operation of a writer, one after the other, and gives them to the writer's stream.
///
///     fragments -> converted into a buffer on the stack -> one insertion, when the buffer is full and at the end
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

    // What the writer was set to when that was last looked at

    std::uint16_t unwritableMask() const noexcept { return unwritableMask_; }
    bool isCanonical() const noexcept { return isCanonical_; }

    // One fragment each

    void put(char ascii) {
        if (!isPlain_)
            return putAlone(std::string_view(&ascii, 1));
        if (room() == 0)
            insert();
        lastStart_ = end_;
        *end_++ = ascii;
    }
    /// REQUIRES: no more than 64 characters, none of them zero.
    void put(std::string_view ascii) {
        if (!isPlain_)
            return putAlone(ascii);
        if (room() < ascii.size())
            insert();
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

    /// The whole of a short text of US-ASCII without a unit of `set`; false, and nothing put, for any other text.
    template <const Runtime::Kernels::EscapeSet& set>
    bool putShort(Units text) {
        namespace Kernels = Runtime::Kernels;
        const bool fits = isPlain_ && text.size() <= std::min(Kernels::kShortText, room());
        if (!fits || !Kernels::copyShort<set>(text.data(), text.size(), end_))
            return false;
        lastStart_ = end_;
        end_ += text.size();
        return true;
    }

    /// The beginning of a text that needs no escape, looked for but not yet put.
    struct Run {
        const unsigned short* text;
        std::size_t length;
        std::size_t converted; ///< units whose bytes lie ready in the buffer
    };
    /// Up to the first unit that is in `set` or has a bit of `unwritableMask`.
    Run runOf(Units text, const Runtime::Kernels::EscapeSet& set, std::uint16_t unwritableMask) const {
        namespace Kernels = Runtime::Kernels;
        std::size_t converted = 0;
        if (isPlain_) {
            converted = Kernels::copyUnescaped(text.data(), std::min(text.size(), room()), set,
                                               std::min(lastByte_, lastWritable(unwritableMask)), end_);
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

    /// Inserts what is still in the buffer.
    void flush() {
        if (lastStart_ != nullptr || end_ != buffer_)
            insert();
    }
    /// Looks at the writer and its stream again. To be called after what may have changed them.
    void reread() {
        const OutputEncoding encoding = OutputEncoding::named(writer_.encoding_);
        lastByte_ = encoding.lastByte;
        isUtf8_ = encoding.isUtf8;
        isPlain_ = lastByte_ != 0 && takesTogether(stream_);
        unwritableMask_ = writer_.unwritableMask_;
        isCanonical_ = writer_.canonical_;
    }

private:
    static constexpr std::size_t kBufferSize = 4096;

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
    std::size_t room() const noexcept { return static_cast<std::size_t>(buffer_ + kBufferSize - end_); }
    void insert();
    std::streamsize give(std::streamsize byteCount);
    void convert(Units text);
    void putAlone(Units text);
    void putAlone(std::string_view ascii);

    const XmlWriter& writer_;
    std::ostream& stream_;
    char* end_ = buffer_;
    const char* lastStart_ =
        nullptr; ///< where the last fragment began; null when none has since the last insertion
    bool isPlain_ = false;
    bool isUtf8_ = false;
    bool isCanonical_ = false;
    unsigned short lastByte_ = 0; ///< the highest unit that becomes one byte of the same value
    std::uint16_t unwritableMask_ = 0;
    char buffer_[kBufferSize];
};

/// Runs `body` with the output of one operation. What it has put is in the stream when it returns or throws.
template <class Body>
void writing(const XmlWriter& writer, Body&& body) {
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
