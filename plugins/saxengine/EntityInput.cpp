#include "EntityInput.h"

#include "runtime/Transcoding.h"
#include "system/OutOfMemoryException.h"
#include "xml/IOException.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace Quillon::SaxEngine {

namespace {

constexpr unsigned int kRawSize = 8 * 1024;
constexpr XML_Char kNoCharacter = 0xFFFF;

unsigned int unitAt(const char* bytes, bool bigEndian) {
    const unsigned int first = static_cast<unsigned char>(bytes[0]),
                       second = static_cast<unsigned char>(bytes[1]);
    return bigEndian ? first << 8 | second : second << 8 | first;
}
bool isHighSurrogate(unsigned int unit) {
    return (unit & 0xFC00) == 0xD800;
}
bool isLowSurrogate(unsigned int unit) {
    return (unit & 0xFC00) == 0xDC00;
}

} // namespace

EntityInput::EntityInput(Xml::ReadableByteChannel& channel) : channel_(channel) {}

unsigned int EntityInput::read(char* buffer, unsigned int capacity) {
    if (headUsed_ < head_.size()) {
        const std::size_t count = std::min<std::size_t>(capacity, head_.size() - headUsed_);
        std::memcpy(buffer, head_.data() + headUsed_, count);
        headUsed_ += count;
        return static_cast<unsigned int>(count);
    }
    if (atEnd_)
        return 0;
    const unsigned int count = channel_.read(reinterpret_cast<unsigned char*>(buffer), capacity);
    if (count > capacity)
        Xml::IOException::doThrow();
    atEnd_ = count == 0;
    return count;
}

void EntityInput::detect(const std::string& external, bool isContent) {
    char buffer[512];
    while (!atEnd_ && !isEnoughToDetect(head_, external, isContent)) {
        const unsigned int count = channel_.read(reinterpret_cast<unsigned char*>(buffer), sizeof buffer);
        if (count > sizeof buffer)
            Xml::IOException::doThrow();
        atEnd_ = count == 0;
        head_.append(buffer, count);
    }
    encoding_ = detectEncoding(head_, external, isContent);
    headUsed_ = encoding_.markLength;
    if (!encoding_.fault.empty()) {
        fail(encoding_.fault);
    } else if (encoding_.isWidened) {
        raw_.resize(kChunkSize / sizeof(XML_Char));
    } else if (!encoding_.recodeFrom.empty()) {
        if (!decoder_.open(encoding_.recodeFrom.c_str())) // it could be opened a moment ago
            System::OutOfMemoryException::doThrow();
        raw_.resize(kRawSize);
    }
}

void EntityInput::fail(std::string message) {
    fault_ = {std::move(message), position_.location()};
}

EntityInput::Chunk EntityInput::fill(char* buffer) {
    if (ahead_.empty())
        return fillNow(buffer);
    const std::size_t count = std::min<std::size_t>(kChunkSize, ahead_.size() - aheadUsed_);
    std::memcpy(buffer, ahead_.data() + aheadUsed_, count);
    aheadUsed_ += count;
    const bool isUsedUp = aheadUsed_ == ahead_.size();
    if (isUsedUp)
        ahead_.clear();
    return {static_cast<int>(count), isUsedUp && aheadIsLast_};
}

std::string_view EntityInput::readAhead() {
    if (aheadIsLast_ || !fault_.message.empty())
        return {};
    if (ahead_.empty())
        aheadUsed_ = 0;
    const std::size_t before = ahead_.size();
    ahead_.resize(before + kChunkSize);
    const Chunk chunk = fillNow(ahead_.data() + before);
    ahead_.resize(before + static_cast<std::size_t>(chunk.byteCount));
    aheadIsLast_ = chunk.isLast;
    return std::string_view(ahead_).substr(before);
}

EntityInput::Chunk EntityInput::fillNow(char* buffer) {
    if (!fault_.message.empty())
        return {};
    if (encoding_.isWidened)
        return fillWidened(buffer);
    return encoding_.recodeFrom.empty() ? fillDirectly(buffer) : fillRecoded(buffer);
}

/// How many bytes at the end of a chunk have to wait for the next: half a character, half a pair, a carriage return.
unsigned int EntityInput::heldBack(const char* buffer, unsigned int byteCount) const {
    if (!encoding_.isUtf16)
        return byteCount != 0 && buffer[byteCount - 1] == '\r' ? 1 : 0;
    const unsigned int odd = byteCount % 2;
    if (byteCount < 2)
        return odd;
    const unsigned int last = unitAt(buffer + byteCount - odd - 2, encoding_.isBigEndian);
    return odd + (last == '\r' || isHighSurrogate(last) ? 2 : 0);
}

EntityInput::Chunk EntityInput::fillDirectly(char* buffer) {
    unsigned int count = 0, held = 0;
    bool isLast = false;
    do {
        std::memcpy(buffer, carry_, carried_);
        const unsigned int added = read(buffer + carried_, kChunkSize - carried_);
        count = carried_ + added;
        isLast = added == 0;
        held = isLast ? 0 : heldBack(buffer, count);
        std::memcpy(carry_, buffer + count - held, held);
        carried_ = held;
        count -= held;
    } while (count == 0 && !isLast);
    if (!encoding_.isUtf16)
        return {static_cast<int>(count), isLast};
    count = checkUnits(buffer, count);
    return {static_cast<int>(count), isLast && fault_.message.empty()};
}

/// The bytes in front of the first unit that is no character; that is what fault_ then says.
unsigned int EntityInput::checkUnits(const char* buffer, unsigned int byteCount) {
    unsigned int i = 0;
    const char* message = nullptr;
    while (i + 2 <= byteCount && !message) {
        const unsigned int unit = unitAt(buffer + i, encoding_.isBigEndian);
        if (isLowSurrogate(unit))
            message = "an unpaired surrogate: a low one without a high one before it";
        else if (!isHighSurrogate(unit))
            i += 2;
        else if (i + 4 <= byteCount && isLowSurrogate(unitAt(buffer + i + 2, encoding_.isBigEndian)))
            i += 4;
        else
            message = "an unpaired surrogate: a high one without a low one behind it";
    }
    if (!message && i != byteCount)
        message = "the input ends inside a character of UTF-16";
    position_.advanceUtf16(buffer, i, encoding_.isBigEndian);
    if (message)
        fail(message);
    return i;
}

/// A byte becomes one unit at most, so that what is read at once always fits.
EntityInput::Chunk EntityInput::fillWidened(char* buffer) {
    std::size_t unitCount = 0;
    bool isLast = !unwidened_.empty();
    while (unitCount == 0 && !isLast) {
        const unsigned int added =
            read(raw_.data() + rawFilled_, static_cast<unsigned int>(raw_.size() - rawFilled_));
        rawFilled_ += added;
        isLast = added == 0;
        unitCount = widen(reinterpret_cast<XML_Char*>(buffer), isLast); // Expat's buffers are aligned for it
    }
    return {static_cast<int>(unitCount * sizeof(XML_Char)), isLast};
}

/// Widens the raw bytes but for those that have to wait for the next.
std::size_t EntityInput::widen(XML_Char* units, bool isLast) {
    const std::size_t held = !isLast && raw_[rawFilled_ - 1] == '\r' ? 1 : 0;
    const auto beginning = Runtime::wellFormedUtf8ToUtf16(raw_.data(), rawFilled_ - held, units);
    std::size_t unitCount = beginning.unitCount;
    if (beginning.isIllFormed)
        unwidened_ = "bytes that are ill-formed in the encoding \"" + encoding_.name + "\"";
    else if (isLast && beginning.byteCount != rawFilled_)
        unwidened_ = "the input ends inside a character of the encoding \"" + encoding_.name + "\"";
    if (!unwidened_.empty())
        units[unitCount++] = kNoCharacter;
    std::memmove(raw_.data(), raw_.data() + beginning.byteCount, rawFilled_ - beginning.byteCount);
    rawFilled_ -= beginning.byteCount;
    return unitCount;
}

EntityInput::Chunk EntityInput::fillRecoded(char* buffer) {
    std::memcpy(buffer, carry_, carried_);
    unsigned int count = carried_;
    carried_ = 0;
    bool isLast = false;
    while (fault_.message.empty() && !isLast && count < 1024) {
        if (rawUsed_ == 0 && rawFilled_ < raw_.size()) {
            const unsigned int added =
                read(raw_.data() + rawFilled_, static_cast<unsigned int>(raw_.size() - rawFilled_));
            rawFilled_ += added;
            if (added == 0) {
                isLast = true;
                count += finishDecoding(buffer + count, kChunkSize - count);
                break;
            }
        }
        count += decode(buffer + count, kChunkSize - count);
    }
    count = withoutMark(buffer, count);
    if (!std::exchange(startLookedAt_, startLookedAt_ || count > 1))
        count = withoutZero(buffer, count);
    const unsigned int held = isLast || !fault_.message.empty() ? 0 : heldBack(buffer, count);
    std::memcpy(carry_, buffer + count - held, held);
    carried_ = held;
    count -= held;
    position_.advanceUtf8(buffer, count);
    if (!fault_.message.empty())
        fault_.location = position_.location();
    return {static_cast<int>(count), isLast && fault_.message.empty()};
}

/// Decodes what waits. What is left over moves to the front, where the next bytes complete it.
unsigned int EntityInput::decode(char* buffer, unsigned int capacity) {
    const char* in = raw_.data() + rawUsed_;
    std::size_t inLeft = rawFilled_ - rawUsed_;
    char* out = buffer;
    std::size_t outLeft = capacity;
    const auto status = decoder_.decode(&in, &inLeft, &out, &outLeft);
    if (status == Runtime::StreamDecoder::Status::IllFormed)
        fail("bytes that are ill-formed in the encoding \"" + encoding_.name + "\"");
    rawUsed_ = rawFilled_ - inLeft;
    if (status == Runtime::StreamDecoder::Status::InputUsed) {
        std::memmove(raw_.data(), in, inLeft);
        rawUsed_ = 0;
        rawFilled_ = inLeft;
    }
    return static_cast<unsigned int>(out - buffer);
}

/// At the end of the input: a character that the decoder keeps to see what follows comes out, half a one is a fault.
unsigned int EntityInput::finishDecoding(char* buffer, unsigned int capacity) {
    if (rawFilled_ != 0) {
        fail("the input ends inside a character of the encoding \"" + encoding_.name + "\"");
        return 0;
    }
    const char* in = nullptr;
    std::size_t inLeft = 0;
    char* out = buffer;
    std::size_t outLeft = capacity;
    decoder_.decode(&in, &inLeft, &out, &outLeft);
    return static_cast<unsigned int>(out - buffer);
}

/// What comes before a zero byte among the first two, which Expat would take for half of a character in UTF-16.
unsigned int EntityInput::withoutZero(const char* buffer, unsigned int byteCount) {
    const char* const end = buffer + std::min(byteCount, 2u);
    const char* const zero = std::find(buffer, end, '\0');
    if (zero == end)
        return byteCount;
    fail("the character U+0000 is not allowed");
    return static_cast<unsigned int>(zero - buffer);
}

/// A mark that only shows once it is recoded (GB18030 has one).
unsigned int EntityInput::withoutMark(char* buffer, unsigned int byteCount) {
    if (markLookedFor_ || byteCount == 0)
        return byteCount;
    markLookedFor_ = true;
    if (byteCount < 3 || std::memcmp(buffer, "\xEF\xBB\xBF", 3) != 0)
        return byteCount;
    std::memmove(buffer, buffer + 3, byteCount - 3);
    return byteCount - 3;
}

} // namespace Quillon::SaxEngine
