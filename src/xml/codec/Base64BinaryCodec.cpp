// A group is three bytes on one side and four characters on the other. Whole groups go from range to range through the
// two loops below; group_ gathers those that the ranges cut, pending_ keeps what a full output did not take. At most
// one of the two holds something between two calls.
#include "xml/codec/Base64BinaryCodec.h"

#include "xml/codec/CodecRangesInternal.h"

#include <algorithm>
#include <cctype>

namespace Quillon::Xml {

namespace {

constexpr std::size_t kGroupBytes = 3;
constexpr std::size_t kGroupCharacters = 4;
constexpr unsigned int kGroupsInLine = 19;
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

/// Encodes `groupCount` whole groups.
void encodeGroups(const unsigned char* in, unsigned char* out, std::size_t groupCount) noexcept {
    const char* const alphabet = Base64BinaryCodec::Base64BinaryCodecAlphabet;
    for (; groupCount != 0; --groupCount, in += kGroupBytes, out += kGroupCharacters) {
        const unsigned int bits =
            static_cast<unsigned int>(in[0]) << 16 | static_cast<unsigned int>(in[1]) << 8 | in[2];
        out[0] = static_cast<unsigned char>(alphabet[bits >> 18]);
        out[1] = static_cast<unsigned char>(alphabet[bits >> 12 & 63]);
        out[2] = static_cast<unsigned char>(alphabet[bits >> 6 & 63]);
        out[3] = static_cast<unsigned char>(alphabet[bits & 63]);
    }
}

/// Decodes up to `groupCount` groups and stops at the first that is not four characters of the alphabet in a row.
/// Returns how many were decoded.
std::size_t decodeGroups(const unsigned char* in, unsigned char* out, std::size_t groupCount) noexcept {
    for (std::size_t done = 0; done != groupCount; ++done, in += kGroupCharacters, out += kGroupBytes) {
        const unsigned int first = valueOf(in[0]), second = valueOf(in[1]), third = valueOf(in[2]),
                           fourth = valueOf(in[3]);
        if ((first | second | third | fourth) > 63)
            return done;
        out[0] = static_cast<unsigned char>(first << 2 | second >> 4);
        out[1] = static_cast<unsigned char>(second << 4 | third >> 2);
        out[2] = static_cast<unsigned char>(third << 6 | fourth);
    }
    return groupCount;
}

unsigned int significantCharacters(const unsigned char* text, unsigned int length) noexcept {
    return static_cast<unsigned int>(
        std::count_if(text, text + length, [](unsigned char c) { return !isWhiteSpace(c); }));
}

} // namespace

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

// Streaming, both directions

bool Base64BinaryCodec::isInsideGroup() const noexcept {
    return groupCount_ != 0 && groupCount_ != kTextEnded;
}

bool Base64BinaryCodec::hasPending() const noexcept {
    return pendingIndex_ != pendingCount_;
}

void Base64BinaryCodec::deliverPending(CodecRanges& ranges) noexcept {
    const std::size_t count = pendingCount_ - std::size_t{pendingIndex_};
    const std::size_t delivered = ranges.deliver(pending_ + pendingIndex_, count);
    pendingIndex_ = static_cast<unsigned char>(pendingIndex_ + delivered);
    if (!hasPending())
        pendingIndex_ = pendingCount_ = 0;
}

// Encoding

void Base64BinaryCodec::encode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                               const unsigned char* inEnd, bool isFinal, cteErrorCode* err) {
    if (err == nullptr)
        return;
    if (!areUsable(out, outEnd, in, inEnd, hasPending() || isInsideGroup())) {
        *err = cteInvalidArguments;
        return;
    }
    CodecRanges ranges{*out, outEnd, *in, inEnd};
    deliverPending(ranges);
    while (ranges.room() != 0) {
        if (groupCount_ == 0 && ranges.left() >= kGroupBytes && ranges.room() >= kGroupCharacters)
            encodeWholeGroups(ranges);
        else if (gatherBytes(ranges, isFinal))
            encodeGatheredGroup();
        else
            break;
        deliverPending(ranges);
    }
    if (hasPending() || ranges.left() != 0)
        *err = cteOutputFull;
}

/// As far as the ranges go, but not beyond the line.
void Base64BinaryCodec::encodeWholeGroups(CodecRanges& ranges) noexcept {
    const std::size_t count = std::min({ranges.left() / kGroupBytes, ranges.room() / kGroupCharacters,
                                        std::size_t{kGroupsInLine - groupsInLine_}});
    encodeGroups(ranges.in, ranges.out, count);
    ranges.in += count * kGroupBytes;
    ranges.out += count * kGroupCharacters;
    countGroups(static_cast<unsigned int>(count));
}

/// False when the input is used up before there is a group that can be encoded.
bool Base64BinaryCodec::gatherBytes(CodecRanges& ranges, bool isFinal) noexcept {
    while (groupCount_ != kGroupBytes && ranges.left() != 0)
        group_[groupCount_++] = *ranges.in++;
    return groupCount_ == kGroupBytes || (isFinal && groupCount_ != 0);
}

/// Encodes the group in group_, padded if it is not whole.
void Base64BinaryCodec::encodeGatheredGroup() noexcept {
    std::fill(group_ + groupCount_, group_ + kGroupBytes, static_cast<unsigned char>(0));
    encodeGroups(group_, pending_, 1);
    std::fill(pending_ + groupCount_ + 1, pending_ + kGroupCharacters, kPadding);
    pendingCount_ = kGroupCharacters;
    groupCount_ = 0;
    countGroups(1);
}

void Base64BinaryCodec::countGroups(unsigned int count) noexcept {
    groupsInLine_ += count;
    if (groupsInLine_ == kGroupsInLine) {
        groupsInLine_ = 0;
        pending_[pendingCount_++] = '\n';
    }
}

// Decoding

void Base64BinaryCodec::decode(unsigned char** out, const unsigned char* outEnd, const unsigned char** in,
                               const unsigned char* inEnd, bool isFinal, cteErrorCode* err) {
    if (err == nullptr)
        return;
    if (!areUsable(out, outEnd, in, inEnd, hasPending() || isInsideGroup())) {
        *err = cteInvalidArguments;
        return;
    }
    CodecRanges ranges{*out, outEnd, *in, inEnd};
    GroupStart start{*in, groupCount_};
    deliverPending(ranges);
    while (ranges.room() != 0) {
        if (groupCount_ == 0 && decodeWholeGroups(ranges))
            continue;
        if (!gatherCharacters(ranges, start))
            break;
        if (!decodeGatheredGroup(isFinal)) {
            ranges.in = start.in;
            groupCount_ = start.groupCount;
            *err = cteInvalidInput;
            return;
        }
        deliverPending(ranges);
    }
    if (hasPending() || ranges.left() != 0)
        *err = cteOutputFull;
    else if (isFinal && isInsideGroup())
        *err = cteIncompleteInput;
}

/// As far as the ranges and an unbroken row of alphabet characters go; false when that is no group at all.
bool Base64BinaryCodec::decodeWholeGroups(CodecRanges& ranges) noexcept {
    const std::size_t fitting = std::min(ranges.left() / kGroupCharacters, ranges.room() / kGroupBytes);
    const std::size_t count = decodeGroups(ranges.in, ranges.out, fitting);
    ranges.in += count * kGroupCharacters;
    ranges.out += count * kGroupBytes;
    return count != 0;
}

/// False when the input is used up before there is a group. After the end of the text, any character is one.
bool Base64BinaryCodec::gatherCharacters(CodecRanges& ranges, GroupStart& start) noexcept {
    for (; ranges.left() != 0; ++ranges.in) {
        if (isWhiteSpace(*ranges.in))
            continue;
        if (!isInsideGroup())
            start = {ranges.in, groupCount_};
        if (groupCount_ == kTextEnded)
            return true;
        group_[groupCount_++] = *ranges.in;
        if (groupCount_ == kGroupCharacters) {
            ++ranges.in;
            return true;
        }
    }
    return false;
}

/// Decodes the group in group_; false when it is not valid here.
///
/// Of the first two characters the value is used as it maps, 255 included, and cut to a byte with the result.
bool Base64BinaryCodec::decodeGatheredGroup(bool isFinal) noexcept {
    if (groupCount_ == kTextEnded)
        return false;
    const unsigned int first = valueOf(group_[0]), second = valueOf(group_[1]), third = valueOf(group_[2]),
                       fourth = valueOf(group_[3]);
    const bool isWhole = isInAlphabet(third) && isInAlphabet(fourth);
    if (!isWhole && !(isFinal && group_[3] == kPadding))
        return false;
    const bool isTwoBytes = !isWhole && group_[2] != kPadding;
    const bool isOneByte = !isWhole && group_[2] == kPadding;
    if ((isTwoBytes && (third & 3) != 0) || (isOneByte && (second & 15) != 0))
        return false;
    pending_[0] = static_cast<unsigned char>(first << 2 | second >> 4);
    pending_[1] = static_cast<unsigned char>(second << 4 | third >> 2);
    pending_[2] = static_cast<unsigned char>(third << 6 | fourth);
    pendingCount_ = isWhole ? 3 : isTwoBytes ? 2 : 1;
    groupCount_ = isWhole ? 0 : kTextEnded;
    return true;
}

// One-shot

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
    if (text == nullptr || outLength == nullptr || length == 0
        || significantCharacters(text, length) % kGroupCharacters != 0) {
        *err = cteInvalidArguments;
        return nullptr;
    }
    const std::uint64_t groups = significantCharacters(text, length) / kGroupCharacters;
    Base64BinaryCodec codec;
    return convertAtOnce(text, length, groups * kGroupBytes + 1, outLength, err,
                         [&](auto out, auto outEnd, auto in, auto inEnd, cteErrorCode* found) {
                             codec.decode(out, outEnd, in, inEnd, true, found);
                         });
}

} // namespace Quillon::Xml
