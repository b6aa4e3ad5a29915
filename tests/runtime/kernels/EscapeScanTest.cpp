#include "runtime/kernels/EscapeScanInternal.h"

#include "GuardedBuffer.h"
#include "KernelFixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace Quillon::Runtime::Kernels {
namespace {

using Testing::GuardedBuffer;
using Text = std::vector<unsigned short>;

constexpr std::size_t kLongest = 200; // some blocks of every level, and every rest
constexpr std::uint16_t kMasks[] = {0, 0xFF80, 0xFF00};
constexpr std::uint16_t kLastBytes[] = {0x7F, 0xFF};

/// A set as the test understands it, and the kernel for short texts, which is made for one set each.
struct SetCase {
    const char* name;
    std::uint16_t controlLimit, last;
    const char* marks;
    bool (*copyShort)(const unsigned short*, std::size_t, char*) noexcept;

    bool holds(unsigned int unit) const {
        if (unit > last || unit == 0)
            return true;
        if (unit < controlLimit && unit != '\t' && unit != '\n' && unit != '\r')
            return true;
        return unit < 0x80 && std::string_view(marks).find(static_cast<char>(unit)) != std::string_view::npos;
    }
    EscapeSet set() const { return EscapeSet(controlLimit, last, marks); }
};

constexpr EscapeSet kZeroOnly(1, 0xFFFF, ""), kText(0x20, 0xFFFD, "\n&<>"),
    kSevenMarks(0x20, 0xFFFD, "&<>\"\r\t\n"), kNoMarks(0x20, 0xD7FF, ""), kHighestMark(2, 0xFF, "\x7F~ ");

const SetCase kSets[] = {
    {"ZeroOnly", 1, 0xFFFF, "", &copyShort<kZeroOnly>},
    {"Text", 0x20, 0xFFFD, "\n&<>", &copyShort<kText>},
    {"SevenMarks", 0x20, 0xFFFD, "&<>\"\r\t\n", &copyShort<kSevenMarks>},
    {"NoMarks", 0x20, 0xD7FF, "", &copyShort<kNoMarks>},
    {"HighestMark", 2, 0xFF, "\x7F~ ", &copyShort<kHighestMark>},
};

class EscapeScanTest : public Testing::KernelFixture, public testing::WithParamInterface<SetCase> {
protected:
    std::size_t expectedStop(const Text& text, std::uint16_t mask) const {
        const auto stop = std::find_if(text.begin(), text.end(), [&](unsigned short unit) {
            return GetParam().holds(unit) || (unit & mask) != 0;
        });
        return static_cast<std::size_t>(stop - text.begin());
    }

    /// Units that stay, and now and then any other one.
    Text randomText(std::size_t count, std::size_t oddOneIn) {
        static constexpr unsigned short kOdd[] = {
            0,      1,      8,      9,      0xA,    0xD,    0x1F,   0x20,   '"',    '&',
            '\'',   '<',    '>',    0x7E,   0x7F,   0x80,   0xFF,   0x100,  0x126,  0x7FFF,
            0x8000, 0x8026, 0xD7FF, 0xD800, 0xDFFF, 0xFF26, 0xFFFD, 0xFFFE, 0xFFFF, 0x2600};
        Text text(count);
        for (unsigned short& unit : text)
            unit = random(oddOneIn) != 0 ? static_cast<unsigned short>('A' + random(26))
                                         : kOdd[random(std::size(kOdd))];
        return text;
    }

    /// The kernels on `text`, which ends, and whose copy ends, before a guarded page.
    void check(const Text& text) {
        const EscapeSet set = GetParam().set();
        unsigned short* const units = input_.last(text.size());
        std::copy(text.begin(), text.end(), units);
        for (const std::uint16_t mask : kMasks)
            ASSERT_EQ(expectedStop(text, mask), firstToEscape(units, text.size(), set, mask)) << mask;
        for (const std::uint16_t last : kLastBytes) {
            char* const out = output_.last(text.size());
            const auto mask = static_cast<std::uint16_t>(~last);
            const std::size_t count = copyUnescaped(units, text.size(), set, last, out);
            ASSERT_EQ(expectedStop(text, mask), count) << last;
            for (std::size_t i = 0; i < count; ++i)
                ASSERT_EQ(static_cast<char>(text[i]), out[i]) << i;
        }
        if (text.size() <= kShortText)
            checkShort(text);
    }

private:
    /// All of it, or nothing is written.
    void checkShort(const Text& text) {
        const std::string before(text.size(), '#');
        char* const out = output_.last(text.size());
        std::copy(before.begin(), before.end(), out);
        const bool isWhole = expectedStop(text, 0xFF80) == text.size();
        ASSERT_EQ(isWhole, GetParam().copyShort(input_.last(text.size()), text.size(), out));
        const std::string after(out, text.size());
        ASSERT_EQ(isWhole ? std::string(text.begin(), text.end()) : before, after);
    }

    GuardedBuffer<unsigned short> input_{kLongest};
    GuardedBuffer<char> output_{kLongest};
};

TEST_P(EscapeScanTest, EveryUnitIsJudgedAlikeInEveryPlace) {
    for (unsigned int unit = 0; unit <= 0xFFFF; unit += unit < 0x200 || unit > 0xD700 ? 1 : 7) {
        Text text(41, 'x');
        text[unit % text.size()] = static_cast<unsigned short>(unit);
        atScalarLevel([&] { check(text); });
        atEachLevel([&] { check(text); });
        if (HasFatalFailure())
            return;
    }
}

TEST_P(EscapeScanTest, EveryLengthAndEveryStopIsExact) {
    for (std::size_t count = 0; count <= kLongest; ++count) {
        for (const std::size_t oddOneIn : {2, 10, 60, 1000}) {
            const Text text = randomText(count, oddOneIn);
            atScalarLevel([&] { check(text); });
            atEachLevel([&] { check(text); });
            if (HasFatalFailure())
                return;
        }
    }
}

TEST_P(EscapeScanTest, AStopInEachPlaceOfEachLengthIsFound) {
    for (std::size_t count = 1; count <= 100; ++count) {
        for (std::size_t place = 0; place < count; ++place) {
            Text text(count, 'x');
            text[place] = 0;
            atScalarLevel([&] { check(text); });
            atEachLevel([&] { check(text); });
            if (HasFatalFailure())
                return;
        }
    }
}

/// In front of the range nothing is touched, either.
TEST_P(EscapeScanTest, ReadsAndWritesBeginWithTheRange) {
    GuardedBuffer<unsigned short> input(kLongest);
    GuardedBuffer<char> output(kLongest);
    const EscapeSet set = GetParam().set();
    std::fill_n(input.first(), kLongest, static_cast<unsigned short>('x'));
    const auto whole = [&] {
        for (std::size_t count = 0; count <= kLongest; ++count) {
            ASSERT_EQ(count, firstToEscape(input.first(), count, set, 0));
            ASSERT_EQ(count, copyUnescaped(input.first(), count, set, 0x7F, output.first()));
            if (count <= kShortText) {
                ASSERT_TRUE(GetParam().copyShort(input.first(), count, output.first()));
            }
        }
    };
    atScalarLevel(whole);
    atEachLevel(whole);
}

/// What lies behind the range belongs to somebody else.
TEST_P(EscapeScanTest, WritesNothingBehindTheRange) {
    const Text text(kLongest, 'x');
    const EscapeSet set = GetParam().set();
    const auto leavesTheRest = [&] {
        for (std::size_t count = 0; count < kLongest; ++count) {
            std::string out(kLongest + 64, '#');
            copyUnescaped(text.data(), count, set, 0xFF, out.data());
            ASSERT_EQ(std::string(count, 'x') + std::string(kLongest + 64 - count, '#'), out);
            out.assign(out.size(), '#');
            if (count <= kShortText) {
                ASSERT_TRUE(GetParam().copyShort(text.data(), count, out.data()));
                ASSERT_EQ(std::string(count, 'x') + std::string(kLongest + 64 - count, '#'), out);
            }
        }
    };
    atScalarLevel(leavesTheRest);
    atEachLevel(leavesTheRest);
}

INSTANTIATE_TEST_SUITE_P(Table, EscapeScanTest, testing::ValuesIn(kSets),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
} // namespace Quillon::Runtime::Kernels
