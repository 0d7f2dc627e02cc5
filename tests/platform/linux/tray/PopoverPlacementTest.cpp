#include "platform/linux/tray/PopoverPlacement.h"

#include <vector>

#include <gtest/gtest.h>

namespace noctra {

void PrintTo(const PixelPoint& point, std::ostream* stream) {
    *stream << point.x << "," << point.y;
}

namespace {

using enum Edge;

TEST(PopoverPosition, IsBesideTheAnchorAndInTheVisibleFrame) {
    struct Case {
        const char* situation;
        PopoverAnchor anchor;
        PixelRect visible;
        std::optional<Edge> bar;
        PixelPoint position;
    };
    using Item = PixelRect;
    using Click = PixelPoint;
    using Corner = HabitualCorner;
    constexpr auto none = std::nullopt;
    constexpr PixelRect whole{0, 0, 1920, 1080};
    constexpr PixelRect underBar{0, 30, 1920, 1050}, overBar{0, 0, 1920, 1040};
    constexpr PixelRect besideLeft{40, 0, 1880, 1080}, besideRight{0, 0, 1880, 1080};
    constexpr PixelRect second{1920, 230, 1280, 690};
    const std::vector<Case> cases{
        {"below the item", Item{1000, 0, 24, 30}, underBar, top, {852, 30}},
        {"below a padded item", Item{1000, 3, 24, 24}, underBar, top, {852, 30}},
        {"a bar that reserves nothing", Item{1000, 3, 24, 24}, whole, top, {852, 27}},
        {"near the right end", Item{1890, 0, 24, 30}, underBar, top, {1600, 30}},
        {"above the item", Item{1000, 1045, 24, 30}, overBar, bottom, {852, 500}},
        {"right of the item", Item{5, 500, 30, 30}, besideLeft, left, {40, 245}},
        {"left of the item, low", Item{1885, 1040, 30, 30}, besideRight, right, {1560, 540}},
        {"no bar, room below", Click{500, 400}, whole, none, {340, 400}},
        {"no bar, room above only", Click{500, 900}, whole, none, {340, 360}},
        {"no bar, no room", Click{500, 560}, underBar, none, {340, 540}},
        {"bar below, no room above", Click{500, 400}, whole, bottom, {340, 400}},
        {"click in the bar above", Click{1000, 12}, underBar, top, {840, 30}},
        {"click in the bar below", Click{1000, 1070}, overBar, bottom, {840, 500}},
        {"too high", Item{500, 0, 24, 30}, {0, 30, 1024, 400}, top, {352, 30}},
        {"too high, too wide", Item{500, 400, 24, 30}, {400, 30, 300, 370}, bottom, {400, 30}},
        {"corner, no bar", Corner{}, second, none, {2880, 230}},
        {"corner, bar above", Corner{}, underBar, top, {1600, 30}},
        {"corner, bar below", Corner{}, overBar, bottom, {1600, 500}},
        {"corner, bar at the left", Corner{}, besideLeft, left, {40, 540}},
    };
    for (const auto& [situation, anchor, visible, bar, position] : cases)
        EXPECT_EQ(popoverPosition({320, 540}, anchor, visible, bar), position) << situation;
}

} // namespace

} // namespace noctra
