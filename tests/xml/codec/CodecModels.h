#ifndef ZUTARNEX_TESTS_XML_CODEC_CODECMODELS_H
#define ZUTARNEX_TESTS_XML_CODEC_CODECMODELS_H

// The codecs once more, a character at a time: slow, obvious, and sharing no code with the library.

#include "xml/codec/CodecCalls.h"

#include <string>
#include <string_view>

namespace Quillon::Testing {

class Base64EncoderModel {
public:
    CallResult call(std::string_view input, std::size_t room, bool isFinal);
    static OneShotResult atOnce(std::string_view input);

private:
    void encodeGroup();

    std::string group_, pending_;
    unsigned long long groups_ = 0;
};

class Base64DecoderModel {
public:
    CallResult call(std::string_view input, std::size_t room, bool isFinal);
    static OneShotResult atOnce(std::string_view input);

private:
    bool decodeGroup(bool isFinal);

    std::string group_, pending_;
    bool ended_ = false;
};

class HexEncoderModel {
public:
    CallResult call(std::string_view input, std::size_t room, bool isFinal);
    static OneShotResult atOnce(std::string_view input);

private:
    std::string pending_;
};

class HexDecoderModel {
public:
    CallResult call(std::string_view input, std::size_t room, bool isFinal);
    static OneShotResult atOnce(std::string_view input);

private:
    std::string digits_, pending_;
};

} // namespace Quillon::Testing

#endif
