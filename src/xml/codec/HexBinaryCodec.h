#ifndef ZUTARNEX_XML_CODEC_HEXBINARYCODEC_H
#define ZUTARNEX_XML_CODEC_HEXBINARYCODEC_H

#include "xml/codec/cteErrorCode.h"
#include "zutarnex/export.h"

namespace Quillon::Xml {

/// Binary data as upper-case hexadecimal digits, without separators or line breaks, and back.
///
/// The streaming calls work through the caller's ranges and keep what is between two calls: a digit whose pair is not
/// complete, and up to 128 characters or bytes converted ahead of the output. One object serves one direction of one
/// stream at a time; reset() before the next stream. Base64BinaryCodec.h shows the loop around a streaming call.
///
/// Units:     lengths and sizes count bytes, which on the text's side are characters.
/// Ownership: the buffer of a one-shot call is new; the caller releases it by delete[]. It holds a terminating NUL
///            where there is room for one.
/// Threads:   one object is used by one thread at a time.
/// Throws:    nothing. Errors are stored in `*err`; without an `err` a call does nothing.
/// Cost:      no allocation in the streaming calls; one copy out of the codec's own buffer.
class ZUTARNEX_API HexBinaryCodec {
public:
    /// The 16 digits in the order of their values, and a NUL.
    static const char hexAlphabet[17];

    HexBinaryCodec() noexcept;
    virtual ~HexBinaryCodec();

    /// Forgets everything: the object is as new.
    void reset() noexcept;

    /// Encodes from [*in, inEnd) to [*out, outEnd) and moves `*in` and `*out` past what was consumed and written.
    /// `isFinal` says that no input follows this call.
    ///
    /// An empty output range, null pointers and inverted ranges are cteInvalidArguments; so is an empty input range,
    /// unless the codec holds something from earlier calls, which the call then delivers.
    void encode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                const unsigned char* inEnd, bool isFinal, cteErrorCode* err);

    /// Decodes, by the same conventions. Bytes 9 to 13 and 32 are skipped wherever they occur. On cteInvalidInput what
    /// stands before the byte at fault is delivered, and `*in` stands at that byte. A final call that stores neither
    /// that nor cteOutputFull ends the text: the next call begins another.
    ///
    /// Deliberate: lower-case digits are cteInvalidInput (tests/xml/codec/HexBinaryCodecTest.cpp,
    /// LowerCaseDigitsAreInvalid).
    void decode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                const unsigned char* inEnd, bool isFinal, cteErrorCode* err);

    /// One-shot encoding of `length` bytes. Returns null, with `*outLength` as it was, when an error is stored; a
    /// result that 32 bits cannot count is cteNoMemory. The state of the object is neither read nor changed.
    unsigned char* encode(const unsigned char* data, unsigned int length, unsigned int* outLength,
                          cteErrorCode* err);

    /// One-shot decoding, by the same conventions. White space alone gives an empty result.
    unsigned char* decode(const unsigned char* text, unsigned int length, unsigned int* outLength,
                          cteErrorCode* err);

private:
    struct [[gnu::visibility("hidden")]] Stream;

    unsigned char pending_[128]; // converted, but not delivered
    unsigned char pendingCount_; // in pending_
    unsigned char pendingIndex_; // the next of them to be delivered
    unsigned char digits_[2];    // the values of the pair that is being decoded
    unsigned char digitCount_;
};

} // namespace Quillon::Xml

#endif
