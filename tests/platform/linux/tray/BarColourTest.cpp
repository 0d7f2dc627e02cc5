#include "platform/linux/tray/BarColour.h"

#include <vector>

#include <gtest/gtest.h>

namespace noctra {

namespace {

TEST(BarColour, IsTheOneThatPrevailsWhateverIsOnTheBar) {
    std::vector<std::uint32_t> bar(400, 0x2E3436); // less than half
    for (std::uint32_t i = 0; i < 500; ++i)
        bar.push_back(0xFFFFFF - 0x050709 * i); // icons and their smooth edges
    EXPECT_NEAR(prevailingLuminance(bar), 0.0330, 0.0005);
    EXPECT_EQ(prevailingLuminance({}), 0.0);
}

TEST(BarColour, IsDarkWhereWhiteStandsOutMoreThanBlack) {
    for (const std::uint32_t grey : {0U, 0x40U, 0x75U, 0x76U, 0xC0U, 0xFFU}) {
        const std::uint32_t colour = grey << 16 | grey << 8 | grey;
        const double luminance = prevailingLuminance(std::vector{colour});
        EXPECT_EQ(isDark(luminance), grey <= 0x75) << grey; // 0x75: 4.61 to white, 4.56 to black
    }
    EXPECT_NEAR(prevailingLuminance(std::vector{0x00FF00U}), 0.7152, 1e-9);
}

} // namespace

} // namespace noctra
