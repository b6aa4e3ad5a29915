#ifndef ZUTARNEX_XML_CODEC_BASE64BINARYCODEC_H
#define ZUTARNEX_XML_CODEC_BASE64BINARYCODEC_H

#include "xml/codec/cteErrorCode.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {

/// Binary data as Base64 text (RFC 4648, "=" padding, a line feed after every 76 characters), and back.
///
/// The streaming calls work through the caller's ranges and keep what is between two calls: a group that the input
/// ended in, and characters or bytes that the output had no room for. One object serves one direction of one stream
/// at a time; reset() before the next stream.
///
///     for (;;) {                                        // encode all of [in, inEnd) through a buffer of any size
///         unsigned char* out = buffer;
///         cteErrorCode err = cteNoError;
///         codec.encode(&out, buffer + sizeof buffer, &in, inEnd, true, &err);
///         use(buffer, out);
///         if (err != cteOutputFull)                     // full: the next call goes on without loss
///             break;
///     }
///
/// Units:     lengths and sizes count bytes, which on the text's side are characters.
/// Ownership: the buffer of a one-shot call is new; the caller releases it by delete[]. It holds a terminating NUL
///            where there is room for one.
/// Threads:   one object is used by one thread at a time.
/// Throws:    nothing. Errors are stored in `*err`; without an `err` a call does nothing.
/// Cost:      no allocation in the streaming calls; whole groups are converted between the ranges directly.
class ZUTARNEX_API Base64BinaryCodec {
public:
    /// The 64 characters in the order of their values, and a NUL.
    static const char Base64BinaryCodecAlphabet[65];
    /// The 6-bit value of each alphabet character, 255 for every other byte; byte 255, which is no index, is invalid.
    static const unsigned char Base64BinaryCodecInverse[255];

    Base64BinaryCodec() noexcept;
    virtual ~Base64BinaryCodec();

    /// Forgets everything: the object is as new.
    void reset() noexcept;

    /// The characters that encoding `n` bytes produces. Nothing to encode, or more than 32 bits can count: stores
    /// cteInvalidArguments and returns 0.
    ///
    /// Deliberate: the line feed that stands behind a last line of 76 characters is not counted
    /// (tests/xml/codec/Base64BinaryCodecTest.cpp, SizeLeavesOutTheLineFeedBehindAFullLastLine).
    static unsigned int encoded_size(unsigned int n, cteErrorCode* err);

    /// Encodes from [*in, inEnd) to [*out, outEnd) and moves `*in` and `*out` past what was consumed and written.
    /// `isFinal` says that no input follows this call, so that a last group of one or two bytes is padded.
    ///
    /// An empty output range, null pointers and inverted ranges are cteInvalidArguments; so is an empty input range,
    /// unless the codec holds something from earlier calls, which the call then delivers.
    void encode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                const unsigned char* inEnd, bool isFinal, cteErrorCode* err);

    /// Decodes, by the same conventions. White space (isspace of the current locale) is skipped wherever it occurs.
    ///
    /// A final call that stores neither cteOutputFull nor cteInvalidInput ends the text: the next call begins another.
    /// Padding is accepted in a final call only; nothing but white space may follow it in its text. On cteInvalidInput what stands
    /// before the group at fault is delivered, and `*in` stands at the group's first character (at the start of the
    /// range when the group began in an earlier call): a call from there reports the same fault.
    ///
    /// Deliberate: the first two characters of a group are not tested. Outside the alphabet their 255 is used as it
    /// maps, without a mask (tests/xml/codec/Base64BinaryCodecTest.cpp, FirstTwoCharactersAreUsedAsTheyMap).
    void decode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                const unsigned char* inEnd, bool isFinal, cteErrorCode* err);

    /// One-shot encoding of `length` bytes. Returns null, with `*outLength` as it was, when an error is stored. The
    /// state of the object is neither read nor changed.
    unsigned char* encode(const unsigned char* data, unsigned int length, unsigned int* outLength,
                          cteErrorCode* err);

    /// One-shot decoding, by the same conventions. White space alone gives an empty result.
    unsigned char* decode(const unsigned char* text, unsigned int length, unsigned int* outLength,
                          cteErrorCode* err);

private:
    struct [[gnu::visibility("hidden")]] Stream;

    unsigned char group_[4];     // up to three bytes when encoding, up to four characters when decoding
    unsigned char groupCount_;   // in group_; when decoding, 5 after a padded group: the text has ended
    unsigned char pending_[5];   // up to four characters and a line feed, or up to three bytes
    unsigned char pendingCount_; // in pending_
    unsigned char pendingIndex_; // the next of them to be delivered
    unsigned int groupsInLine_;  // groups written so far, modulo the 19 of a line
};

} // namespace Quillon::Xml

#endif
