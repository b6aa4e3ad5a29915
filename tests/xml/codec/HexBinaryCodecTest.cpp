#include "xml/codec/HexBinaryCodec.h"

#include "support/HostFixture.h"
#include "xml/codec/CodecCalls.h"
#include "xml/codec/CodecModels.h"

#include <gtest/gtest.h>

#include <cstring>
#include <malloc.h>
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

class HexBinaryCodecTest : public Testing::HostFixture {
protected:
    CallResult encode(std::string_view input, std::size_t room, bool isFinal) {
        return encodeCall(codec, input, room, isFinal);
    }
    CallResult decode(std::string_view input, std::size_t room, bool isFinal) {
        return decodeCall(codec, input, room, isFinal);
    }
    OneShotResult encodeAll(std::string_view input) { return encodeAtOnce(codec, input); }
    OneShotResult decodeAll(std::string_view input) { return decodeAtOnce(codec, input); }

    HexBinaryCodec codec;
};

std::string repeated(std::string_view text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i)
        all += text;
    return all;
}

TEST_F(HexBinaryCodecTest, AlphabetHas16DigitsAndATerminator) {
    EXPECT_STREQ("0123456789ABCDEF", HexBinaryCodec::hexAlphabet);
    EXPECT_EQ(17u, sizeof HexBinaryCodec::hexAlphabet);
}

// Encoding in pieces

TEST_F(HexBinaryCodecTest, EncodesTheHighNibbleFirstInUpperCase) {
    EXPECT_EQ((CallResult{"004D8A0AFF", 5, 0}), encode("\x00M\x8A\n\xFF"sv, kAmpleRoom, true));
}

TEST_F(HexBinaryCodecTest, EncodesWithoutLineBreaks) {
    EXPECT_EQ((CallResult{repeated("AB", 400), 400, 0}), encode(repeated("\xAB", 400), kAmpleRoom, false));
}

TEST_F(HexBinaryCodecTest, CharactersThatDoNotFitComeWithTheNextCalls) {
    EXPECT_EQ((CallResult{"0A", 3, cteOutputFull}), encode("\x0A\x0B\x0C", 2, true));
    EXPECT_EQ((CallResult{"0", 0, cteOutputFull}), encode("", 1, true));
    EXPECT_EQ((CallResult{"B0C", 0, 0}), encode("", 3, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), encode("", 3, true));
}

TEST_F(HexBinaryCodecTest, AtMost128CharactersArePending) {
    EXPECT_EQ((CallResult{"A", 64, cteOutputFull}), encode(repeated("\xAB", 100), 1, true));
    EXPECT_EQ((CallResult{repeated("BA", 63) + "B", 0, cteOutputFull}),
              encode(repeated("\xAB", 36), 127, true));
    EXPECT_EQ((CallResult{repeated("AB", 36), 36, 0}), encode(repeated("\xAB", 36), 127, true));
}

TEST_F(HexBinaryCodecTest, ResetForgetsPendingCharactersAndDigits) {
    encode("\x0A\x0B", 1, false);
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), encode("", kAmpleRoom, true));
    decode("A", kAmpleRoom, false);
    codec.reset();
    EXPECT_EQ((CallResult{"\x0B", 2, 0}), decode("0B", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"\x0A", 4, cteOutputFull}), decode("0A0B", 1, false));
    codec.reset();
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), decode("", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"\x0C", 2, 0}), decode("0C", kAmpleRoom, true));
}

// Decoding in pieces

TEST_F(HexBinaryCodecTest, DecodesPairsOfDigits) {
    EXPECT_EQ((CallResult{"\x00\x4D\x8A\n\xFF"s, 10, 0}), decode("004D8A0AFF", kAmpleRoom, true));
}

TEST_F(HexBinaryCodecTest, LowerCaseDigitsAreInvalid) {
    EXPECT_EQ((CallResult{"\n", 2, 0}), decode("0A", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 1, cteInvalidInput}), decode("0a", kAmpleRoom, true));
    for (const char c : "abcdef"s) {
        codec.reset();
        EXPECT_EQ(cteInvalidInput, decode(std::string(2, c), kAmpleRoom, true).error) << c;
    }
}

TEST_F(HexBinaryCodecTest, DigitsAndWhiteSpaceAreAllThatIsAccepted) {
    for (int c = 0; c < 256; ++c) {
        codec.reset();
        const std::string text = "00"s + static_cast<char>(c) + "000";
        const bool isDigit = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
        const bool isSkipped = (c >= 9 && c <= 13) || c == 32;
        const CallResult result = decode(text, kAmpleRoom, true);
        EXPECT_EQ(isDigit ? cteNoError : isSkipped ? cteIncompleteInput : cteInvalidInput, result.error) << c;
        EXPECT_EQ(isDigit || isSkipped ? 6u : 2u, result.consumed) << c;
    }
}

TEST_F(HexBinaryCodecTest, WhiteSpaceIsSkippedWhereverItOccurs) {
    EXPECT_EQ((CallResult{"\x0A\x0B", 13, 0}), decode(" 0\tA\n\v0\f\rB \n ", kAmpleRoom, true));
}

TEST_F(HexBinaryCodecTest, FaultIsReportedAtItsByteBehindWhatWasDecoded) {
    EXPECT_EQ((CallResult{"\x0A\x0B", 4, cteInvalidInput}), decode("0A0B-0C", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidInput}), decode("-0C", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"\x0C", 2, 0}), decode("0C", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 1, cteInvalidInput}), decode("0-", kAmpleRoom, true));
}

TEST_F(HexBinaryCodecTest, WhatStandsBeforeAFaultIsDeliveredFirst) {
    EXPECT_EQ((CallResult{"\x0A", 4, cteOutputFull}), decode("0A0B-", 1, true));
    EXPECT_EQ((CallResult{"\x0B", 0, cteInvalidInput}), decode("-", 2, true));
    codec.reset();
    EXPECT_EQ((CallResult{"\x0A\x0B", 4, cteInvalidInput}), decode("0A0B-", 2, true));
}

TEST_F(HexBinaryCodecTest, SingleDigitIsKeptForTheNextCall) {
    EXPECT_EQ((CallResult{"\xAB", 3, 0}), decode("ABC", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 1, 0}), decode(" ", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 0, 0}), decode("", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"\xCD", 1, 0}), decode("D", kAmpleRoom, true));
}

TEST_F(HexBinaryCodecTest, SingleDigitAtTheEndOfAFinalCallIsIncomplete) {
    EXPECT_EQ((CallResult{"\xAB", 3, cteIncompleteInput}), decode("ABC", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), decode("", kAmpleRoom, true));
    EXPECT_EQ((CallResult{"\x0A", 2, 0}), decode("0A", kAmpleRoom, true)) << "of another text";
    EXPECT_EQ((CallResult{"", 1, 0}), decode("C", kAmpleRoom, false));
    EXPECT_EQ((CallResult{"", 2, cteIncompleteInput}), decode(" \n", kAmpleRoom, true));
}

TEST_F(HexBinaryCodecTest, BytesThatDoNotFitComeWithTheNextCalls) {
    EXPECT_EQ((CallResult{"\x0A", 7, cteOutputFull}), decode("0A0B0CD", 1, true));
    EXPECT_EQ((CallResult{"\x0B", 0, cteOutputFull}), decode("", 1, true));
    EXPECT_EQ((CallResult{"\x0C", 0, cteIncompleteInput}), decode("", 1, true));
}

TEST_F(HexBinaryCodecTest, AtMost128BytesArePending) {
    EXPECT_EQ((CallResult{"\xAB", 256, cteOutputFull}), decode(repeated("AB", 200), 1, true));
    EXPECT_EQ((CallResult{repeated("\xAB", 127), 0, cteOutputFull}), decode(repeated("AB", 72), 127, true));
    EXPECT_EQ((CallResult{repeated("\xAB", 72), 144, 0}), decode(repeated("AB", 72), 127, true));
}

TEST_F(HexBinaryCodecTest, FullOutputWithInputLeftIsReported) {
    EXPECT_EQ((CallResult{repeated("\xAB", 128), 256, cteOutputFull}),
              decode(repeated("AB", 128) + "C", 128, true));
    EXPECT_EQ((CallResult{"", 1, cteIncompleteInput}), decode("C", 128, true));
}

TEST_F(HexBinaryCodecTest, WhiteSpaceBehindTheTextNeedsNoRoom) {
    EXPECT_EQ((CallResult{"\x0A", 4, 0}), decode("0A \n", 1, true));
    EXPECT_EQ((CallResult{repeated("\xAB", 128), 257, 0}), decode(repeated("AB", 128) + " ", 128, true));
}

// Arguments of the streaming calls

template <class Convert>
void expectInvalidArguments(Convert convert) {
    const unsigned char in[4] = {'0', 'A', '0', 'B'};
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

TEST_F(HexBinaryCodecTest, EncodeRefusesNullPointersAndEmptyOrInvertedRanges) {
    expectInvalidArguments([&](auto out, auto outEnd, auto in, auto inEnd, auto error) {
        codec.encode(out, outEnd, in, inEnd, true, error);
    });
}

TEST_F(HexBinaryCodecTest, DecodeRefusesNullPointersAndEmptyOrInvertedRanges) {
    expectInvalidArguments([&](auto out, auto outEnd, auto in, auto inEnd, auto error) {
        codec.decode(out, outEnd, in, inEnd, true, error);
    });
}

TEST_F(HexBinaryCodecTest, EmptyOutputIsInvalidAlsoWhileSomethingIsPending) {
    EXPECT_EQ(cteOutputFull, encode("\x0A", 1, true).error);
    EXPECT_EQ((CallResult{"", 0, cteInvalidArguments}), encode("", 0, true));
    EXPECT_EQ((CallResult{"A", 0, 0}), encode("", 1, true));
}

TEST_F(HexBinaryCodecTest, OnlyErrorsAreStored) {
    const unsigned char in[2] = {'0', 'A'};
    unsigned char out[8];
    const unsigned char* inAt = in;
    unsigned char* outAt = out;
    unsigned int length = 0;
    cteErrorCode error = cteInvalidInput;
    codec.decode(&outAt, out + 8, &inAt, in + 2, true, &error);
    EXPECT_EQ(cteInvalidInput, error);
    delete[] codec.decode(in, 2, &length, &error);
    EXPECT_EQ(1u, length);
    EXPECT_EQ(cteInvalidInput, error);
}

// One-shot calls

TEST_F(HexBinaryCodecTest, OneShotAgreesWithTheVectorsOfRfc4648) {
    const char* const vectors[][2] = {
        {"f", "66"},          {"fo", "666F"},          {"foo", "666F6F"},
        {"foob", "666F6F62"}, {"fooba", "666F6F6261"}, {"foobar", "666F6F626172"}};
    for (const auto& [data, text] : vectors) {
        EXPECT_EQ((OneShotResult{text, 0}), encodeAll(data));
        EXPECT_EQ((OneShotResult{data, 0}), decodeAll(text));
    }
}

TEST_F(HexBinaryCodecTest, OneShotResultIsTerminated) {
    const unsigned char data[3] = {1, 2, 3};
    unsigned int length = 0;
    cteErrorCode error = cteNoError;
    const std::unique_ptr<unsigned char[]> text(codec.encode(data, 3, &length, &error));
    ASSERT_TRUE(text);
    EXPECT_STREQ("010203", reinterpret_cast<const char*>(text.get()));
    EXPECT_EQ(6u, length);
    const std::unique_ptr<unsigned char[]> back(codec.decode(text.get(), length, &length, &error));
    ASSERT_TRUE(back);
    EXPECT_EQ(3u, length);
    EXPECT_EQ(0, back[3]);
    EXPECT_EQ(cteNoError, error);
}

/// As large as a block that was asked for with `bytes`; a sanitizer counts exactly, the C library in steps.
bool isBlockOf(unsigned char* block, std::size_t bytes) {
    const std::unique_ptr<unsigned char[]> like(new unsigned char[bytes]);
    return malloc_usable_size(block) == malloc_usable_size(like.get());
}

TEST_F(HexBinaryCodecTest, OneShotBlocksAreMadeForTheLengthOfTheInput) {
    const std::string data(200, 'd');
    const std::string spaces(200, ' '); // what is skipped counts, too
    for (unsigned int n = 1; n <= 200; ++n) {
        unsigned int length = 0;
        cteErrorCode error = cteNoError;
        const auto* const bytes = reinterpret_cast<const unsigned char*>(data.data());
        const std::unique_ptr<unsigned char[]> text(codec.encode(bytes, n, &length, &error));
        ASSERT_TRUE(text);
        EXPECT_EQ(2 * n, length);
        EXPECT_EQ(0, text[2 * n]);
        EXPECT_TRUE(isBlockOf(text.get(), 2 * n + 1)) << n;
        const auto* const blanks = reinterpret_cast<const unsigned char*>(spaces.data());
        const std::unique_ptr<unsigned char[]> nothing(codec.decode(blanks, n, &length, &error));
        ASSERT_TRUE(nothing);
        EXPECT_EQ(0u, length);
        EXPECT_TRUE(isBlockOf(nothing.get(), n / 2 + 1)) << n;
    }
}

TEST_F(HexBinaryCodecTest, OneShotDecodingOfWhiteSpaceIsEmpty) {
    EXPECT_EQ((OneShotResult{"", 0}), decodeAll(" \n"));
    EXPECT_EQ((OneShotResult{"", 0}), decodeAll(" "));
}

TEST_F(HexBinaryCodecTest, OneShotFaultsReturnNullAndLeaveTheLengthAlone) {
    const struct {
        const char* text;
        cteErrorCode error;
    } cases[] = {{"0a", cteInvalidInput},
                 {"0A-", cteInvalidInput},
                 {"ABC", cteIncompleteInput},
                 {"A ", cteIncompleteInput}};
    for (const auto& [text, expected] : cases) {
        unsigned int length = 7;
        cteErrorCode error = cteNoError;
        EXPECT_EQ(nullptr, codec.decode(reinterpret_cast<const unsigned char*>(text),
                                        static_cast<unsigned int>(std::strlen(text)), &length, &error));
        EXPECT_EQ(expected, error) << text;
        EXPECT_EQ(7u, length) << text;
    }
}

TEST_F(HexBinaryCodecTest, OneShotRefusesNullPointersAndEmptyInput) {
    const unsigned char in[4] = {'0', 'A', '0', 'B'};
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

TEST_F(HexBinaryCodecTest, OneShotEncodingBeyond32BitsIsOutOfMemory) {
    const unsigned char in[1] = {};
    const std::size_t requests = Testing::newMemory().requests();
    for (const unsigned int length : {0x80000000u, 0xFFFFFFFFu}) {
        unsigned int outLength = 7;
        cteErrorCode error = cteNoError;
        EXPECT_EQ(nullptr, codec.encode(in, length, &outLength, &error));
        EXPECT_EQ(cteNoMemory, error);
        EXPECT_EQ(7u, outLength);
    }
    EXPECT_EQ(requests, Testing::newMemory().requests());
}

TEST_F(HexBinaryCodecTest, OneShotCallsLeaveAStreamAlone) {
    EXPECT_EQ((CallResult{"0", 1, cteOutputFull}), encode("\x0A", 1, false));
    EXPECT_EQ("666F", encodeAll("fo").text);
    EXPECT_EQ("fo", decodeAll("666F").text);
    EXPECT_EQ(cteInvalidInput, decodeAll("0a").error);
    EXPECT_EQ((CallResult{"A", 0, 0}), encode("", 1, true));
}

TEST_F(HexBinaryCodecTest, OneShotCallsReportThatMemoryHasRunOut) {
    const unsigned char in[2] = {'0', 'A'};
    unsigned int length = 7;
    cteErrorCode errors[2] = {};
    Testing::newMemory().failRequest(1);
    EXPECT_EQ(nullptr, codec.encode(in, 2, &length, &errors[0]));
    EXPECT_FALSE(Testing::newMemory().failureIsPending());
    Testing::newMemory().failRequest(1);
    EXPECT_EQ(nullptr, codec.decode(in, 2, &length, &errors[1]));
    EXPECT_FALSE(Testing::newMemory().failureIsPending());
    EXPECT_EQ(cteNoMemory, errors[0]);
    EXPECT_EQ(cteNoMemory, errors[1]);
    EXPECT_EQ(7u, length);
}

TEST_F(HexBinaryCodecTest, StreamingAllocatesNothing) {
    const unsigned char in[2] = {'0', 'A'};
    const unsigned char* inAt = in;
    unsigned char out[8];
    unsigned char* outAt = out;
    cteErrorCode error = cteNoError;
    const std::size_t objects = Testing::newMemory().requests(), blocks = Testing::hostMemory().requests();
    codec.decode(&outAt, out + 8, &inAt, in + 2, true, &error);
    EXPECT_EQ(objects, Testing::newMemory().requests());
    EXPECT_EQ(blocks, Testing::hostMemory().requests());
}

} // namespace
} // namespace Quillon::Xml
