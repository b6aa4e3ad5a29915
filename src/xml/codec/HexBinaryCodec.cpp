// Everything goes through pending_, 128 characters or bytes at a time: input is converted ahead of the output, so far
// as there is any.
#include "xml/codec/HexBinaryCodec.h"

#include "xml/codec/CodecRangesInternal.h"

#include <algorithm>

namespace Quillon::Xml {

const char HexBinaryCodec::hexAlphabet[17] = "0123456789ABCDEF";

namespace {

constexpr unsigned char kNoDigit = 255;

/// Upper-case digits only.
unsigned char digitOf(unsigned char character) noexcept {
    if (character >= '0' && character <= '9')
        return static_cast<unsigned char>(character - '0');
    if (character >= 'A' && character <= 'F')
        return static_cast<unsigned char>(character - 'A' + 10);
    return kNoDigit;
}

bool isWhiteSpace(unsigned char character) noexcept {
    return (character >= 9 && character <= 13) || character == 32;
}

} // namespace

HexBinaryCodec::HexBinaryCodec() noexcept {
    reset();
}

HexBinaryCodec::~HexBinaryCodec() = default;

void HexBinaryCodec::reset() noexcept {
    std::fill_n(pending_, sizeof pending_, static_cast<unsigned char>(0));
    std::fill_n(digits_, sizeof digits_, static_cast<unsigned char>(0));
    pendingCount_ = pendingIndex_ = digitCount_ = 0;
}

// Streaming, both directions

bool HexBinaryCodec::hasPending() const noexcept {
    return pendingIndex_ != pendingCount_;
}

void HexBinaryCodec::deliverPending(CodecRanges& ranges) noexcept {
    const std::size_t count = pendingCount_ - std::size_t{pendingIndex_};
    const std::size_t delivered = ranges.deliver(pending_ + pendingIndex_, count);
    pendingIndex_ = static_cast<unsigned char>(pendingIndex_ + delivered);
    if (!hasPending())
        pendingIndex_ = pendingCount_ = 0;
}

// Encoding

void HexBinaryCodec::encode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                            const unsigned char* inEnd, bool /*isFinal*/, cteErrorCode* err) {
    if (err == nullptr)
        return;
    if (!areUsable(out, outEnd, in, inEnd, hasPending())) {
        *err = cteInvalidArguments;
        return;
    }
    CodecRanges ranges{*out, outEnd, *in, inEnd};
    deliverPending(ranges);
    while (ranges.room() != 0 && ranges.left() != 0) {
        fillWithCharacters(ranges);
        deliverPending(ranges);
    }
    if (hasPending() || ranges.left() != 0)
        *err = cteOutputFull;
}

/// Fills pending_, which is empty, as far as the input goes.
void HexBinaryCodec::fillWithCharacters(CodecRanges& ranges) noexcept {
    const std::size_t count = std::min(ranges.left(), sizeof pending_ / 2);
    unsigned char* out = pending_;
    for (const unsigned char* end = ranges.in + count; ranges.in != end; ++ranges.in) {
        *out++ = static_cast<unsigned char>(hexAlphabet[*ranges.in >> 4]);
        *out++ = static_cast<unsigned char>(hexAlphabet[*ranges.in & 15]);
    }
    pendingCount_ = static_cast<unsigned char>(count * 2);
}

// Decoding

void HexBinaryCodec::decode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                            const unsigned char* inEnd, bool isFinal, cteErrorCode* err) {
    if (err == nullptr)
        return;
    if (!areUsable(out, outEnd, in, inEnd, hasPending() || digitCount_ != 0)) {
        *err = cteInvalidArguments;
        return;
    }
    CodecRanges ranges{*out, outEnd, *in, inEnd};
    bool isValid = true;
    deliverPending(ranges);
    while (isValid && ranges.room() != 0 && ranges.left() != 0) {
        isValid = fillWithBytes(ranges);
        deliverPending(ranges);
    }
    if (hasPending()) // also before a fault, which the next call meets again
        *err = cteOutputFull;
    else if (!isValid)
        *err = cteInvalidInput;
    else if (ranges.left() != 0)
        *err = cteOutputFull;
    else if (isFinal && digitCount_ != 0)
        *err = cteIncompleteInput;
}

/// Fills pending_, which is empty, as far as the input goes. False when it stops at an invalid byte.
bool HexBinaryCodec::fillWithBytes(CodecRanges& ranges) noexcept {
    for (; pendingCount_ != sizeof pending_ && ranges.left() != 0; ++ranges.in) {
        if (isWhiteSpace(*ranges.in))
            continue;
        const unsigned char digit = digitOf(*ranges.in);
        if (digit == kNoDigit)
            return false;
        digits_[digitCount_++] = digit;
        if (digitCount_ == 2) {
            pending_[pendingCount_++] = static_cast<unsigned char>(digits_[0] << 4 | digits_[1]);
            digitCount_ = 0;
        }
    }
    return true;
}

// One-shot

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
