#include "runtime/TextScan.h"

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

namespace Quillon::Runtime {
namespace {

bool isPlain(unsigned int unit) {
    constexpr std::u16string_view kMarks = u"<&]\r";
    const bool isControl = unit < 0x20 && unit != '\t' && unit != '\n';
    return !isControl && unit < 0xFFFE
           && kMarks.find(static_cast<char16_t>(unit)) == std::u16string_view::npos;
}

TEST(TextScanTest, StopsAtMarkupCarriageReturnsAndWhatIsNoCharacter) {
    for (const std::size_t place : {0u, 1u, 7u, 8u, 31u, 32u, 33u, 100u}) {
        std::vector<unsigned short> text(place + 40, 'x');
        for (unsigned int unit = 0; unit <= 0xFFFF; ++unit) {
            text[place] = static_cast<unsigned short>(unit);
            ASSERT_EQ(isPlain(unit) ? text.size() : place, lengthOfPlainText(text.data(), text.size()))
                << std::hex << unit << " at " << std::dec << place;
        }
    }
}

TEST(TextScanTest, NothingIsPlain) {
    const unsigned short unit = '<';
    EXPECT_EQ(0u, lengthOfPlainText(&unit, 0));
}

} // namespace
} // namespace Quillon::Runtime
