#include "runtime/StreamDecoder.h"

#include "support/HostFixture.h"

#include <gtest/gtest.h>

#include <string>

namespace Quillon::Runtime {
namespace {

class StreamDecoderTest : public Testing::HostFixture {
protected:
    /// iconv loads its tables when they are first needed and keeps them.
    void warmUp() override { StreamDecoder().open("EUC-KR"); }
};

/// Decodes `bytes` given in pieces of `step` bytes, into rooms of `room` bytes.
std::string decodedInPieces(StreamDecoder& decoder, const std::string& bytes, std::size_t step,
                            std::size_t room, StreamDecoder::Status* last) {
    std::string result, pending;
    for (std::size_t i = 0; i < bytes.size();) {
        pending += bytes.substr(i, step);
        i += step;
        const char* input = pending.data();
        std::size_t left = pending.size();
        do {
            std::string buffer(room, '\0');
            char* output = buffer.data();
            std::size_t free = room;
            *last = decoder.decode(&input, &left, &output, &free);
            result.append(buffer, 0, room - free);
        } while (*last == StreamDecoder::Status::OutputFull);
        pending.erase(0, pending.size() - left);
        if (*last == StreamDecoder::Status::IllFormed)
            break;
    }
    return result;
}

TEST_F(StreamDecoderTest, PiecesOfAnySizeGiveTheSameText) {
    const std::string koreanBytes = "ab\xB0\xA1\xB0\xA2z", koreanUtf8 = "ab\xEA\xB0\x80\xEA\xB0\x81z";
    StreamDecoder decoder;
    for (std::size_t step = 1; step <= koreanBytes.size(); ++step) {
        for (std::size_t room = 3; room <= 12; ++room) {
            ASSERT_TRUE(decoder.open("EUC-KR"));
            StreamDecoder::Status last;
            EXPECT_EQ(koreanUtf8, decodedInPieces(decoder, koreanBytes, step, room, &last))
                << step << ' ' << room;
            EXPECT_EQ(StreamDecoder::Status::InputUsed, last);
        }
    }
}

TEST_F(StreamDecoderTest, IllFormedBytesStopAtTheirPlace) {
    StreamDecoder decoder;
    ASSERT_TRUE(decoder.open("EUC-KR"));
    const std::string bytes = "ab\xFF\xFFz";
    const char* input = bytes.data();
    std::size_t left = bytes.size();
    char buffer[16];
    char* output = buffer;
    std::size_t room = sizeof buffer;
    EXPECT_EQ(StreamDecoder::Status::IllFormed, decoder.decode(&input, &left, &output, &room));
    EXPECT_EQ(bytes.data() + 2, input);
    EXPECT_EQ("ab", std::string(buffer, output));
}

TEST_F(StreamDecoderTest, AnIncompleteCharacterIsLeftInTheInput) {
    StreamDecoder decoder;
    ASSERT_TRUE(decoder.open("EUC-KR"));
    const char bytes[] = {'a', '\xB0'};
    const char* input = bytes;
    std::size_t left = sizeof bytes;
    char buffer[16];
    char* output = buffer;
    std::size_t room = sizeof buffer;
    EXPECT_EQ(StreamDecoder::Status::InputUsed, decoder.decode(&input, &left, &output, &room));
    EXPECT_EQ(1u, left);
}

TEST_F(StreamDecoderTest, UnknownNamesDoNotOpen) {
    StreamDecoder decoder;
    for (const char* name : {"no-such-encoding", "", "EUC-KR//IGNORE", "8859-1"}) {
        ASSERT_TRUE(decoder.open("EUC-KR"));
        EXPECT_FALSE(decoder.open(name)) << name;
        EXPECT_FALSE(decoder.isOpen()) << name;
    }
    EXPECT_FALSE(decoder.open(nullptr));
}

TEST_F(StreamDecoderTest, NoMemoryDoesNotOpen) {
    StreamDecoder decoder;
    Testing::newMemory().failRequest(1);
    EXPECT_FALSE(decoder.open("EUC-KR"));
    Testing::newMemory().failRequest(0);
    EXPECT_TRUE(decoder.open("EUC-KR"));
    decoder.close();
    EXPECT_FALSE(decoder.isOpen());
}

} // namespace
} // namespace Quillon::Runtime
