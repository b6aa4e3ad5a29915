#ifndef ZUTARNEX_TESTS_XML_CODEC_CODECCALLS_H
#define ZUTARNEX_TESTS_XML_CODEC_CODECCALLS_H

#include "xml/codec/cteErrorCode.h"

#include <cstddef>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

namespace Quillon::Testing {

/// What one streaming call did.
struct CallResult {
    std::string written;
    std::size_t consumed = 0;
    int error = 0;

    friend bool operator==(const CallResult& left, const CallResult& right) {
        return left.written == right.written && left.consumed == right.consumed && left.error == right.error;
    }
};

/// What a one-shot call returned; `text` counts only when `error` is 0.
struct OneShotResult {
    std::string text;
    int error = 0;

    friend bool operator==(const OneShotResult& left, const OneShotResult& right) {
        return left.text == right.text && left.error == right.error;
    }
};

/// "TQ\x3D\n" and the like.
std::string escaped(std::string_view bytes);

inline std::ostream& operator<<(std::ostream& out, const CallResult& result) {
    return out << '"' << escaped(result.written) << "\", " << result.consumed << " consumed, error "
               << result.error;
}
inline std::ostream& operator<<(std::ostream& out, const OneShotResult& result) {
    return out << '"' << escaped(result.text) << "\", error " << result.error;
}

// The library's codecs with the models' signatures. Ranges are arrays of their own and of exactly the size needed, so
// that a sanitizer sees every byte too far.

template <class Codec, class Convert>
CallResult streamingCall(Codec& codec, Convert convert, std::string_view input, std::size_t room,
                         bool isFinal) {
    const std::unique_ptr<unsigned char[]> in(new unsigned char[input.size()]);
    const std::unique_ptr<unsigned char[]> out(new unsigned char[room]);
    input.copy(reinterpret_cast<char*>(in.get()), input.size());
    const unsigned char* inAt = in.get();
    unsigned char* outAt = out.get();
    Xml::cteErrorCode error = Xml::cteNoError;
    (codec.*convert)(&outAt, out.get() + room, &inAt, in.get() + input.size(), isFinal, &error);
    return {std::string(out.get(), outAt), static_cast<std::size_t>(inAt - in.get()), error};
}

template <class Codec>
CallResult encodeCall(Codec& codec, std::string_view input, std::size_t room, bool isFinal) {
    void (Codec::*convert)(unsigned char**, const unsigned char*, const unsigned char**, const unsigned char*,
                           bool, Xml::cteErrorCode*) = &Codec::encode;
    return streamingCall(codec, convert, input, room, isFinal);
}

template <class Codec>
CallResult decodeCall(Codec& codec, std::string_view input, std::size_t room, bool isFinal) {
    void (Codec::*convert)(unsigned char**, const unsigned char*, const unsigned char**, const unsigned char*,
                           bool, Xml::cteErrorCode*) = &Codec::decode;
    return streamingCall(codec, convert, input, room, isFinal);
}

template <class Codec, class Convert>
OneShotResult oneShotCall(Codec& codec, Convert convert, std::string_view input) {
    const std::unique_ptr<unsigned char[]> in(new unsigned char[input.size()]);
    input.copy(reinterpret_cast<char*>(in.get()), input.size());
    unsigned int length = 0;
    Xml::cteErrorCode error = Xml::cteNoError;
    const std::unique_ptr<unsigned char[]> result(
        (codec.*convert)(in.get(), static_cast<unsigned int>(input.size()), &length, &error));
    return {result ? std::string(result.get(), result.get() + length) : std::string(), error};
}

template <class Codec>
OneShotResult encodeAtOnce(Codec& codec, std::string_view input) {
    unsigned char* (Codec::*convert)(const unsigned char*, unsigned int, unsigned int*, Xml::cteErrorCode*) =
        &Codec::encode;
    return oneShotCall(codec, convert, input);
}

template <class Codec>
OneShotResult decodeAtOnce(Codec& codec, std::string_view input) {
    unsigned char* (Codec::*convert)(const unsigned char*, unsigned int, unsigned int*, Xml::cteErrorCode*) =
        &Codec::decode;
    return oneShotCall(codec, convert, input);
}

/// The pieces through one codec, the last one in a final call; each call has `room` bytes for its output. Ends with
/// the first error but "output full"; `consumed` counts over all pieces.
template <class Call>
CallResult convertInPieces(Call call, const std::vector<std::string_view>& pieces, std::size_t room) {
    CallResult all;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        std::string_view rest = pieces[i];
        do {
            const CallResult result = call(rest, room, i + 1 == pieces.size());
            all.written += result.written;
            all.consumed += result.consumed;
            all.error = result.error;
            rest.remove_prefix(result.consumed);
        } while (all.error == Xml::cteOutputFull);
        if (all.error != 0)
            break;
    }
    return all;
}

} // namespace Quillon::Testing

#endif
