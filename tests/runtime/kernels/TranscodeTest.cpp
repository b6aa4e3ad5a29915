#include "runtime/kernels/TranscodeInternal.h"

#include "runtime/kernels/GuardedBuffer.h"
#include "runtime/kernels/KernelFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace Quillon::Runtime::Kernels {
namespace {

using Testing::GuardedBuffer;
using Unit = unsigned short;
using Units = std::vector<Unit>;

constexpr std::size_t kLongest = 1024;

class TranscodeKernelTest : public Testing::KernelFixture {
protected:
    /// Text of a kind: US-ASCII, Latin, Cyrillic, CJK, emoji, a mixture, or units without any order.
    Units randomUnits(std::size_t kind, std::size_t count) {
        Units units;
        while (units.size() < count) {
            const std::size_t die = random(100);
            const std::size_t shape = kind == 5 ? random(5) : kind;
            if (kind == 6) {
                static constexpr Unit kBoundaries[] = {0,      0x7F,   0x80,   0xFF,   0x100,
                                                       0x7FF,  0x800,  0xD7FF, 0xD800, 0xDBFF,
                                                       0xDC00, 0xDFFF, 0xE000, 0xFFFF};
                units.push_back(die < 50 ? kBoundaries[random(std::size(kBoundaries))]
                                         : static_cast<Unit>(random(0x10000)));
            } else if (shape == 0 || (shape == 1 && die < 80) || (kind != 0 && die < 10)) {
                units.push_back(static_cast<Unit>(random(0x80)));
            } else if (shape == 1) {
                units.push_back(static_cast<Unit>(0x80 + random(0x80)));
            } else if (shape == 2) {
                units.push_back(static_cast<Unit>(0x400 + random(0x100)));
            } else if (shape == 3) {
                units.push_back(static_cast<Unit>(0x4E00 + random(0x5000)));
            } else {
                units.push_back(static_cast<Unit>(0xD800 + random(0x400)));
                units.push_back(static_cast<Unit>(0xDC00 + random(0x400)));
            }
        }
        units.resize(count); // may cut a pair
        if (kind != 6 && count != 0 && random(4) == 0)
            units[random(count)] = static_cast<Unit>(0xD800 + random(0x800));
        return units;
    }

    std::string randomBytes(std::size_t kind, std::size_t count) {
        std::string bytes;
        if (kind == 6) {
            static constexpr char kBoundaries[] =
                "\x00\x7F\x80\x8F\x90\x9F\xA0\xBF\xC0\xC1\xC2\xDF\xE0\xE1\xEC\xED\xEE"
                "\xEF\xF0\xF1\xF3\xF4\xF5\xFF";
            while (bytes.size() < count)
                bytes += random(4) != 0 ? kBoundaries[random(sizeof kBoundaries - 1)]
                                        : static_cast<char>(random(256));
            return bytes;
        }
        const Units units = randomUnits(kind, count);
        bytes.resize(units.size() * 3);
        atScalarLevel([&] {
            bytes.resize(static_cast<std::size_t>(utf16ToUtf8(units.data(), units.size(), bytes.data())
                                                  - bytes.data()));
        });
        bytes.resize(count); // may cut a character
        if (count != 0 && random(4) == 0)
            bytes[random(count)] = static_cast<char>(random(256));
        return bytes;
    }

    /// The text before the guard page, then at the page's beginning, with room for exactly the result.
    void checkUtf16(const Units& units) {
        const std::size_t count = units.size();
        const auto length =
            static_cast<std::size_t>(atScalarLevel([&] { return utf8LengthOfUtf16(units.data(), count); }));
        std::string expected(length, '#');
        atScalarLevel(
            [&] { ASSERT_EQ(expected.data() + length, utf16ToUtf8(units.data(), count, expected.data())); });
        atEachLevel([&] {
            for (Unit* const text : {in16_.last(count), in16_.first()}) {
                std::copy(units.begin(), units.end(), text);
                ASSERT_EQ(length, utf8LengthOfUtf16(text, count));
                for (char* const out : {out8_.last(length), out8_.first()}) {
                    ASSERT_EQ(out + length, utf16ToUtf8(text, count, out));
                    ASSERT_EQ(expected, std::string(out, length));
                }
                char* const out = out8_.last(length);
                std::fill_n(out, length, '#');
                ASSERT_EQ(out + length, shortUtf16ToUtf8(text, count, out));
                ASSERT_EQ(expected, std::string(out, length));
            }
        });
        for (const Unit last : {Unit{0x7F}, Unit{0xFF}})
            checkSingleByte(units, last);
    }

    void checkSingleByte(const Units& units, Unit last) {
        const std::size_t count = units.size();
        std::string expected(count, '#');
        atScalarLevel([&] {
            expected.resize(static_cast<std::size_t>(
                utf16ToSingleByte(units.data(), count, last, expected.data()) - expected.data()));
        });
        atEachLevel([&] {
            Unit* const text = in16_.last(count);
            std::copy(units.begin(), units.end(), text);
            for (char* const out : {out8_.last(count), out8_.first()}) {
                const char* const outEnd = utf16ToSingleByte(text, count, last, out);
                ASSERT_EQ(expected, std::string(out, static_cast<std::size_t>(outEnd - out)));
            }
        });
    }

    void checkUtf8(const std::string& bytes) {
        const std::size_t count = bytes.size();
        const std::size_t length = atScalarLevel([&] { return utf16LengthOfUtf8(bytes.data(), count); });
        const std::size_t characters = atScalarLevel([&] { return charactersOfUtf8(bytes.data(), count); });
        Units expected(length);
        atScalarLevel(
            [&] { ASSERT_EQ(expected.data() + length, utf8ToUtf16(bytes.data(), count, expected.data())); });
        atEachLevel([&] {
            for (char* const text : {in8_.last(count), in8_.first()}) {
                std::copy(bytes.begin(), bytes.end(), text);
                ASSERT_EQ(length, utf16LengthOfUtf8(text, count));
                ASSERT_EQ(characters, charactersOfUtf8(text, count));
                for (Unit* const out : {out16_.last(length), out16_.first()}) {
                    ASSERT_EQ(out + length, utf8ToUtf16(text, count, out));
                    ASSERT_EQ(expected, Units(out, out + length));
                }
            }
        });
    }

private:
    GuardedBuffer<Unit> in16_{kLongest}, out16_{kLongest};
    GuardedBuffer<char> in8_{kLongest}, out8_{3 * kLongest};
};

TEST_F(TranscodeKernelTest, RandomUtf16IsTheSameAtEveryLevel) {
    for (std::size_t count = 0; count < 200; ++count) {
        for (std::size_t kind = 0; kind < 7; ++kind) {
            for (int i = 0; i < 6; ++i)
                checkUtf16(randomUnits(kind, count));
            ASSERT_FALSE(HasFatalFailure()) << "kind " << kind << ", " << count << " units";
        }
    }
    for (int i = 0; i < 2000; ++i) {
        const std::size_t kind = random(7);
        checkUtf16(randomUnits(kind, random(kLongest)));
        ASSERT_FALSE(HasFatalFailure()) << "kind " << kind;
    }
}

TEST_F(TranscodeKernelTest, RandomUtf8IsTheSameAtEveryLevel) {
    for (std::size_t count = 0; count < 200; ++count) {
        for (std::size_t kind = 0; kind < 7; ++kind) {
            for (int i = 0; i < 6; ++i)
                checkUtf8(randomBytes(kind, count));
            ASSERT_FALSE(HasFatalFailure()) << "kind " << kind << ", " << count << " bytes";
        }
    }
    for (int i = 0; i < 2000; ++i) {
        const std::size_t kind = random(7);
        checkUtf8(randomBytes(kind, random(kLongest)));
        ASSERT_FALSE(HasFatalFailure()) << "kind " << kind;
    }
}

/// Each short sequence of bytes that matter at each place in rows of characters of each length.
TEST_F(TranscodeKernelTest, EachSequenceAtEachPlaceIsTheSame) {
    static constexpr char kBytes[] = "\x41\x80\x90\xA0\xBF\xC1\xC2\xE0\xE1\xED\xF0\xF1\xF4\xF5";
    static constexpr std::size_t kByteCount = sizeof kBytes - 1;
    static constexpr const char* kFillers[] = {"a", "\xC3\xA9", "\xE4\xB8\xAD", "\xF0\x9F\x98\x80"};
    for (std::size_t code = 0; code < kByteCount * kByteCount * kByteCount * kByteCount; ++code) {
        std::string sequence;
        for (std::size_t rest = code, i = 0; i < 4; ++i, rest /= kByteCount)
            sequence += kBytes[rest % kByteCount];
        std::string text;
        const std::size_t before = random(70), filler = random(4), size = random(3) != 0 ? 400 : 0;
        for (std::size_t i = 0; i < before; ++i)
            text += kFillers[filler];
        text += sequence;
        while (text.size() < size)
            text += kFillers[filler];
        checkUtf8(text);
        ASSERT_FALSE(HasFatalFailure()) << "code " << code << ", " << before << " before";
    }
}

TEST_F(TranscodeKernelTest, EveryUnitAtEachPlaceOfABlockIsTheSame) {
    for (std::uint32_t unit = 0; unit < 0x10000; ++unit) {
        Units units(160, unit % 3 == 0 ? Unit{0x61} : unit % 3 == 1 ? Unit{0xE9} : Unit{0x4E2D});
        units[unit % units.size()] = static_cast<Unit>(unit);
        units[(unit + 1) % units.size()] = static_cast<Unit>(random(2) != 0 ? 0xDC00 : 0xD800);
        checkUtf16(units);
        ASSERT_FALSE(HasFatalFailure()) << "unit " << unit;
    }
}

/// The sums inside the length are kept in 16 bits for a while.
TEST_F(TranscodeKernelTest, LongLengthsAreTheSame) {
    Units units(300'000, 0x4E2D);
    for (std::size_t i = 100'000; i + 1 < 200'000; i += 2) {
        units[i] = 0xD83D;
        units[i + 1] = 0xDE00;
    }
    for (const std::size_t count : {65'536, 65'537, 131'080, 299'999, 300'000}) {
        const std::uint64_t expected = atScalarLevel([&] { return utf8LengthOfUtf16(units.data(), count); });
        atEachLevel([&] { EXPECT_EQ(expected, utf8LengthOfUtf16(units.data(), count)); });
    }
}

TEST_F(TranscodeKernelTest, NarrowingEndsAtTheFirstUnitThatIsNotAscii) {
    GuardedBuffer<Unit> in(64);
    GuardedBuffer<char> out(64);
    for (std::size_t count = 0; count <= 40; ++count) {
        for (std::size_t place = 0; place <= count; ++place) {
            Unit* const text = in.last(count);
            std::fill_n(text, count, Unit{'a'});
            if (place < count)
                text[place] = static_cast<Unit>(0x80 << random(9));
            char* const bytes = out.last(count);
            ASSERT_EQ(place, narrowAscii(text, count, bytes));
            ASSERT_EQ(std::string(place, 'a'), std::string(bytes, place));
        }
    }
}

} // namespace
} // namespace Quillon::Runtime::Kernels
