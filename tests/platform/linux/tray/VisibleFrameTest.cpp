#include "platform/linux/tray/VisibleFrame.h"

#include <gtest/gtest.h>

namespace noctra {

void PrintTo(const PixelRect& rect, std::ostream* stream) {
    *stream << rect.width << "x" << rect.height << "+" << rect.x << "+" << rect.y;
}

namespace {

using enum Edge;

constexpr PixelRect big{0, 0, 1920, 1080};
// Beside it, and lower than it; the screen ends where the lowest monitor does.
constexpr PixelRect small{1920, 200, 1280, 720};
constexpr PixelRect sideBySide{0, 0, 3200, 1080};
constexpr PixelRect upper{0, 0, 1280, 800};
constexpr PixelRect stacked{0, 0, 1280, 1600};
constexpr auto none = std::nullopt;

/// A strut of that size at one edge.
constexpr Strut at(Edge edge, int size, int start, int end) {
    const auto side = [&](Edge other) {
        return other == edge ? StrutSide{size, start, end} : StrutSide{};
    };
    return {side(left), side(right), side(top), side(bottom)};
}

TEST(VisibleFrame, BarsWithoutWindowsAreWhatTheWorkAreaLeavesOut) {
    struct Case {
        const char* situation;
        PixelRect area, monitor, screen;
        std::vector<PixelRect> frames;
    };
    for (const Case& known :
         {Case{"nothing", big, big, big, {}},
          Case{"a hidden bar's line", {0, 1, 1920, 1079}, big, big, {}},
          Case{"top of the first of two", {0, 27, 3200, 1053}, big, sideBySide, {{0, 0, 1920, 27}}},
          Case{"left and bottom",
               {40, 0, 1880, 1040},
               big,
               big,
               {{0, 0, 40, 1080}, {0, 1040, 1920, 40}}},
          Case{"bottom of another monitor than the first",
               {0, 0, 1280, 1570},
               upper,
               stacked,
               {{0, 1570, 1280, 30}}},
          Case{"no area that could be", {5000, 900, 1, 1}, big, big, {}}}) {
        const std::vector<Dock> docks = barsAround(known.area, known.monitor, known.screen);
        std::vector<PixelRect> frames;
        for (const Dock& dock : docks)
            frames.push_back(dock.frame);
        EXPECT_EQ(frames, known.frames) << known.situation;
        const PixelRect free = known.frames.empty() ? known.screen : known.area;
        EXPECT_EQ(visibleFrame(known.screen, known.screen, docks), free) << known.situation;
    }
}

TEST(VisibleFrame, LeavesOutWhatADockReservesOnItsMonitor) {
    struct Case {
        const char* situation;
        PixelRect monitor, screen, frame;
        Strut strut;
        PixelRect visible;
        std::optional<Edge> edge;
    };
    const Strut sides{.left = {800, 0, 1079}, .right = {700, 0, 1079}};
    const std::vector<Case> cases{
        {"top", big, big, {0, 0, 1920, 30}, at(top, 30, 0, 1919), {0, 30, 1920, 1050}, top},
        {"bottom of a monitor that ends above the screen's end",
         small,
         sideBySide,
         {1920, 880, 1280, 40},
         at(bottom, 200, 1920, 3199),
         {1920, 200, 1280, 680},
         bottom},
        {"between two monitors",
         small,
         sideBySide,
         {1920, 200, 50, 720},
         at(left, 1970, 200, 919),
         {1970, 200, 1230, 720},
         left},
        {"bottom of the upper, counted from the monitor's own edge",
         upper,
         stacked,
         {0, 770, 1280, 30},
         at(bottom, 30, 0, 1279),
         {0, 0, 1280, 770},
         bottom},
        {"on both monitors, reserving on the other",
         small,
         sideBySide,
         {0, 200, 3200, 30},
         at(top, 230, 0, 1919),
         small,
         top},
        {"nothing reserved", big, big, {0, 300, 40, 400}, {}, big, left},
        {"one item in a corner", big, big, {1896, 0, 24, 26}, {}, big, top},
        {"in the middle", big, big, {900, 500, 200, 40}, {}, big, none},
        {"nonsense", big, big, {0, 0, 1920, 30}, at(top, 811, 0, 1919), big, top},
        {"nonsense from both sides", big, big, {0, 0, 1920, 30}, sides, big, left},
    };
    for (const Case& known : cases) {
        const Dock dock{.frame = known.frame, .strut = known.strut};
        EXPECT_EQ(visibleFrame(known.monitor, known.screen, {dock}), known.visible)
            << known.situation;
        EXPECT_EQ(edgeOf(dock, known.monitor), known.edge) << known.situation;
    }
}

} // namespace

} // namespace noctra
