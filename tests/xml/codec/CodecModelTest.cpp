// The library's codecs against the models: every call's output, consumption and error, whatever the pieces.
#include "xml/codec/Base64BinaryCodec.h"
#include "xml/codec/CodecModels.h"
#include "xml/codec/HexBinaryCodec.h"

#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace Quillon::Xml {
namespace {

using ::testing::AssertionFailure;
using ::testing::AssertionResult;
using ::testing::AssertionSuccess;
using Testing::CallResult;
using Testing::escaped;
using Testing::OneShotResult;

constexpr int kRandomInputs = 500'000; // for each direction: a million for each codec

/// Enough for what a test decodes or encodes in one call.
constexpr std::size_t kAmpleRoom = 1000;

/// One direction of one codec, and the inputs that are worth trying on it.
template <class Library, class Model>
struct Encoding {
    using ModelType = Model;

    CallResult call(std::string_view input, std::size_t room, bool isFinal) {
        return Testing::encodeCall(codec, input, room, isFinal);
    }
    static OneShotResult atOnce(std::string_view input) {
        Library codec;
        return Testing::encodeAtOnce(codec, input);
    }

    Library codec;
};

template <class Library, class Model>
struct Decoding {
    using ModelType = Model;

    CallResult call(std::string_view input, std::size_t room, bool isFinal) {
        return Testing::decodeCall(codec, input, room, isFinal);
    }
    static OneShotResult atOnce(std::string_view input) {
        Library codec;
        return Testing::decodeAtOnce(codec, input);
    }

    Library codec;
};

struct Base64Encoding : Encoding<Base64BinaryCodec, Testing::Base64EncoderModel> {
    static constexpr std::string_view letters{"\x00M\x80\xFF", 4};
    static constexpr std::string_view likely = letters;
};
struct Base64Decoding : Decoding<Base64BinaryCodec, Testing::Base64DecoderModel> {
    static constexpr std::string_view letters = "AQ/= *\xFF"; // Q: low four bits clear, /: all bits set
    static constexpr std::string_view likely = "ABCDEIQgw09+/AAA\n";
};
struct HexEncoding : Encoding<HexBinaryCodec, Testing::HexEncoderModel> {
    static constexpr std::string_view letters{"\x00M\x80\xFF", 4};
    static constexpr std::string_view likely = letters;
};
struct HexDecoding : Decoding<HexBinaryCodec, Testing::HexDecoderModel> {
    static constexpr std::string_view letters = "09AFa\ng";
    static constexpr std::string_view likely = "0123456789ABCDEF0123456789ABCDEF ";
};

template <class Direction>
class CodecModelTest : public Testing::HostFixture {};

using Directions = ::testing::Types<Base64Encoding, Base64Decoding, HexEncoding, HexDecoding>;
TYPED_TEST_SUITE(CodecModelTest, Directions);

/// Feeds library and model with the same calls: the pieces in turn, each as often as its output does not fit into
/// `room`.
template <class Direction>
AssertionResult agreeInPieces(const std::vector<std::string_view>& pieces, std::size_t room) {
    Direction library;
    typename Direction::ModelType model;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        std::string_view rest = pieces[i];
        const bool isFinal = i + 1 == pieces.size();
        for (;;) {
            const CallResult expected = model.call(rest, room, isFinal);
            const CallResult actual = library.call(rest, room, isFinal);
            if (!(expected == actual))
                return AssertionFailure() << expected << "; but " << actual << ", for \"" << escaped(rest)
                                          << "\" of piece " << i << ", room " << room;
            rest.remove_prefix(expected.consumed);
            if (expected.error != cteOutputFull)
                break;
        }
    }
    return AssertionSuccess();
}

template <class Direction>
AssertionResult agreeAtOnce(const std::string& input) {
    const OneShotResult expected = Direction::ModelType::atOnce(input), actual = Direction::atOnce(input);
    if (!(expected == actual))
        return AssertionFailure() << expected << "; but " << actual << ", at once for \"" << escaped(input)
                                  << '"';
    return AssertionSuccess();
}

/// At once, in one piece and in each two, with much and with little room.
template <class Direction>
AssertionResult agreeInEveryWay(const std::string& input) {
    AssertionResult result = agreeAtOnce<Direction>(input);
    for (const std::size_t room : {std::size_t{1}, std::size_t{2}, std::size_t{3}, kAmpleRoom})
        if (result)
            result = agreeInPieces<Direction>({input}, room);
    const std::string_view all = input;
    for (std::size_t cut = 0; cut <= input.size(); ++cut)
        for (const std::size_t room : {std::size_t{1}, kAmpleRoom})
            if (result)
                result = agreeInPieces<Direction>({all.substr(0, cut), all.substr(cut)}, room);
    return result;
}

TYPED_TEST(CodecModelTest, AgreesOnAllShortInputs) {
    constexpr std::size_t longest = 6;
    const std::string_view letters = TypeParam::letters;
    for (std::size_t length = 0, count = 1; length <= longest; ++length, count *= letters.size()) {
        for (std::size_t number = 0; number < count; ++number) {
            std::string input;
            for (std::size_t digits = number; input.size() < length; digits /= letters.size())
                input += letters[digits % letters.size()];
            ASSERT_TRUE(agreeInEveryWay<TypeParam>(input)) << escaped(input);
        }
    }
}

/// Mostly what the direction takes, now and then any byte; mostly short.
template <class Direction>
std::string randomInput(std::mt19937& random) {
    const std::size_t longest = random() % 50 == 0 ? 400 : 24;
    const unsigned int strangerIn = random() % 2 == 0 ? 1000 : 12;
    std::string input(random() % (longest + 1), '\0');
    for (char& c : input) {
        if (random() % strangerIn == 0)
            c = random() % 2 == 0 ? static_cast<char>(random())
                                  : Direction::letters[random() % Direction::letters.size()];
        else
            c = Direction::likely[random() % Direction::likely.size()];
    }
    return input;
}

/// Calls with random pieces and random room, on after errors, too.
template <class Direction>
AssertionResult agreeInRandomCalls(const std::string& input, std::mt19937& random, std::size_t maxPiece = 40,
                                   std::size_t maxRoom = 60) {
    Direction library;
    typename Direction::ModelType model;
    std::string_view rest = input;
    const std::size_t longestPiece = 1 + random() % maxPiece, mostRoom = 1 + random() % maxRoom;
    for (int calls = 0; calls < 60; ++calls) {
        const std::string_view piece = rest.substr(0, random() % (longestPiece + 1));
        const std::size_t room = random() % 30 == 0 ? 0 : 1 + random() % mostRoom;
        const bool isFinal = piece.size() == rest.size() ? random() % 8 != 0 : random() % 40 == 0;
        const CallResult expected = model.call(piece, room, isFinal);
        const CallResult actual = library.call(piece, room, isFinal);
        if (!(expected == actual))
            return AssertionFailure() << expected << "; but " << actual << ", for \"" << escaped(piece)
                                      << "\" in call " << calls << ", room " << room << ", final " << isFinal;
        rest.remove_prefix(expected.consumed);
        if (expected.error == cteInvalidInput && !rest.empty() && random() % 4 == 0)
            rest.remove_prefix(1);
        if (rest.empty() && expected.error != cteOutputFull)
            break;
    }
    return AssertionSuccess();
}

TYPED_TEST(CodecModelTest, AgreesOnRandomInputs) {
    std::mt19937 random(20240607);
    for (int i = 0; i < kRandomInputs; ++i) {
        const std::string input = randomInput<TypeParam>(random);
        ASSERT_TRUE(agreeAtOnce<TypeParam>(input)) << "input " << i;
        ASSERT_TRUE(agreeInRandomCalls<TypeParam>(input, random)) << "input " << i << ": " << escaped(input);
    }
}

/// Long enough for what works on whole blocks, with seldom anything else among what the direction takes.
template <class Direction>
std::string randomLongInput(std::mt19937& random) {
    std::string input(random() % 6000, '\0');
    const std::size_t line = 1 + random() % 100;
    for (std::size_t i = 0; i < input.size(); ++i)
        input[i] = i % line == 0 ? '\n' : Direction::likely[random() % (Direction::likely.size() - 1)];
    for (std::size_t strangers = random() % 3; strangers != 0 && !input.empty(); --strangers)
        input[random() % input.size()] = static_cast<char>(random());
    return input;
}

TYPED_TEST(CodecModelTest, AgreesOnLongRandomInputs) {
    std::mt19937 random(20240608);
    for (int i = 0; i < 4000; ++i) {
        const std::string input = randomLongInput<TypeParam>(random);
        ASSERT_TRUE(agreeAtOnce<TypeParam>(input)) << "input " << i;
        ASSERT_TRUE(agreeInRandomCalls<TypeParam>(input, random, 3000, 4000)) << "input " << i;
    }
}

/// 200 bytes with every value among the first ones, as text where the direction decodes.
template <class Direction>
std::string longInput() {
    std::string bytes;
    for (unsigned int i = 0; i < 200; ++i)
        bytes += static_cast<char>(i * 167 + i / 3);
    if constexpr (std::is_same_v<Direction, Base64Decoding>)
        return Testing::Base64EncoderModel::atOnce(bytes).text;
    if constexpr (std::is_same_v<Direction, HexDecoding>)
        return Testing::HexEncoderModel::atOnce(bytes).text;
    return bytes;
}

template <class Direction>
CallResult inPieces(const std::vector<std::string_view>& pieces, std::size_t room) {
    Direction library;
    return Testing::convertInPieces([&](std::string_view piece, std::size_t space,
                                        bool isFinal) { return library.call(piece, space, isFinal); },
                                    pieces, room);
}

TYPED_TEST(CodecModelTest, EverySplitInTwoOrThreePiecesGivesTheSameText) {
    const std::string all = longInput<TypeParam>();
    const std::string_view input = all;
    const CallResult whole = TypeParam().call(input, kAmpleRoom, true);
    ASSERT_EQ(0, whole.error);
    ASSERT_EQ(input.size(), whole.consumed);
    for (std::size_t i = 1; i < input.size(); ++i) {
        for (const std::size_t room : {std::size_t{1}, std::size_t{7}, kAmpleRoom})
            ASSERT_EQ(whole, (inPieces<TypeParam>({input.substr(0, i), input.substr(i)}, room))) << i;
        for (std::size_t j = i + 1; j < input.size(); ++j)
            ASSERT_EQ(whole, (inPieces<TypeParam>(
                                 {input.substr(0, i), input.substr(i, j - i), input.substr(j)}, kAmpleRoom)))
                << i << ", " << j;
    }
}

TYPED_TEST(CodecModelTest, EverySplitOfTheOutputGivesTheSameText) {
    const std::string input = longInput<TypeParam>();
    const CallResult whole = TypeParam().call(input, kAmpleRoom, true);
    for (std::size_t room = 1; room <= whole.written.size(); ++room)
        ASSERT_EQ(whole, (inPieces<TypeParam>({input}, room))) << room;
}

} // namespace
} // namespace Quillon::Xml
