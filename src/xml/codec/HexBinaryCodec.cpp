// Portions of 128 characters or bytes, so far as there is input: straight into the output as long as that has room for a
// whole one; the last goes through pending_, ahead of the output.
#include "xml/codec/HexBinaryCodec.h"

#include "runtime/kernels/HexInternal.h"
#include "xml/codec/CodecRangesInternal.h"

#include <algorithm>
#include <array>

namespace Quillon::Xml {

const char HexBinaryCodec::hexAlphabet[17] = "0123456789ABCDEF";

namespace {

constexpr std::size_t kPortion = 128;
constexpr unsigned char kNoDigit = 255;

/// The value of each upper-case digit, kNoDigit for every other byte.
constexpr std::array<unsigned char, 256> kDigits = [] {
    std::array<unsigned char, 256> digits{};
    digits.fill(kNoDigit);
    for (unsigned char i = 0; i < 10; ++i)
        digits['0' + i] = i;
    for (unsigned char i = 10; i < 16; ++i)
        digits['A' + i - 10] = i;
    return digits;
}();

bool isWhiteSpace(unsigned char character) noexcept {
    return (character >= 9 && character <= 13) || character == 32;
}

} // namespace

/// A codec together with the ranges of one call.
struct HexBinaryCodec::Stream {
    static_assert(sizeof pending_ == kPortion);

    static bool hasPending(const HexBinaryCodec& codec) noexcept {
        return codec.pendingIndex_ != codec.pendingCount_;
    }
    void deliverPending() noexcept {
        Xml::deliverPending(ranges, codec.pending_, codec.pendingIndex_, codec.pendingCount_);
    }

    cteErrorCode encode() noexcept;
    void encodeWholePortions() noexcept;
    void fillWithCharacters() noexcept;

    cteErrorCode decode(bool isFinal) noexcept;
    bool decodeInto(unsigned char* out, std::size_t limit, std::size_t& count) noexcept;
    bool gatherPair(bool& isValid) noexcept;
    void skipWhiteSpace() noexcept;
    cteErrorCode endText() noexcept;

    HexBinaryCodec& codec;
    CodecRanges ranges;
};

// Encoding

cteErrorCode HexBinaryCodec::Stream::encode() noexcept {
    deliverPending();
    encodeWholePortions();
    while (ranges.room() != 0 && ranges.left() != 0) {
        fillWithCharacters();
        deliverPending();
    }
    return hasPending(codec) || ranges.left() != 0 ? cteOutputFull : cteNoError;
}

/// Leaves what is no whole portion to fillWithCharacters().
void HexBinaryCodec::Stream::encodeWholePortions() noexcept {
    const std::size_t portions = std::min(ranges.left() / (kPortion / 2), ranges.room() / kPortion);
    const std::size_t count = portions * (kPortion / 2);
    Runtime::Kernels::encodeHex(ranges.in, count, ranges.out);
    ranges.in += count;
    ranges.out += count * 2;
}

/// Fills pending_, which is empty, as far as the input goes.
void HexBinaryCodec::Stream::fillWithCharacters() noexcept {
    const std::size_t count = std::min(ranges.left(), kPortion / 2);
    Runtime::Kernels::encodeHex(ranges.in, count, codec.pending_);
    ranges.in += count;
    codec.pendingCount_ = static_cast<unsigned char>(count * 2);
}

// Decoding

cteErrorCode HexBinaryCodec::Stream::decode(bool isFinal) noexcept {
    deliverPending();
    std::size_t count;
    bool isValid = decodeInto(ranges.out, ranges.room() / kPortion * kPortion, count);
    ranges.out += count;
    if (isValid && ranges.room() != 0 && ranges.left() != 0) {
        isValid = decodeInto(codec.pending_, kPortion, count);
        codec.pendingCount_ = static_cast<unsigned char>(count);
        deliverPending();
    }
    if (hasPending(codec)) // also before a fault, which the next call meets again
        return cteOutputFull;
    if (!isValid)
        return cteInvalidInput;
    skipWhiteSpace();
    if (ranges.left() != 0)
        return cteOutputFull;
    return isFinal ? endText() : cteNoError;
}

/// What is left behind the text is no reason to call again.
void HexBinaryCodec::Stream::skipWhiteSpace() noexcept {
    while (ranges.left() != 0 && isWhiteSpace(*ranges.in))
        ++ranges.in;
}

/// The next call begins another text.
cteErrorCode HexBinaryCodec::Stream::endText() noexcept {
    const bool isIncomplete = codec.digitCount_ != 0;
    codec.digitCount_ = 0;
    return isIncomplete ? cteIncompleteInput : cteNoError;
}

/// Decodes up to `limit` bytes, as far as the input goes. False when it stops at an invalid byte.
bool HexBinaryCodec::Stream::decodeInto(unsigned char* out, std::size_t limit, std::size_t& count) noexcept {
    bool isValid = true;
    count = 0;
    while (count != limit) {
        if (codec.digitCount_ == 0)
            count += Runtime::Kernels::decodeHex(ranges.in, ranges.inEnd, limit - count, out + count);
        if (count == limit || !gatherPair(isValid))
            break;
        out[count++] = static_cast<unsigned char>(codec.digits_[0] << 4 | codec.digits_[1]);
        codec.digitCount_ = 0;
    }
    return isValid;
}

/// False when the input is used up or invalid before there is a pair.
bool HexBinaryCodec::Stream::gatherPair(bool& isValid) noexcept {
    for (; ranges.left() != 0; ++ranges.in) {
        const unsigned char digit = kDigits[*ranges.in];
        if (digit == kNoDigit) {
            isValid = isWhiteSpace(*ranges.in);
            if (!isValid)
                return false;
            continue;
        }
        codec.digits_[codec.digitCount_++] = digit;
        if (codec.digitCount_ == 2) {
            ++ranges.in;
            return true;
        }
    }
    return false;
}

// The codec

HexBinaryCodec::HexBinaryCodec() noexcept {
    reset();
}

HexBinaryCodec::~HexBinaryCodec() = default;

void HexBinaryCodec::reset() noexcept {
    std::fill_n(pending_, sizeof pending_, static_cast<unsigned char>(0));
    std::fill_n(digits_, sizeof digits_, static_cast<unsigned char>(0));
    pendingCount_ = pendingIndex_ = digitCount_ = 0;
}

void HexBinaryCodec::encode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                            const unsigned char* inEnd, bool /*isFinal*/, cteErrorCode* err) {
    if (areUsable(out, outEnd, in, inEnd, Stream::hasPending(*this), err))
        report(Stream{*this, {*out, outEnd, *in, inEnd}}.encode(), err);
}

void HexBinaryCodec::decode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                            const unsigned char* inEnd, bool isFinal, cteErrorCode* err) {
    if (areUsable(out, outEnd, in, inEnd, Stream::hasPending(*this) || digitCount_ != 0, err))
        report(Stream{*this, {*out, outEnd, *in, inEnd}}.decode(isFinal), err);
}

unsigned char* HexBinaryCodec::encode(const unsigned char* data, unsigned int length, unsigned int* outLength,
                                      cteErrorCode* err) {
    if (err == nullptr)
        return nullptr;
    if (data == nullptr || outLength == nullptr || length == 0) {
        *err = cteInvalidArguments;
        return nullptr;
    }
    HexBinaryCodec codec;
    return convertAtOnce(data, length, std::uint64_t{length} * 2 + 1, outLength, err,
                         [&](auto out, auto outEnd, auto in, auto inEnd, cteErrorCode* found) {
                             codec.encode(out, outEnd, in, inEnd, true, found);
                         });
}

unsigned char* HexBinaryCodec::decode(const unsigned char* text, unsigned int length, unsigned int* outLength,
                                      cteErrorCode* err) {
    if (err == nullptr)
        return nullptr;
    if (text == nullptr || outLength == nullptr || length == 0) {
        *err = cteInvalidArguments;
        return nullptr;
    }
    HexBinaryCodec codec;
    return convertAtOnce(text, length, std::uint64_t{length} / 2 + 1, outLength, err,
                         [&](auto out, auto outEnd, auto in, auto inEnd, cteErrorCode* found) {
                             codec.decode(out, outEnd, in, inEnd, true, found);
                         });
}

} // namespace Quillon::Xml
