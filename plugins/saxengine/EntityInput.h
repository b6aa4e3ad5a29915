#ifndef ZUTARNEX_SAXENGINE_ENTITYINPUT_H
#define ZUTARNEX_SAXENGINE_ENTITYINPUT_H

#include "EncodingDetection.h"
#include "Location.h"
#include "TextPosition.h"
#include "UnitSpan.h"
#include "runtime/StreamDecoder.h"
#include "xml/ReadableByteChannel.h"

#include <string>
#include <string_view>
#include <vector>

namespace Quillon::SaxEngine {

/// The bytes of an entity, as Expat is to get them: without a byte order mark, recoded when Expat does not know the
/// encoding, and in UTF-16 only with whole pairs of surrogates. A carriage return never ends a chunk but the last:
/// behind the root element, Expat would count its line feed as a line of its own.
///
///     channel -> head | raw bytes -> widened -> chunk -> Expat        (UTF-8)
///                     | raw bytes -> decoder -> chunk -> Expat        (what iconv knows)
///                     '-----------------------> chunk -> Expat        (ISO-8859-1, US-ASCII)
///                     '-> look at surrogates -> chunk -> Expat        (UTF-16)
///
/// In the place of bytes that are ill-formed in UTF-8, Expat gets U+FFFF, which it refuses there: see unwidened().
class EntityInput {
public:
    struct Chunk {
        int byteCount = 0;
        bool isLast = false;
    };
    struct Fault {
        std::string message; ///< empty: none
        Location location;
    };

    explicit EntityInput(Xml::ReadableByteChannel& channel);
    EntityInput(const EntityInput&) = delete;
    EntityInput& operator=(const EntityInput&) = delete;

    /// Reads the first bytes and decides about the encoding (see detectEncoding). Once, before the first fill().
    /// Throws: what the channel throws.
    void detect(const std::string& external, bool isContent);
    const Encoding& encoding() const { return encoding_; }

    /// Puts the next bytes into `buffer`, which has room for at least kChunkSize. When fault() is there afterwards, the
    /// bytes are those in front of it, and there are no more.
    /// Throws: what the channel throws, and IOException when it claims more than it was asked for.
    Chunk fill(char* buffer);
    const Fault& fault() const { return fault_; }
    /// What is wrong with the bytes that the last character of the last chunk stands for; empty: nothing.
    const std::string& unwidened() const { return unwidened_; }

    /// The chunk that the next fill() will give, taken out of turn; an empty one at the end.
    std::string_view readAhead();

    static constexpr int kChunkSize = 64 * 1024;

private:
    unsigned int read(char* buffer, unsigned int capacity);
    Chunk fillNow(char* buffer);
    Chunk fillDirectly(char* buffer);
    Chunk fillWidened(char* buffer);
    std::size_t widen(XML_Char* units, bool isLast);
    Chunk fillRecoded(char* buffer);
    unsigned int decode(char* buffer, unsigned int capacity);
    unsigned int finishDecoding(char* buffer, unsigned int capacity);
    unsigned int withoutZero(const char* buffer, unsigned int byteCount);
    unsigned int withoutMark(char* buffer, unsigned int byteCount);
    unsigned int heldBack(const char* buffer, unsigned int byteCount) const;
    unsigned int checkUnits(const char* buffer, unsigned int byteCount);
    void fail(std::string message);

    Xml::ReadableByteChannel& channel_;
    std::string head_; ///< read to detect the encoding, not delivered yet
    std::size_t headUsed_ = 0;
    bool atEnd_ = false; ///< of the channel
    Encoding encoding_;
    Runtime::StreamDecoder decoder_;
    std::vector<char> raw_; ///< what waits to be widened or decoded
    std::size_t rawUsed_ = 0, rawFilled_ = 0;
    bool markLookedFor_ = false; ///< in the decoder's output
    bool startLookedAt_ = false; ///< of the same
    char carry_[4];              ///< the end of the last chunk, held back
    unsigned int carried_ = 0;
    TextPosition position_; ///< of what was delivered; only followed where Fault needs it
    Fault fault_;
    std::string unwidened_;
    std::string ahead_; ///< chunks that were taken out of turn
    std::size_t aheadUsed_ = 0;
    bool aheadIsLast_ = false;
};

} // namespace Quillon::SaxEngine

#endif
