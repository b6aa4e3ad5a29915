#include "xml/PowersOfTwo.h"

#include "support/HostFixture.h"
#include "system/InternalException.h"
#include "system/OutOfRangeException.h"

#include <gtest/gtest.h>

namespace Quillon::Xml {
namespace {

class PowersOfTwoTest : public Testing::HostFixture {
protected:
    const PowersOfTwo powers_{};
};

TEST_F(PowersOfTwoTest, ZeroStaysZero) {
    EXPECT_EQ(0u, powers_.roundUp(0));
    EXPECT_EQ(0u, powers_.roundDown(0));
}

TEST_F(PowersOfTwoTest, RoundsToTheNextPower) {
    EXPECT_EQ(1u, powers_.roundUp(1));
    EXPECT_EQ(2u, powers_.roundUp(2));
    EXPECT_EQ(4u, powers_.roundUp(3));
    EXPECT_EQ(8u, powers_.roundUp(5));
    EXPECT_EQ(8u, powers_.roundUp(8));
    EXPECT_EQ(1u, powers_.roundDown(1));
    EXPECT_EQ(2u, powers_.roundDown(2));
    EXPECT_EQ(2u, powers_.roundDown(3));
    EXPECT_EQ(4u, powers_.roundDown(5));
    EXPECT_EQ(8u, powers_.roundDown(8));
}

TEST_F(PowersOfTwoTest, EveryPowerStaysAndItsNeighboursRoundToIt) {
    for (unsigned int power = 4; power != 0; power *= 2) {
        EXPECT_EQ(power, powers_.roundUp(power));
        EXPECT_EQ(power, powers_.roundUp(power - 1));
        EXPECT_EQ(power, powers_.roundUp(power / 2 + 1));
        EXPECT_EQ(power, powers_.roundDown(power));
        EXPECT_EQ(power, powers_.roundDown(power + 1));
        EXPECT_EQ(power / 2, powers_.roundDown(power - 1));
    }
    EXPECT_EQ(0x80000000u, powers_.roundDown(0xFFFFFFFF));
}

TEST_F(PowersOfTwoTest, AgreesWithDoublingFromOne) {
    for (unsigned int n = 1; n <= 5000; ++n) {
        unsigned int up = 1;
        while (up < n)
            up *= 2;
        EXPECT_EQ(up, powers_.roundUp(n));
        EXPECT_EQ(up == n ? up : up / 2, powers_.roundDown(n));
    }
}

TEST_F(PowersOfTwoTest, RefusesToRoundUpWhatCannotBeRepresented) {
    EXPECT_EQ(0x80000000u, powers_.roundUp(0x80000000));
    EXPECT_THROW(powers_.roundUp(0x80000001), System::OutOfRangeException);
    EXPECT_THROW(powers_.roundUp(0xFFFFFFFF), System::OutOfRangeException);
    EXPECT_THROW(powers_.roundUp(0xFFFFFFFF), System::InternalException);
}

} // namespace
} // namespace Quillon::Xml
