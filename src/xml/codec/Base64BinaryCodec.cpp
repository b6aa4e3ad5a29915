// A group is three bytes on one side and four characters on the other. Whole groups go from range to range through the
// kernels; group_ gathers those that the ranges cut, pending_ keeps what a full output did not take. At most one of the
// two holds something between two calls.
#include "xml/codec/Base64BinaryCodec.h"

#include "runtime/kernels/Base64Internal.h"
#include "xml/codec/CodecRangesInternal.h"

#include <algorithm>
#include <cctype>

namespace Quillon::Xml {

namespace {

constexpr std::size_t kGroupBytes = 3;
constexpr std::size_t kGroupCharacters = 4;
constexpr unsigned int kGroupsInLine = Runtime::Kernels::kBase64GroupsInLine;
constexpr unsigned char kTextEnded = 5; // as groupCount_: a padded group was decoded
constexpr unsigned char kPadding = '=';
constexpr unsigned char kNoValue = 255;

unsigned int valueOf(unsigned char character) noexcept {
    return character == 255 ? kNoValue : Base64BinaryCodec::Base64BinaryCodecInverse[character];
}

bool isInAlphabet(unsigned int value) noexcept {
    return value != kNoValue;
}

bool isWhiteSpace(unsigned char character) noexcept {
    return std::isspace(character) != 0;
}

/// The characters that are no white space in the current locale.
std::size_t significantCharacters(const unsigned char* text, std::size_t length) noexcept {
    std::size_t count = 0;
    for (const unsigned char* const end = text + length; text != end; ++text) {
        count += Runtime::Kernels::countVisible(text, end);
        if (text == end)
            break;
        count += isWhiteSpace(*text) ? 0 : 1;
    }
    return count;
}

} // namespace

/// A codec together with the ranges of one call.
struct Base64BinaryCodec::Stream {
    /// Where the group that is being gathered began, and what was held of it there.
    struct GroupStart {
        const unsigned char* in;
        unsigned char groupCount;
    };

    static bool isInsideGroup(const Base64BinaryCodec& codec) noexcept {
        return codec.groupCount_ != 0 && codec.groupCount_ != kTextEnded;
    }
    static bool hasPending(const Base64BinaryCodec& codec) noexcept {
        return codec.pendingIndex_ != codec.pendingCount_;
    }
    static bool holdsSomething(const Base64BinaryCodec& codec) noexcept {
        return isInsideGroup(codec) || hasPending(codec);
    }
    void deliverPending() noexcept {
        Xml::deliverPending(ranges, codec.pending_, codec.pendingIndex_, codec.pendingCount_);
    }

    cteErrorCode encode(bool isFinal) noexcept;
    void encodeWholeGroups() noexcept;
    bool gatherBytes(bool isFinal) noexcept;
    void encodeGatheredGroup() noexcept;
    void countGroups(unsigned int count) noexcept;

    cteErrorCode decode(bool isFinal) noexcept;
    void decodeWholeGroups() noexcept;
    bool gatherCharacters(GroupStart& start) noexcept;
    bool decodeGatheredGroup(bool isFinal) noexcept;
    void skipWhiteSpace() noexcept;
    cteErrorCode endText() noexcept;

    Base64BinaryCodec& codec;
    CodecRanges ranges;
};

// Encoding

cteErrorCode Base64BinaryCodec::Stream::encode(bool isFinal) noexcept {
    if (codec.groupCount_ >= kGroupBytes) // left over from a decoding: no part of a group here
        codec.groupCount_ = 0;
    deliverPending();
    while (ranges.room() != 0) {
        if (codec.groupCount_ == 0 && ranges.left() >= kGroupBytes && ranges.room() >= kGroupCharacters)
            encodeWholeGroups();
        else if (gatherBytes(isFinal))
            encodeGatheredGroup();
        else
            break;
        deliverPending();
    }
    return hasPending(codec) || ranges.left() != 0 ? cteOutputFull : cteNoError;
}

/// As far as the ranges go: whole lines, or up to the end of one.
void Base64BinaryCodec::Stream::encodeWholeGroups() noexcept {
    constexpr std::size_t kLineBytes = kGroupsInLine * kGroupBytes;
    constexpr std::size_t kLineCharacters = kGroupsInLine * kGroupCharacters + 1;
    const std::size_t lines = std::min(ranges.left() / kLineBytes, ranges.room() / kLineCharacters);
    if (codec.groupsInLine_ == 0 && lines != 0) {
        Runtime::Kernels::encodeBase64Lines(ranges.in, lines, ranges.out);
        ranges.in += lines * kLineBytes;
        ranges.out += lines * kLineCharacters;
        return;
    }
    const std::size_t count = std::min({ranges.left() / kGroupBytes, ranges.room() / kGroupCharacters,
                                        std::size_t{kGroupsInLine - codec.groupsInLine_}});
    Runtime::Kernels::encodeBase64(ranges.in, count, ranges.out);
    ranges.in += count * kGroupBytes;
    ranges.out += count * kGroupCharacters;
    countGroups(static_cast<unsigned int>(count));
}

/// False when the input is used up before there is a group that can be encoded.
bool Base64BinaryCodec::Stream::gatherBytes(bool isFinal) noexcept {
    while (codec.groupCount_ != kGroupBytes && ranges.left() != 0)
        codec.group_[codec.groupCount_++] = *ranges.in++;
    return codec.groupCount_ == kGroupBytes || (isFinal && codec.groupCount_ != 0);
}

/// Encodes the gathered group, padded if it is not whole.
void Base64BinaryCodec::Stream::encodeGatheredGroup() noexcept {
    const std::size_t byteCount = codec.groupCount_;
    std::fill(codec.group_ + byteCount, codec.group_ + kGroupBytes, static_cast<unsigned char>(0));
    Runtime::Kernels::encodeBase64(codec.group_, 1, codec.pending_);
    std::fill(codec.pending_ + byteCount + 1, codec.pending_ + kGroupCharacters, kPadding);
    codec.pendingCount_ = kGroupCharacters;
    codec.groupCount_ = 0;
    countGroups(1);
}

void Base64BinaryCodec::Stream::countGroups(unsigned int count) noexcept {
    codec.groupsInLine_ += count;
    if (codec.groupsInLine_ == kGroupsInLine) {
        codec.groupsInLine_ = 0;
        codec.pending_[codec.pendingCount_++] = '\n';
    }
}

// Decoding

cteErrorCode Base64BinaryCodec::Stream::decode(bool isFinal) noexcept {
    GroupStart start{ranges.in, codec.groupCount_};
    deliverPending();
    while (ranges.room() != 0) {
        if (codec.groupCount_ == 0)
            decodeWholeGroups();
        if (ranges.room() == 0 || !gatherCharacters(start))
            break;
        if (!decodeGatheredGroup(isFinal)) {
            ranges.in = start.in;
            codec.groupCount_ = start.groupCount;
            return cteInvalidInput;
        }
        deliverPending();
    }
    if (!hasPending(codec))
        skipWhiteSpace();
    if (hasPending(codec) || ranges.left() != 0)
        return cteOutputFull;
    return isFinal ? endText() : cteNoError;
}

/// What is left behind the text is no reason to call again.
void Base64BinaryCodec::Stream::skipWhiteSpace() noexcept {
    while (ranges.left() != 0 && isWhiteSpace(*ranges.in))
        ++ranges.in;
}

/// The next call begins another text.
cteErrorCode Base64BinaryCodec::Stream::endText() noexcept {
    const bool isIncomplete = isInsideGroup(codec);
    codec.groupCount_ = 0;
    return isIncomplete ? cteIncompleteInput : cteNoError;
}

/// As far as the ranges and groups of alphabet characters go.
void Base64BinaryCodec::Stream::decodeWholeGroups() noexcept {
    ranges.out +=
        kGroupBytes
        * Runtime::Kernels::decodeBase64(ranges.in, ranges.inEnd, ranges.room() / kGroupBytes, ranges.out);
}

/// False when the input is used up before there is a group. After the end of the text, any character is one.
bool Base64BinaryCodec::Stream::gatherCharacters(GroupStart& start) noexcept {
    for (; ranges.left() != 0; ++ranges.in) {
        if (isWhiteSpace(*ranges.in))
            continue;
        if (!isInsideGroup(codec))
            start = {ranges.in, codec.groupCount_};
        if (codec.groupCount_ == kTextEnded)
            return true;
        codec.group_[codec.groupCount_++] = *ranges.in;
        if (codec.groupCount_ == kGroupCharacters) {
            ++ranges.in;
            return true;
        }
    }
    return false;
}

/// Decodes the gathered group; false when it is not valid here.
///
/// Of the first two characters the value is used as it maps, 255 included, and cut to a byte with the result.
bool Base64BinaryCodec::Stream::decodeGatheredGroup(bool isFinal) noexcept {
    if (codec.groupCount_ == kTextEnded)
        return false;
    const unsigned char* const group = codec.group_;
    const unsigned int first = valueOf(group[0]), second = valueOf(group[1]), third = valueOf(group[2]),
                       fourth = valueOf(group[3]);
    const bool isWhole = isInAlphabet(third) && isInAlphabet(fourth);
    if (!isWhole && !(isFinal && group[3] == kPadding))
        return false;
    const bool isTwoBytes = !isWhole && group[2] != kPadding;
    const bool isOneByte = !isWhole && group[2] == kPadding;
    if ((isTwoBytes && (third & 3) != 0) || (isOneByte && (second & 15) != 0))
        return false;
    codec.pending_[0] = static_cast<unsigned char>(first << 2 | second >> 4);
    codec.pending_[1] = static_cast<unsigned char>(second << 4 | third >> 2);
    codec.pending_[2] = static_cast<unsigned char>(third << 6 | fourth);
    codec.pendingCount_ = isWhole ? 3 : isTwoBytes ? 2 : 1;
    codec.groupCount_ = isWhole ? 0 : kTextEnded;
    return true;
}

// The codec

Base64BinaryCodec::Base64BinaryCodec() noexcept {
    reset();
}

Base64BinaryCodec::~Base64BinaryCodec() = default;

void Base64BinaryCodec::reset() noexcept {
    std::fill_n(group_, sizeof group_, static_cast<unsigned char>(0));
    std::fill_n(pending_, sizeof pending_, static_cast<unsigned char>(0));
    groupCount_ = pendingCount_ = pendingIndex_ = 0;
    groupsInLine_ = 0;
}

unsigned int Base64BinaryCodec::encoded_size(unsigned int n, cteErrorCode* err) {
    const std::uint64_t groups = (std::uint64_t{n} + kGroupBytes - 1) / kGroupBytes;
    const std::uint64_t lines = (groups + kGroupsInLine - 1) / kGroupsInLine;
    const std::uint64_t size = groups * kGroupCharacters + (lines >= 2 ? lines - 1 : 0);
    if (size != 0 && size <= std::numeric_limits<std::uint32_t>::max())
        return static_cast<unsigned int>(size);
    if (err != nullptr)
        *err = cteInvalidArguments;
    return 0;
}

void Base64BinaryCodec::encode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                               const unsigned char* inEnd, bool isFinal, cteErrorCode* err) {
    if (areUsable(out, outEnd, in, inEnd, Stream::holdsSomething(*this), err))
        report(Stream{*this, {*out, outEnd, *in, inEnd}}.encode(isFinal), err);
}

void Base64BinaryCodec::decode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                               const unsigned char* inEnd, bool isFinal, cteErrorCode* err) {
    if (areUsable(out, outEnd, in, inEnd, Stream::holdsSomething(*this), err))
        report(Stream{*this, {*out, outEnd, *in, inEnd}}.decode(isFinal), err);
}

unsigned char* Base64BinaryCodec::encode(const unsigned char* data, unsigned int length,
                                         unsigned int* outLength, cteErrorCode* err) {
    if (err == nullptr)
        return nullptr;
    if (data == nullptr || outLength == nullptr) {
        *err = cteInvalidArguments;
        return nullptr;
    }
    const unsigned int size = encoded_size(length, err);
    if (size == 0)
        return nullptr;
    Base64BinaryCodec codec;
    return convertAtOnce(data, length, std::uint64_t{size} + 1, outLength, err,
                         [&](auto out, auto outEnd, auto in, auto inEnd, cteErrorCode* found) {
                             codec.encode(out, outEnd, in, inEnd, true, found);
                         });
}

unsigned char* Base64BinaryCodec::decode(const unsigned char* text, unsigned int length,
                                         unsigned int* outLength, cteErrorCode* err) {
    if (err == nullptr)
        return nullptr;
    const bool areUsable = text != nullptr && outLength != nullptr && length != 0;
    const std::uint64_t characters = areUsable ? significantCharacters(text, length) : 0;
    if (!areUsable || characters % kGroupCharacters != 0) {
        *err = cteInvalidArguments;
        return nullptr;
    }
    const std::uint64_t groups = characters / kGroupCharacters;
    Base64BinaryCodec codec;
    return convertAtOnce(text, length, groups * kGroupBytes + 1, outLength, err,
                         [&](auto out, auto outEnd, auto in, auto inEnd, cteErrorCode* found) {
                             codec.decode(out, outEnd, in, inEnd, true, found);
                         });
}

} // namespace Quillon::Xml
