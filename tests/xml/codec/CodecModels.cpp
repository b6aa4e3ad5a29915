#include "xml/codec/CodecModels.h"

#include <algorithm>
#include <cstdio>

namespace Quillon::Testing {

namespace {

const std::string kBase64Digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
const std::string kHexDigits = "0123456789ABCDEF";

enum Error { kInvalidArguments = 1, kIncomplete = 3, kInvalid = 4, kOutputFull = 5 };

bool isBlank(char c) {
    return std::string("\t\n\v\f\r ").find(c) != std::string::npos;
}

/// Moves characters from `pending` to `written` until one of them is through.
void deliver(std::string& pending, std::string& written, std::size_t room) {
    const std::size_t count = std::min(pending.size(), room - written.size());
    written += pending.substr(0, count);
    pending.erase(0, count);
}

/// Passes over what is left behind the text.
void skipBlanks(std::string_view input, std::size_t& consumed) {
    while (consumed < input.size() && isBlank(input[consumed]))
        ++consumed;
}

/// 0 to 63, or 255.
unsigned base64Value(char c) {
    const std::size_t at = kBase64Digits.find(c);
    return at == std::string::npos ? 255 : static_cast<unsigned>(at);
}

/// A call of the model's own that has room for everything.
template <class Model>
OneShotResult finalCall(std::string_view input) {
    Model model;
    const CallResult result = model.call(input, input.size() * 3 + 100, true);
    return {result.error == 0 ? result.written : std::string(), result.error};
}

} // namespace

std::string escaped(std::string_view bytes) {
    std::string out;
    for (const char c : bytes) {
        if (c >= ' ' && c < 127 && c != '\\' && c != '"') {
            out += c;
        } else {
            char code[8];
            std::snprintf(code, sizeof code, "\\x%02X", static_cast<unsigned>(static_cast<unsigned char>(c)));
            out += code;
        }
    }
    return out;
}

// Base64: text of bits, cut into six

void Base64EncoderModel::encodeGroup() {
    std::string bits;
    for (const char byte : group_)
        for (int bit = 7; bit >= 0; --bit)
            bits += (static_cast<unsigned char>(byte) >> bit) % 2 != 0 ? '1' : '0';
    while (bits.size() % 6 != 0)
        bits += '0';
    std::string characters;
    for (std::size_t i = 0; i < bits.size(); i += 6)
        characters += kBase64Digits[std::stoul(bits.substr(i, 6), nullptr, 2)];
    while (characters.size() < 4)
        characters += '=';
    pending_ += characters;
    group_.clear();
    ++groups_;
    if (groups_ % 19 == 0)
        pending_ += '\n';
}

CallResult Base64EncoderModel::call(std::string_view input, std::size_t room, bool isFinal) {
    CallResult result;
    if (room == 0 || (input.empty() && group_.empty() && pending_.empty()))
        return {"", 0, kInvalidArguments};
    for (;;) {
        deliver(pending_, result.written, room);
        if (result.written.size() == room)
            break;
        if (result.consumed < input.size())
            group_ += input[result.consumed++];
        else if (!isFinal || group_.empty())
            break;
        if (group_.size() == 3 || (isFinal && result.consumed == input.size()))
            encodeGroup();
    }
    if (!pending_.empty() || result.consumed < input.size())
        result.error = kOutputFull;
    return result;
}

OneShotResult Base64EncoderModel::atOnce(std::string_view input) {
    return finalCall<Base64EncoderModel>(input);
}

bool Base64DecoderModel::decodeGroup(bool isFinal) {
    const unsigned a = base64Value(group_[0]), b = base64Value(group_[1]), c = base64Value(group_[2]),
                   d = base64Value(group_[3]);
    const std::string all{static_cast<char>(a << 2 | b >> 4), static_cast<char>(b << 4 | c >> 2),
                          static_cast<char>(c << 6 | d)};
    if (c != 255 && d != 255) {
        pending_ = all;
        return true;
    }
    if (!isFinal)
        return false;
    ended_ = true;
    if (group_[3] == '=' && group_[2] == '=' && b % 16 == 0)
        pending_ = all.substr(0, 1);
    else if (group_[3] == '=' && group_[2] != '=' && c % 4 == 0)
        pending_ = all.substr(0, 2);
    else
        ended_ = false;
    return ended_;
}

CallResult Base64DecoderModel::call(std::string_view input, std::size_t room, bool isFinal) {
    CallResult result;
    if (room == 0 || (input.empty() && group_.empty() && pending_.empty()))
        return {"", 0, kInvalidArguments};
    std::size_t groupStart = 0;
    std::string groupAtStart = group_;
    for (;;) {
        deliver(pending_, result.written, room);
        if (result.written.size() == room || result.consumed == input.size())
            break;
        const char c = input[result.consumed++];
        if (isBlank(c))
            continue;
        if (group_.empty()) {
            groupStart = result.consumed - 1;
            groupAtStart.clear();
        }
        group_ += c;
        if (!ended_ && group_.size() < 4)
            continue;
        if (ended_ || !decodeGroup(isFinal)) {
            group_ = groupAtStart;
            return {result.written, groupStart, kInvalid};
        }
        group_.clear();
    }
    if (pending_.empty())
        skipBlanks(input, result.consumed);
    if (!pending_.empty() || result.consumed < input.size()) {
        result.error = kOutputFull;
    } else if (isFinal) {
        result.error = group_.empty() ? 0 : kIncomplete;
        group_.clear();
        ended_ = false;
    }
    return result;
}

OneShotResult Base64DecoderModel::atOnce(std::string_view input) {
    if (std::count_if(input.begin(), input.end(), [](char c) { return !isBlank(c); }) % 4 != 0)
        return {"", kInvalidArguments};
    return finalCall<Base64DecoderModel>(input);
}

// Hexadecimal: 128 characters or bytes at a time

CallResult HexEncoderModel::call(std::string_view input, std::size_t room, bool) {
    CallResult result;
    if (room == 0 || (input.empty() && pending_.empty()))
        return {"", 0, kInvalidArguments};
    for (;;) {
        deliver(pending_, result.written, room);
        if (result.written.size() == room || result.consumed == input.size())
            break;
        while (pending_.size() < 128 && result.consumed < input.size()) {
            const auto byte = static_cast<unsigned char>(input[result.consumed++]);
            pending_ += kHexDigits[byte / 16];
            pending_ += kHexDigits[byte % 16];
        }
    }
    if (!pending_.empty() || result.consumed < input.size())
        result.error = kOutputFull;
    return result;
}

OneShotResult HexEncoderModel::atOnce(std::string_view input) {
    return finalCall<HexEncoderModel>(input);
}

CallResult HexDecoderModel::call(std::string_view input, std::size_t room, bool isFinal) {
    CallResult result;
    if (room == 0 || (input.empty() && digits_.empty() && pending_.empty()))
        return {"", 0, kInvalidArguments};
    bool isInvalid = false;
    for (;;) {
        deliver(pending_, result.written, room);
        if (isInvalid || result.written.size() == room || result.consumed == input.size())
            break;
        while (pending_.size() < 128 && result.consumed < input.size()) {
            const char c = input[result.consumed];
            isInvalid = !isBlank(c) && kHexDigits.find(c) == std::string::npos;
            if (isInvalid)
                break;
            ++result.consumed;
            if (!isBlank(c))
                digits_ += c;
            if (digits_.size() == 2) {
                pending_ += static_cast<char>(kHexDigits.find(digits_[0]) * 16 + kHexDigits.find(digits_[1]));
                digits_.clear();
            }
        }
    }
    if (pending_.empty() && !isInvalid)
        skipBlanks(input, result.consumed);
    if (!pending_.empty()) {
        result.error = kOutputFull;
    } else if (isInvalid) {
        result.error = kInvalid;
    } else if (result.consumed < input.size()) {
        result.error = kOutputFull;
    } else if (isFinal) {
        result.error = digits_.empty() ? 0 : kIncomplete;
        digits_.clear();
    }
    return result;
}

OneShotResult HexDecoderModel::atOnce(std::string_view input) {
    return finalCall<HexDecoderModel>(input);
}

} // namespace Quillon::Testing
