#include "runtime/kernels/Base64Internal.h"
#include "runtime/kernels/HexInternal.h"

#include "runtime/kernels/GuardedBuffer.h"
#include "runtime/kernels/KernelFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace Quillon::Runtime::Kernels {
namespace {

using Testing::GuardedBuffer;
using Byte = unsigned char;
using Text = std::basic_string<Byte>;

constexpr std::size_t kLongest = 8192;
constexpr char kBase64[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kHex[] = "0123456789ABCDEF";

/// What a decoding kernel leaves behind.
struct Decoded {
    Text bytes;
    std::size_t used;

    bool operator==(const Decoded&) const = default;
};

using Decode = std::size_t (*)(const Byte*& in, const Byte* end, std::size_t maxUnits, Byte* out) noexcept;

class CodecKernelTest : public Testing::KernelFixture {
protected:
    Text randomBytes(std::size_t count) {
        Text bytes(count, 0);
        for (Byte& byte : bytes)
            byte = static_cast<Byte>(random(256));
        return bytes;
    }

    /// Digits of `alphabet`, in lines, between much or no white space, whole or with something else in it.
    Text randomText(const std::string& alphabet, std::size_t count) {
        Text text;
        const std::size_t line = random(3) == 0 ? kLongest : 4 + random(80),
                          spaces = random(4) == 0 ? random(20) : 0;
        while (text.size() < count) {
            if (text.size() % line == line - 1)
                text += '\n';
            else if (random(20) < spaces)
                text += static_cast<Byte>(random(6) == 0 ? 32 : 9 + random(5));
            else
                text += static_cast<Byte>(alphabet[random(alphabet.size())]);
        }
        text.resize(count);
        if (count != 0 && random(3) == 0)
            text[random(count)] = static_cast<Byte>(random(3) == 0 ? '=' : random(256));
        return text;
    }

    Decoded decoded(Decode decode, std::size_t unit, const Byte* in, std::size_t count, std::size_t maxUnits,
                    Byte* out) {
        const Byte* at = in;
        const std::size_t units = decode(at, in + count, maxUnits, out);
        return {Text(out, units * unit), static_cast<std::size_t>(at - in)};
    }

    /// The text and the room for the result end, and begin, at guarded pages; then the text is decoded onto itself.
    void checkDecode(Decode decode, std::size_t unit, const Text& text, std::size_t maxUnits) {
        const std::size_t count = text.size(), room = maxUnits * unit;
        Text buffer(room, 0);
        const Decoded expected =
            atScalarLevel([&] { return decoded(decode, unit, text.data(), count, maxUnits, buffer.data()); });
        atEachLevel([&] {
            for (Byte* const in : {in_.last(count), in_.first()}) {
                std::copy(text.begin(), text.end(), in);
                for (Byte* const out : {out_.last(room), out_.first()})
                    ASSERT_EQ(expected, decoded(decode, unit, in, count, maxUnits, out));
                ASSERT_EQ(expected, decoded(decode, unit, in, count, maxUnits, in));
                ASSERT_EQ(text.substr(expected.bytes.size()), Text(in + expected.bytes.size(), in + count));
            }
        });
    }

    template <class Encode>
    void checkEncode(Encode encode, const Text& bytes, std::size_t length) {
        Text expected(length, 0);
        atScalarLevel([&] { encode(bytes.data(), expected.data()); });
        atEachLevel([&] {
            for (Byte* const in : {in_.last(bytes.size()), in_.first()}) {
                std::copy(bytes.begin(), bytes.end(), in);
                for (Byte* const out : {out_.last(length), out_.first()}) {
                    encode(in, out);
                    ASSERT_EQ(expected, Text(out, length));
                }
            }
        });
    }

    void checkCount(const Text& text) {
        const auto counted = [](const Byte* in, std::size_t count) {
            const Byte* at = in;
            const std::size_t visible = countVisible(at, in + count);
            return std::pair(visible, at - in);
        };
        const auto expected = atScalarLevel([&] { return counted(text.data(), text.size()); });
        atEachLevel([&] {
            Byte* const in = in_.last(text.size());
            std::copy(text.begin(), text.end(), in);
            ASSERT_EQ(expected, counted(in, text.size()));
        });
    }

    /// Mostly the room for all, sometimes less.
    std::size_t randomRoom(std::size_t all) { return random(3) != 0 ? all : random(all + 1); }

private:
    GuardedBuffer<Byte> in_{kLongest}, out_{2 * kLongest};
};

TEST_F(CodecKernelTest, EncodedGroupsAreTheSame) {
    for (std::size_t groups = 0; groups < 150; ++groups) {
        checkEncode([&](const Byte* in, Byte* out) { encodeBase64(in, groups, out); },
                    randomBytes(groups * 3), groups * 4);
        ASSERT_FALSE(HasFatalFailure()) << groups << " groups";
    }
}

TEST_F(CodecKernelTest, EncodedLinesAreTheSame) {
    for (std::size_t lines = 0; lines < 50; ++lines) {
        checkEncode([&](const Byte* in, Byte* out) { encodeBase64Lines(in, lines, out); },
                    randomBytes(lines * 57), lines * 77);
        ASSERT_FALSE(HasFatalFailure()) << lines << " lines";
    }
}

TEST_F(CodecKernelTest, EncodedDigitsAreTheSame) {
    for (std::size_t count = 0; count < 300; ++count) {
        checkEncode([&](const Byte* in, Byte* out) { encodeHex(in, count, out); }, randomBytes(count),
                    count * 2);
        ASSERT_FALSE(HasFatalFailure()) << count << " bytes";
    }
}

TEST_F(CodecKernelTest, DecodedBase64IsTheSame) {
    for (std::size_t count = 0; count < 300; ++count) {
        for (int i = 0; i < 20; ++i)
            checkDecode(decodeBase64, 3, randomText(kBase64, count), randomRoom(count / 4 + 1));
        ASSERT_FALSE(HasFatalFailure()) << count << " characters";
    }
    for (int i = 0; i < 500; ++i) {
        const std::size_t count = random(kLongest);
        checkDecode(decodeBase64, 3, randomText(kBase64, count), randomRoom(count / 4 + 1));
        ASSERT_FALSE(HasFatalFailure()) << count << " characters";
    }
}

TEST_F(CodecKernelTest, DecodedHexIsTheSame) {
    for (std::size_t count = 0; count < 300; ++count) {
        for (int i = 0; i < 20; ++i)
            checkDecode(decodeHex, 1, randomText(kHex, count), randomRoom(count / 2 + 1));
        ASSERT_FALSE(HasFatalFailure()) << count << " characters";
    }
    for (int i = 0; i < 500; ++i) {
        const std::size_t count = random(kLongest);
        checkDecode(decodeHex, 1, randomText(kHex, count), randomRoom(count / 2 + 1));
        ASSERT_FALSE(HasFatalFailure()) << count << " characters";
    }
}

/// More room than any product with it can count.
TEST_F(CodecKernelTest, DecodingIntoRoomWithoutBoundEndsWithTheText) {
    const Text base64(4000, 'A'), hex(4000, '0');
    Text out(3000, 0);
    for (const std::size_t room : {~std::size_t{0}, ~std::size_t{0} / 2 + 1, ~std::size_t{0} / 4 + 1}) {
        atEachLevel([&] {
            const Byte* in = base64.data();
            EXPECT_EQ(1000u, decodeBase64(in, in + base64.size(), room, out.data()));
            in = hex.data();
            EXPECT_EQ(2000u, decodeHex(in, in + hex.size(), room, out.data()));
            Text spaced = hex;
            spaced[100] = ' ';
            in = spaced.data();
            EXPECT_EQ(1999u, decodeHex(in, in + spaced.size(), room, out.data()));
        });
    }
}

/// Each byte at each place of a block: digits keep their values, everything else ends the decoding.
TEST_F(CodecKernelTest, EachByteIsTheSameAtEachPlace) {
    for (std::size_t place = 0; place < 130; ++place) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            Text text(160, 'A');
            text[place] = static_cast<Byte>(byte);
            checkDecode(decodeBase64, 3, text, 40);
            checkDecode(decodeHex, 1, text, 80);
            checkCount(text);
            ASSERT_FALSE(HasFatalFailure()) << "byte " << byte << " at " << place;
        }
    }
}

TEST_F(CodecKernelTest, CountsOfVisibleCharactersAreTheSame) {
    for (std::size_t count = 0; count < 300; ++count) {
        for (int i = 0; i < 5; ++i)
            checkCount(randomText(kBase64, count));
        ASSERT_FALSE(HasFatalFailure()) << count << " characters";
    }
}

} // namespace
} // namespace Quillon::Runtime::Kernels
