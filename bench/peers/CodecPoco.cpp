// POCO's codecs are streams: the decoders read from a stream over memory, the encoders write to a discarding one.

#include "support/CodecLoad.h"
#include "support/Contest.h"
#include "support/DiscardingStream.h"

#include <Poco/Base64Decoder.h>
#include <Poco/Base64Encoder.h>
#include <Poco/HexBinaryDecoder.h>
#include <Poco/HexBinaryEncoder.h>
#include <Poco/MemoryStream.h>

namespace Quillon::Bench {

namespace {

template <class Encoder>
void encode() {
    DiscardingStream out;
    Encoder encoder(out);
    encoder.write(reinterpret_cast<const char*>(codecBinary().data()), kCodecBytes);
    encoder.close();
}

template <class Decoder>
void decode(const std::string& text, std::vector<char>& room) {
    Poco::MemoryInputStream in(text.data(), static_cast<std::streamsize>(text.size()));
    Decoder decoder(in);
    decoder.read(room.data(), static_cast<std::streamsize>(room.size()));
    benchmark::ClobberMemory();
}

template <class Encoder, class Decoder>
void enterPoco(const std::string& name, const std::string& text) {
    const Load load{1, kCodecBytes};
    enter(name + "-encode", "POCO", [load] { return Round(load, encode<Encoder>); });
    enter(name + "-decode", "POCO", [load, &text] {
        return Round(
            load, [&text, room = std::vector<char>(kCodecBytes)]() mutable { decode<Decoder>(text, room); });
    });
}

const Entries entries([] {
    enterPoco<Poco::Base64Encoder, Poco::Base64Decoder>("codec.base64", base64Text());
    enterPoco<Poco::HexBinaryEncoder, Poco::HexBinaryDecoder>("codec.hex", hexText());
});

} // namespace

} // namespace Quillon::Bench
