#include "runtime/kernels/CompareInternal.h"

#include "GuardedBuffer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace Quillon::Runtime::Kernels {
namespace {

constexpr std::size_t kLongest = 40; // every rest of every register, and what is left to a call

/// Two texts that end before guarded pages, or begin behind them.
TEST(CompareTest, ADifferenceInEachPlaceOfEachLengthIsFound) {
    const Testing::GuardedBuffer<unsigned short> left(kLongest), right(kLongest);
    for (std::size_t count = 0; count <= kLongest; ++count) {
        for (const bool atEnd : {true, false}) {
            unsigned short* const l = atEnd ? left.last(count) : left.first();
            unsigned short* const r = atEnd ? right.last(count) : right.first();
            std::fill_n(l, count, static_cast<unsigned short>(0xABCD));
            std::fill_n(r, count, static_cast<unsigned short>(0xABCD));
            ASSERT_TRUE(areUnitsSame(l, r, count)) << count;
            for (std::size_t place = 0; place < count; ++place) {
                for (const unsigned int change : {0x1u, 0x8000u}) {
                    r[place] = static_cast<unsigned short>(r[place] ^ change);
                    ASSERT_FALSE(areUnitsSame(l, r, count)) << count << ' ' << place;
                    r[place] = l[place];
                }
            }
        }
    }
}

} // namespace
} // namespace Quillon::Runtime::Kernels
