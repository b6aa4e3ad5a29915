// Base64 and hexadecimal: 64 KiB of binary, one-shot, through one streaming call, and in pieces of 1 KiB.

#include "support/Contest.h"
#include "support/Random.h"

#include "support/CodecLoad.h"
#include "xml/codec/Base64BinaryCodec.h"
#include "xml/codec/HexBinaryCodec.h"

#include <cstdlib>
#include <memory>

namespace Quillon::Bench {

namespace {

using namespace Xml;
using Bytes = std::vector<unsigned char>;

constexpr std::size_t kPiece = 1024;

void require(bool condition) {
    if (!condition)
        std::abort(); // a benchmark of something that fails measures nothing
}

template <class Codec>
void encodeAtOnce(const Bytes& binary) {
    Codec codec;
    unsigned int length = 0;
    cteErrorCode error = cteNoError;
    const std::unique_ptr<unsigned char[]> text(
        codec.encode(binary.data(), static_cast<unsigned int>(binary.size()), &length, &error));
    require(error == cteNoError);
    benchmark::DoNotOptimize(text.get());
}

template <class Codec>
void decodeAtOnce(const std::string& text) {
    Codec codec;
    unsigned int length = 0;
    cteErrorCode error = cteNoError;
    const std::unique_ptr<unsigned char[]> binary(
        codec.decode(reinterpret_cast<const unsigned char*>(text.data()),
                     static_cast<unsigned int>(text.size()), &length, &error));
    require(error == cteNoError);
    benchmark::DoNotOptimize(binary.get());
}

/// Calls `step(in, inEnd, isFinal)` for pieces of `pieceSize` bytes until the input is used up.
template <class Step>
void inPieces(const unsigned char* in, const unsigned char* end, std::size_t pieceSize, Step step) {
    while (in != end) {
        const unsigned char* pieceEnd = static_cast<std::size_t>(end - in) > pieceSize ? in + pieceSize : end;
        step(in, pieceEnd, pieceEnd == end);
        in = pieceEnd;
    }
}

template <class Codec>
void encodeStreaming(const Bytes& binary, std::size_t pieceSize, Bytes& room) {
    Codec codec;
    unsigned char* out = room.data();
    inPieces(binary.data(), binary.data() + binary.size(), pieceSize,
             [&](const unsigned char* in, const unsigned char* inEnd, bool isFinal) {
                 cteErrorCode error = cteNoError;
                 codec.encode(&out, room.data() + room.size(), &in, inEnd, isFinal, &error);
                 require(error == cteNoError && in == inEnd);
             });
    benchmark::ClobberMemory();
}

template <class Codec>
void decodeStreaming(const std::string& text, std::size_t pieceSize, Bytes& room) {
    Codec codec;
    unsigned char* out = room.data();
    const auto* begin = reinterpret_cast<const unsigned char*>(text.data());
    inPieces(begin, begin + text.size(), pieceSize,
             [&](const unsigned char* in, const unsigned char* inEnd, bool isFinal) {
                 cteErrorCode error = cteNoError;
                 codec.decode(&out, room.data() + room.size(), &in, inEnd, isFinal, &error);
                 require(error == cteNoError && in == inEnd);
             });
    benchmark::ClobberMemory();
}

template <class Codec>
void enterCodec(const std::string& name, const std::string& text) {
    const Load load{1, codecBinary().size()};
    enter(name + "-encode", kLibrary, [load] {
        return Round(load, [room = Bytes(4 * kCodecBytes)]() mutable {
            encodeStreaming<Codec>(codecBinary(), kCodecBytes, room);
        });
    });
    enter(name + "-encode-pieces", kLibrary, [load] {
        return Round(load, [room = Bytes(4 * kCodecBytes)]() mutable {
            encodeStreaming<Codec>(codecBinary(), kPiece, room);
        });
    });
    enter(name + "-encode-once", kLibrary,
          [load] { return Round(load, [] { encodeAtOnce<Codec>(codecBinary()); }); });
    enter(name + "-decode", kLibrary, [load, &text] {
        return Round(load, [&text, room = Bytes(2 * kCodecBytes)]() mutable {
            decodeStreaming<Codec>(text, text.size(), room);
        });
    });
    enter(name + "-decode-pieces", kLibrary, [load, &text] {
        return Round(load, [&text, room = Bytes(2 * kCodecBytes)]() mutable {
            decodeStreaming<Codec>(text, kPiece, room);
        });
    });
    enter(name + "-decode-once", kLibrary,
          [load, &text] { return Round(load, [&text] { decodeAtOnce<Codec>(text); }); });
}

const Entries entries([] {
    enterCodec<Base64BinaryCodec>("codec.base64", base64Text());
    enterCodec<HexBinaryCodec>("codec.hex", hexText());
});

} // namespace

} // namespace Quillon::Bench

BENCHMARK_MAIN();
