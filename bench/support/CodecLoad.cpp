#include "support/CodecLoad.h"

#include "support/Random.h"

namespace Quillon::Bench {

namespace {

constexpr char kBase64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kHex[] = "0123456789ABCDEF";

std::string inBase64(const std::vector<unsigned char>& binary) {
    std::string text;
    std::size_t column = 0;
    for (std::size_t i = 0; i < binary.size(); i += 3) {
        const unsigned second = i + 1 < binary.size() ? binary[i + 1] : 0;
        const unsigned third = i + 2 < binary.size() ? binary[i + 2] : 0;
        const unsigned group = binary[i] << 16U | second << 8U | third;
        text += kBase64[group >> 18U];
        text += kBase64[group >> 12U & 63U];
        text += i + 1 < binary.size() ? kBase64[group >> 6U & 63U] : '=';
        text += i + 2 < binary.size() ? kBase64[group & 63U] : '=';
        if ((column += 4) == 76) {
            text += '\n';
            column = 0;
        }
    }
    return text;
}

} // namespace

const std::vector<unsigned char>& codecBinary() {
    static const std::vector<unsigned char> binary = [] {
        Random random(5);
        std::vector<unsigned char> bytes(kCodecBytes);
        for (unsigned char& byte : bytes)
            byte = static_cast<unsigned char>(random.next());
        return bytes;
    }();
    return binary;
}

const std::string& base64Text() {
    static const std::string text = inBase64(codecBinary());
    return text;
}

const std::string& hexText() {
    static const std::string text = [] {
        std::string digits;
        for (const unsigned char byte : codecBinary()) {
            digits += kHex[byte >> 4U];
            digits += kHex[byte & 15U];
        }
        return digits;
    }();
    return text;
}

} // namespace Quillon::Bench
