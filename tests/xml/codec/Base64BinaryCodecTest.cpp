#include "xml/codec/Base64BinaryCodec.h"

#include "support/HostFixture.h"
#include "xml/codec/CodecCalls.h"
#include "xml/codec/CodecModels.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

namespace Quillon::Xml {
namespace {

using namespace std::literals;
using Testing::CallResult;
using Testing::decodeAtOnce;
using Testing::decodeCall;
using Testing::encodeAtOnce;
using Testing::encodeCall;
using Testing::OneShotResult;

constexpr std::size_t kAmpleRoom = 1000;

class Base64BinaryCodecTest : public Testing::HostFixture {
protected:
    CallResult encode(std::string_view input, std::size_t room, bool isFinal) {
        return encodeCall(codec, input, room, isFinal);
    }
    CallResult decode(std::string_view input, std::size_t room, bool isFinal) {
        return decodeCall(codec, input, room, isFinal);
    }
    OneShotResult encodeAll(std::string_view input) { return encodeAtOnce(codec, input); }
    OneShotResult decodeAll(std::string_view input) { return decodeAtOnce(codec, input); }

    Base64BinaryCodec codec;
};

std::string bytes(std::size_t count) {
    return std::string(count, 'a');
}

/// `count` groups of "aaa" in lines of 19, each line with its line feed.
std::string encodedGroups(std::size_t count) {
    std::string text;
    for (std::size_t i = 1; i <= count; ++i)
        text += i % 19 == 0 ? "YWFh\n" : "YWFh";
    return text;
}

// Tables

TEST_F(Base64BinaryCodecTest, AlphabetHas64CharactersAndATerminator) {
    EXPECT_STREQ("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/",
                 Base64BinaryCodec::Base64BinaryCodecAlphabet);
    EXPECT_EQ(65u, sizeof Base64BinaryCodec::Base64BinaryCodecAlphabet);
}

TEST_F(Base64BinaryCodecTest, InverseHasTheValueOfEachAlphabetCharacterAnd255) {
    ASSERT_EQ(255u, sizeof Base64BinaryCodec::Base64BinaryCodecInverse);
    for (unsigned int byte = 0; byte < 255; ++byte) {
        const char* found =
            byte == 0 ? nullptr
                      : std::strchr(Base64BinaryCodec::Base64BinaryCodecAlphabet, static_cast<int>(byte));
        const std::ptrdiff_t value =
            found != nullptr ? found - Base64BinaryCodec::Base64BinaryCodecAlphabet : 255;
        EXPECT_EQ(value, Base64BinaryCodec::Base64BinaryCodecInverse[byte]) << byte;
    }
    EXPECT_EQ(255, Base64BinaryCodec::Base64BinaryCodecInverse[static_cast<unsigned int>('=')]);
}

TEST_F(Base64BinaryCodecTest, ErrorCodesHaveTheirNumbers) {
    EXPECT_EQ(0, cteNoError);
    EXPECT_EQ(1, cteInvalidArguments);
    EXPECT_EQ(2, cteNoMemory);
    EXPECT_EQ(3, cteIncompleteInput);
    EXPECT_EQ(4, cteInvalidInput);
    EXPECT_EQ(5, cteOutputFull);
}

// Size

unsigned int sizeOf(unsigned int n) {
    cteErrorCode error = cteNoError;
    const unsigned int size = Base64BinaryCodec::encoded_size(n, &error);
    EXPECT_EQ(cteNoError, error) << n;
    return size;
}

TEST_F(Base64BinaryCodecTest, SizeCountsGroupsAndTheLineFeedsBetweenLines) {
    EXPECT_EQ(4u, sizeOf(1));
    EXPECT_EQ(4u, sizeOf(2));
    EXPECT_EQ(4u, sizeOf(3));
    EXPECT_EQ(8u, sizeOf(4));
    EXPECT_EQ(76u, sizeOf(55));
    EXPECT_EQ(81u, sizeOf(58));
    EXPECT_EQ(38u * 4 + 2 + 4, sizeOf(115));
}

TEST_F(Base64BinaryCodecTest, SizeLeavesOutTheLineFeedBehindAFullLastLine) {
    EXPECT_EQ(76u, sizeOf(57));
    EXPECT_EQ(77u, encodeAll(bytes(57)).text.size());
    EXPECT_EQ(38u * 4 + 1, sizeOf(114));
    EXPECT_EQ(38u * 4 + 2, encodeAll(bytes(114)).text.size());
}

TEST_F(Base64BinaryCodecTest, SizeOfNothingIsAnInvalidArgument) {
    cteErrorCode error = cteNoError;
    EXPECT_EQ(0u, Base64BinaryCodec::encoded_size(0, &error));
    EXPECT_EQ(cteInvalidArguments, error);
}

TEST_F(Base64BinaryCodecTest, SizeBeyond32BitsIsAnInvalidArgument) {
    EXPECT_EQ(4294967291u, sizeOf(3179391372u));
    for (const unsigned int n : {3179391373u, 0xFFFFFFFFu}) {
        cteErrorCode error = cteNoError;
        EXPECT_EQ(0u, Base64BinaryCodec::encoded_size(n, &error)) << n;
        EXPECT_EQ(cteInvalidArguments, error) << n;
    }
}

TEST_F(Base64BinaryCodecTest, SizeNeedsNoErrorVariable) {
    EXPECT_EQ(0u, Base64BinaryCodec::encoded_size(0, nullptr));
    EXPECT_EQ(4u, Base64BinaryCodec::encoded_size(1, nullptr));
}

// Encoding in pieces

TEST_F(Base64BinaryCodecTest, EncodesThreeBytesAsFourCharacters) {
    EXPECT_EQ((CallResult{"AAECgP/+", 6, 0}), encode("\x00\x01\x02\x80\xFF\xFE"sv, kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, FinalCallPadsOneAndTwoBytes) {
    EXPECT_EQ((CallResult{"TQ==", 1, 0}), encode("M", kAmpleRoom, true));
    codec.reset();
    EXPECT_EQ((CallResult{"TWE=", 2, 0}), encode("Ma", kAmpleRoom, true));
    codec.reset();
    EXPECT_EQ((CallResult{"YWFhTQ==", 4, 0}), encode("aaaM", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, OtherCallsDoNotPadAndCarryTheGroupOver) {
    EXPECT_EQ((CallResult{"", 1, 0}), encode("f", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 1, 0}), encode("o", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"Zm9v", 2, 0}), encode("ob", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"YmE=", 1, 0}), encode("a", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, FinalCallWithoutInputPadsWhatWasCarriedOver) {
    EXPECT_EQ((CallResult{"", 1, 0}), encode("M", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 0, 0}), encode("", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"TQ==", 0, 0}), encode("", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), encode("", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, LineFeedFollowsEvery19thGroupAlsoTheLastOne) {
    for (const std::size_t groups : {18, 19, 20, 37, 38, 39, 57}) {
        codec.reset();
        EXPECT_EQ((CallResult{encodedGroups(groups), groups * 3, 0}),
                  encode(bytes(groups * 3), kAmpleRoom, true));
    }
    codec.reset();
    EXPECT_EQ(encodedGroups(18) + "TQ==\n", encode(bytes(54) + "M", kAmpleRoom, true).written);
}

TEST_F(Base64BinaryCodecTest, LinesGoOnOverCalls) {
    std::string text;
    for (int i = 0; i < 40; ++i)
        text += encode("aaa", kAmpleRoom, false).written;
    EXPECT_EQ(encodedGroups(40), text);
}

TEST_F(Base64BinaryCodecTest, OutputThatDoesNotFitComesWithTheNextCalls) {
    EXPECT_EQ((CallResult{"Z", 3, cteOutputFull}), encode("foobar", 1, true));
    EXPECT_EQ((CallResult{"m9", 0, cteOutputFull}), encode("bar", 2, true));
    EXPECT_EQ((CallResult{"vYmFy", 3, 0}), encode("bar", 5, true));
}

TEST_F(Base64BinaryCodecTest, PendingOutputIsDrainedWithoutInput) {
    EXPECT_EQ((CallResult{"Zm", 3, cteOutputFull}), encode("foo", 2, true));
    EXPECT_EQ((CallResult{"9", 0, cteOutputFull}), encode("", 1, true));
    EXPECT_EQ((CallResult{"v", 0, 0}), encode("", 1, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), encode("", 1, true));
}

TEST_F(Base64BinaryCodecTest, PendingLineFeedIsNotLost) {
    EXPECT_EQ((CallResult{bytes(0) + encodedGroups(19).substr(0, 76), 57, cteOutputFull}),
              encode(bytes(57), 76, true));
    EXPECT_EQ((CallResult{"\n", 0, 0}), encode("", 1, true));
}

TEST_F(Base64BinaryCodecTest, FullOutputWithInputLeftIsReportedAndConsumesNothingMore) {
    EXPECT_EQ((CallResult{"Zm9v", 3, cteOutputFull}), encode("foob", 4, true));
    EXPECT_EQ((CallResult{"Yg==", 1, 0}), encode("b", 4, true));
}

TEST_F(Base64BinaryCodecTest, ResetForgetsGroupPendingOutputAndLine) {
    encode(bytes(54), kAmpleRoom, false);
    encode("fo", kAmpleRoom, false);
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), encode("", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"Z", 3, cteOutputFull}), encode("foo", 1, true));
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), encode("", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"YWFh", 3, 0}), encode("aaa", kAmpleRoom, true));
}

// Decoding in pieces

TEST_F(Base64BinaryCodecTest, DecodesFourCharactersAsThreeBytes) {
    EXPECT_EQ((CallResult{"\x00\x01\x02\x80\xFF\xFE"s, 8, 0}), decode("AAECgP/+", kAmpleRoom, false));
}

TEST_F(Base64BinaryCodecTest, PaddingIsDecodedInAFinalCallOnly) {
    EXPECT_EQ((CallResult{"Ma", 4, 0}), decode("TWE=", kAmpleRoom, true));
    codec.reset();
    EXPECT_EQ((CallResult{"M", 4, 0}), decode("TQ==", kAmpleRoom, true));
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode("TWE=", kAmpleRoom, false));
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode("TQ==", kAmpleRoom, false));
}

TEST_F(Base64BinaryCodecTest, PaddingRefusedForNotBeingFinalIsTakenByAFinalCallFromThere) {
    EXPECT_EQ((CallResult{"foo", 5, cteInvalidInput}), decode("Zm9v TQ==", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"M", 4, 0}), decode("TQ==", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, PaddingBitsMustBeZero) {
    for (int value = 0; value < 64; ++value) {
        const char character = Base64BinaryCodec::Base64BinaryCodecAlphabet[value];
        codec.reset();
        EXPECT_EQ(value % 16 == 0 ? cteNoError : cteInvalidInput,
                  decode("T"s + character + "==", kAmpleRoom, true).error)
            << character;
        codec.reset();
        EXPECT_EQ(value % 4 == 0 ? cteNoError : cteInvalidInput,
                  decode("TW"s + character + "=", kAmpleRoom, true).error)
            << character;
    }
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode("TR==", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, ThirdAndFourthCharacterMustBeInTheAlphabet) {
    for (const std::string_view text : {"AA*A"sv, "AAA*"sv, "AA**"sv, "AA*="sv, "AA=*"sv, "AA=A"sv,
                                        "AAA\xFF"sv, "AA\xFF\x41"sv, "AA\0A"sv, "AAA-"sv, "AA_A"sv}) {
        codec.reset();
        EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode(text, kAmpleRoom, true))
            << Testing::escaped(text);
    }
}

TEST_F(Base64BinaryCodecTest, FirstTwoCharactersAreUsedAsTheyMap) {
    EXPECT_EQ((CallResult{"\xFC\0\0"s, 4, 0}), decode("*AAA", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"\x0F\xF0\0"s, 4, 0}), decode("A*AA", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"\xFF\xF0\0"s, 4, 0}), decode("**AA", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"\xFF\xF0\0"s, 4, 0}), decode("\xFF\xFF\x41\x41"s, kAmpleRoom, true));
    EXPECT_EQ((CallResult{"\xFC\0\0"s, 4, 0}), decode("=AAA", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"\xFC\x07\xE0"s, 4, 0}), decode("*Afg", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"\x0F\xF0"s, 4, 0}), decode("A*A=", kAmpleRoom, true));
    codec.reset();
    EXPECT_EQ((CallResult{"\xFC"s, 4, 0}), decode("*A==", kAmpleRoom, true));
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode("A*==", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, WhiteSpaceIsSkippedWhereverItOccurs) {
    EXPECT_EQ((CallResult{"fooM", 20, 0}), decode(" Z\tm\n9\vv\f\rT Q \n=\t= \n", kAmpleRoom, true));
    for (int c = 0; c < 256; ++c) {
        codec.reset();
        const std::string text = "Zm9v"s + static_cast<char>(c) + "YmFy";
        const bool isSkipped = decode(text, kAmpleRoom, true) == CallResult{"foobar", 9, 0};
        EXPECT_EQ(std::isspace(c) != 0, isSkipped) << c;
        EXPECT_EQ((c >= 9 && c <= 13) || c == 32, isSkipped) << c;
    }
}

TEST_F(Base64BinaryCodecTest, NothingButWhiteSpaceMayFollowPadding) {
    EXPECT_EQ((CallResult{"M", 7, 0}), decode("TQ== \n\t", kAmpleRoom, true));
    for (const char* text : {"TQ== Zm9v", "TQ== =", "TQ== *"}) {
        codec.reset();
        EXPECT_EQ((CallResult{"M", 5, cteInvalidInput}), decode(text, kAmpleRoom, true)) << text;
    }
    codec.reset();
    EXPECT_EQ((CallResult{"Ma", 4, cteInvalidInput}), decode("TWE=TWE=", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode("TWE=", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, TextThatEndedStaysEndedUntilItIsDelivered) {
    EXPECT_EQ((CallResult{"M", 4, cteOutputFull}), decode("TWE= \nZ", 1, true));
    EXPECT_EQ((CallResult{"a", 2, cteOutputFull}), decode(" \nZ", 1, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode("Zm9v", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 1, cteInvalidInput}), decode(" Zm9v", kAmpleRoom, true));
    codec.reset();
    EXPECT_EQ((CallResult{"foo", 5, 0}), decode(" Zm9v", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, WhiteSpaceBehindTheTextNeedsNoRoom) {
    EXPECT_EQ((CallResult{"M", 4, cteOutputFull}), decode("TWE= \n", 1, true));
    EXPECT_EQ((CallResult{"a", 2, 0}), decode(" \n", 1, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), decode("", 1, true));
    const std::string line = std::string(76, 'A') + '\n';
    EXPECT_EQ((CallResult{std::string(57, '\0'), 77, 0}), decode(line, 57, true));
    EXPECT_EQ((CallResult{std::string(57, '\0'), 77, 0}), decode(line, 57, false));
}

TEST_F(Base64BinaryCodecTest, FinalCallEndsTheTextAndTheNextBeginsAnother) {
    EXPECT_EQ((CallResult{"Ma", 4, 0}), decode("TWE=", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"M", 4, 0}), decode("TQ==", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 3, cteIncompleteInput}), decode("TWF", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"Man", 4, 0}), decode("TWFu", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, FaultIsReportedAtTheFirstCharacterOfItsGroup) {
    EXPECT_EQ((CallResult{"foobar", 10, cteInvalidInput}), decode("Zm9vYmFy\n A\nA*A", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode("A\nA*A", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, FaultInAGroupOfAnEarlierCallIsReportedAtTheStartOfTheRange) {
    EXPECT_EQ((CallResult{"", 2, 0}), decode("AA", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode(" *A", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode(" *A", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"\0\0\0"s, 2, 0}), decode("AA", kAmpleRoom, false));
}

TEST_F(Base64BinaryCodecTest, GroupIsCarriedOverToTheNextCall) {
    EXPECT_EQ((CallResult{"", 1, 0}), decode("Z", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 3, 0}), decode("m 9", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"foo", 2, 0}), decode("vT", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 2, 0}), decode("Q=", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"M", 1, 0}), decode("=", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, FinalCallInsideAGroupIsIncomplete) {
    for (const char* text : {"Zm9vY", "Zm9vYm", "Zm9vYmF", "Zm9vY \n", "Zm9vY="}) {
        codec.reset();
        EXPECT_EQ((CallResult{"foo", std::strlen(text), cteIncompleteInput}), decode(text, kAmpleRoom, true))
            << text;
        EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), decode("", kAmpleRoom, true)) << text;
    }
}

TEST_F(Base64BinaryCodecTest, DecodedBytesThatDoNotFitComeWithTheNextCalls) {
    EXPECT_EQ((CallResult{"f", 4, cteOutputFull}), decode("Zm9vYmFy", 1, true));
    EXPECT_EQ((CallResult{"o", 0, cteOutputFull}), decode("YmFy", 1, true));
    EXPECT_EQ((CallResult{"o", 0, cteOutputFull}), decode("YmFy", 1, true));
    EXPECT_EQ((CallResult{"ba", 4, cteOutputFull}), decode("YmFy", 2, true));
    EXPECT_EQ((CallResult{"r", 0, 0}), decode("", 2, true));
}

TEST_F(Base64BinaryCodecTest, FullOutputIsReportedBeforeAFaultBehindIt) {
    EXPECT_EQ((CallResult{"foo", 4, cteOutputFull}), decode("Zm9vAA*A", 3, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode("AA*A", 3, true));
}

TEST_F(Base64BinaryCodecTest, ResetForgetsPendingBytesAndAGroupBegun) {
    EXPECT_EQ((CallResult{"f", 4, cteOutputFull}), decode("Zm9v", 1, false));
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), decode("", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"bar", 4, 0}), decode("YmFy", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 3, 0}), decode("Zm9", kAmpleRoom, false));
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), decode("", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"bar", 4, 0}), decode("YmFy", kAmpleRoom, true));
}

TEST_F(Base64BinaryCodecTest, EncodingTakesNothingOverFromADecoding) {
    EXPECT_EQ((CallResult{"M", 4, 0}), decode("TQ==", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"Zm9v", 3, 0}), encode("foo", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 3, 0}), decode("Zm9", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 0, 0}), encode("", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"YmFy", 3, 0}), encode("bar", kAmpleRoom, true));
}

// Arguments of the streaming calls

template <class Convert>
void expectInvalidArguments(Convert convert) {
    const unsigned char in[4] = {'Z', 'm', '9', 'v'};
    unsigned char out[8] = {};
    const auto errorOf = [&](unsigned char* outAt, unsigned char* outEnd, const unsigned char* inAt,
                             const unsigned char* inEnd) {
        cteErrorCode error = cteNoError;
        unsigned char* const outBefore = outAt;
        const unsigned char* const inBefore = inAt;
        convert(&outAt, outEnd, &inAt, inEnd, &error);
        EXPECT_EQ(outBefore, outAt);
        EXPECT_EQ(inBefore, inAt);
        return error;
    };
    EXPECT_EQ(cteInvalidArguments, errorOf(nullptr, out + 8, in, in + 4));
    EXPECT_EQ(cteInvalidArguments, errorOf(out, nullptr, in, in + 4));
    EXPECT_EQ(cteInvalidArguments, errorOf(out, out + 8, nullptr, in + 4));
    EXPECT_EQ(cteInvalidArguments, errorOf(out, out + 8, in, nullptr));
    EXPECT_EQ(cteInvalidArguments, errorOf(out, out + 8, in, in)) << "empty input";
    EXPECT_EQ(cteInvalidArguments, errorOf(out, out, in, in + 4)) << "empty output";
    EXPECT_EQ(cteInvalidArguments, errorOf(out, out + 8, in + 4, in)) << "inverted input";
    EXPECT_EQ(cteInvalidArguments, errorOf(out + 8, out, in, in + 4)) << "inverted output";

    unsigned char* outAt = out;
    const unsigned char* inAt = in;
    cteErrorCode error = cteNoError;
    convert(nullptr, out + 8, &inAt, in + 4, &error);
    EXPECT_EQ(cteInvalidArguments, error);
    error = cteNoError;
    convert(&outAt, out + 8, nullptr, in + 4, &error);
    EXPECT_EQ(cteInvalidArguments, error);
    convert(&outAt, out + 8, &inAt, in + 4, nullptr);
    EXPECT_EQ(out, outAt);
    EXPECT_EQ(in, inAt);
}

TEST_F(Base64BinaryCodecTest, EncodeRefusesNullPointersAndEmptyOrInvertedRanges) {
    expectInvalidArguments([&](auto out, auto outEnd, auto in, auto inEnd, auto error) {
        codec.encode(out, outEnd, in, inEnd, true, error);
    });
}

TEST_F(Base64BinaryCodecTest, DecodeRefusesNullPointersAndEmptyOrInvertedRanges) {
    expectInvalidArguments([&](auto out, auto outEnd, auto in, auto inEnd, auto error) {
        codec.decode(out, outEnd, in, inEnd, true, error);
    });
}

TEST_F(Base64BinaryCodecTest, EmptyOutputIsInvalidAlsoWhileSomethingIsPending) {
    EXPECT_EQ(cteOutputFull, encode("foo", 1, true).error);
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), encode("", 0, true));
    EXPECT_EQ((CallResult{"m9v", 0, 0}), encode("", 3, true));
    EXPECT_EQ(cteOutputFull, decode("Zm9v", 1, true).error);
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), decode("", 0, true));
    EXPECT_EQ((CallResult{"oo", 0, 0}), decode("", 3, true));
}

TEST_F(Base64BinaryCodecTest, InvertedInputIsInvalidAlsoWhileSomethingIsPending) {
    EXPECT_EQ(cteOutputFull, encode("foo", 1, true).error);
    const unsigned char in[2] = {};
    unsigned char out[8];
    const unsigned char* inAt = in + 1;
    unsigned char* outAt = out;
    cteErrorCode error = cteNoError;
    codec.encode(&outAt, out + 8, &inAt, in, true, &error);
    EXPECT_EQ(cteInvalidArguments, error);
    EXPECT_EQ(out, outAt);
}

TEST_F(Base64BinaryCodecTest, OnlyErrorsAreStored) {
    const unsigned char in[3] = {'f', 'o', 'o'};
    unsigned char out[8];
    const unsigned char* inAt = in;
    unsigned char* outAt = out;
    unsigned int length = 0;
    cteErrorCode error = cteInvalidInput;
    codec.encode(&outAt, out + 8, &inAt, in + 3, true, &error);
    EXPECT_EQ(cteInvalidInput, error);
    EXPECT_EQ(4u, Base64BinaryCodec::encoded_size(1, &error));
    EXPECT_EQ(cteInvalidInput, error);
    delete[] codec.encode(in, 3, &length, &error);
    EXPECT_EQ(4u, length);
    EXPECT_EQ(cteInvalidInput, error);
}

// One-shot calls

TEST_F(Base64BinaryCodecTest, OneShotAgreesWithTheVectorsOfRfc4648) {
    const char* const vectors[][2] = {{"f", "Zg=="},        {"fo", "Zm8="},        {"foo", "Zm9v"},
                                      {"foob", "Zm9vYg=="}, {"fooba", "Zm9vYmE="}, {"foobar", "Zm9vYmFy"}};
    for (const auto& [data, text] : vectors) {
        EXPECT_EQ((OneShotResult{text, 0}), encodeAll(data));
        EXPECT_EQ((OneShotResult{data, 0}), decodeAll(text));
    }
}

TEST_F(Base64BinaryCodecTest, OneShotEncodingFillsTheWholeBlock) {
    EXPECT_EQ((OneShotResult{encodedGroups(19), 0}), encodeAll(bytes(57)));
    EXPECT_EQ((OneShotResult{encodedGroups(19) + "YQ==", 0}), encodeAll(bytes(58)));
    EXPECT_EQ((OneShotResult{encodedGroups(38), 0}), encodeAll(bytes(114)));
}

TEST_F(Base64BinaryCodecTest, OneShotResultIsTerminatedWhereThereIsRoom) {
    const std::string data = bytes(58);
    unsigned int length = 0;
    cteErrorCode error = cteNoError;
    const std::unique_ptr<unsigned char[]> text(
        codec.encode(reinterpret_cast<const unsigned char*>(data.data()), 58, &length, &error));
    ASSERT_TRUE(text);
    EXPECT_EQ(81u, length);
    EXPECT_EQ(0, text[81]);
    const std::unique_ptr<unsigned char[]> back(codec.decode(text.get(), length, &length, &error));
    ASSERT_TRUE(back);
    EXPECT_EQ(58u, length);
    EXPECT_EQ(0, back[58]);
    EXPECT_EQ(cteNoError, error);
}

TEST_F(Base64BinaryCodecTest, OneShotDecodingNeedsAMultipleOfFourSignificantCharacters) {
    for (const char* text : {"Z", "Zm", "Zm9", "Zm9vY", "Zm9v YmF", "Zg=", "=", " A\n"})
        EXPECT_EQ((OneShotResult{"", cteInvalidArguments}), decodeAll(text)) << text;
    EXPECT_EQ((OneShotResult{"foobar", 0}), decodeAll(" Zm9v\nYm Fy\n"));
}

TEST_F(Base64BinaryCodecTest, OneShotDecodingOfWhiteSpaceIsEmpty) {
    unsigned int length = 7;
    cteErrorCode error = cteNoError;
    const unsigned char text[] = {' ', '\n', '\t'};
    const std::unique_ptr<unsigned char[]> result(codec.decode(text, 3, &length, &error));
    ASSERT_TRUE(result);
    EXPECT_EQ(0, result[0]);
    EXPECT_EQ(0u, length);
    EXPECT_EQ(cteNoError, error);
}

TEST_F(Base64BinaryCodecTest, OneShotFaultsReturnNullAndLeaveTheLengthAlone) {
    for (const char* text : {"TR==", "AA*A", "TQ==TQ==", "AAA*"}) {
        unsigned int length = 7;
        cteErrorCode error = cteNoError;
        EXPECT_EQ(nullptr, codec.decode(reinterpret_cast<const unsigned char*>(text),
                                        static_cast<unsigned int>(std::strlen(text)), &length, &error));
        EXPECT_EQ(cteInvalidInput, error) << text;
        EXPECT_EQ(7u, length) << text;
    }
}

TEST_F(Base64BinaryCodecTest, OneShotRefusesNullPointersAndEmptyInput) {
    const unsigned char in[4] = {'Z', 'm', '9', 'v'};
    unsigned int length = 7;
    cteErrorCode errors[6] = {};
    EXPECT_EQ(nullptr, codec.encode(nullptr, 4, &length, &errors[0]));
    EXPECT_EQ(nullptr, codec.encode(in, 0, &length, &errors[1]));
    EXPECT_EQ(nullptr, codec.encode(in, 4, nullptr, &errors[2]));
    EXPECT_EQ(nullptr, codec.decode(nullptr, 4, &length, &errors[3]));
    EXPECT_EQ(nullptr, codec.decode(in, 0, &length, &errors[4]));
    EXPECT_EQ(nullptr, codec.decode(in, 4, nullptr, &errors[5]));
    for (const cteErrorCode error : errors)
        EXPECT_EQ(cteInvalidArguments, error);
    EXPECT_EQ(nullptr, codec.encode(in, 4, &length, nullptr));
    EXPECT_EQ(nullptr, codec.decode(in, 4, &length, nullptr));
    EXPECT_EQ(7u, length);
}

TEST_F(Base64BinaryCodecTest, OneShotEncodingBeyond32BitsIsAnInvalidArgument) {
    const unsigned char in[1] = {};
    unsigned int length = 7;
    cteErrorCode error = cteNoError;
    EXPECT_EQ(nullptr, codec.encode(in, 0xFFFFFFFFu, &length, &error));
    EXPECT_EQ(cteInvalidArguments, error);
}

TEST_F(Base64BinaryCodecTest, OneShotCallsLeaveAStreamAlone) {
    EXPECT_EQ((CallResult{"Z", 3, cteOutputFull}), encode("foo", 1, false));
    EXPECT_EQ("Zm9vYmFy", encodeAll("foobar").text);
    EXPECT_EQ("foobar", decodeAll("Zm9vYmFy").text);
    EXPECT_EQ(cteInvalidInput, decodeAll("TR==").error);
    EXPECT_EQ((CallResult{"m9v", 1, 0}), encode("b", 4, false));
    EXPECT_EQ("Zm9v", encodeAll("foo").text);
    EXPECT_EQ((CallResult{"Yg==", 0, 0}), encode("", 4, true));
}

TEST_F(Base64BinaryCodecTest, OneShotCallsReportThatMemoryHasRunOut) {
    const unsigned char in[4] = {'Z', 'm', '9', 'v'};
    unsigned int length = 7;
    cteErrorCode errors[2] = {};
    Testing::newMemory().failRequest(1);
    EXPECT_EQ(nullptr, codec.encode(in, 4, &length, &errors[0]));
    EXPECT_FALSE(Testing::newMemory().failureIsPending());
    Testing::newMemory().failRequest(1);
    EXPECT_EQ(nullptr, codec.decode(in, 4, &length, &errors[1]));
    EXPECT_FALSE(Testing::newMemory().failureIsPending());
    EXPECT_EQ(cteNoMemory, errors[0]);
    EXPECT_EQ(cteNoMemory, errors[1]);
    EXPECT_EQ(7u, length);
    Testing::newMemory().failRequest(2); // there is no second request
    delete[] codec.encode(in, 4, &length, &errors[0]);
    EXPECT_TRUE(Testing::newMemory().failureIsPending());
    Testing::newMemory().failRequest(0);
    EXPECT_EQ(8u, length);
}

TEST_F(Base64BinaryCodecTest, StreamingAllocatesNothing) {
    const unsigned char in[3] = {'f', 'o', 'o'};
    const unsigned char* inAt = in;
    unsigned char out[8];
    unsigned char* outAt = out;
    cteErrorCode error = cteNoError;
    const std::size_t objects = Testing::newMemory().requests(), blocks = Testing::hostMemory().requests();
    codec.encode(&outAt, out + 8, &inAt, in + 3, true, &error);
    EXPECT_EQ(objects, Testing::newMemory().requests());
    EXPECT_EQ(blocks, Testing::hostMemory().requests());
}

} // namespace
} // namespace Quillon::Xml
