#include "platform/DisplayIdentity.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

namespace noctra {

namespace {

/// A display with the EDID that `mark` stands for, 0 for none; built in where the connector says
/// so.
AttachedDisplay display(std::uint8_t mark, const char* connector) {
    AttachedDisplay display{.builtIn = isPanelConnectorName(connector), .connector = connector};
    if (mark != 0)
        display.edid.emplace().fill(mark);
    return display;
}

using Attached = std::vector<AttachedDisplay>;

std::vector<DisplayId> numbersAfter(const std::vector<Attached>& steps) {
    DisplayNumbers numbers;
    std::vector<DisplayId> last;
    for (Attached step : steps) {
        numbers.assign(step);
        last.clear();
        for (const AttachedDisplay& display : step)
            last.push_back(display.id);
        EXPECT_EQ(std::set<DisplayId>(last.begin(), last.end()).size(), last.size());
        EXPECT_FALSE(std::ranges::count(last, 0U));
    }
    return last;
}

DisplayId firstAfter(const std::vector<Attached>& steps) {
    return numbersAfter(steps).front();
}

TEST(DisplayNumbers, FollowTheDisplayWhereverItIsAndStayTheSameInEveryRun) {
    const Attached alone{display(1, "DP-1")};
    const DisplayId one = firstAfter({alone});
    EXPECT_EQ(one, 2933096517U) << "the same at every start, in every version";
    struct Case {
        const char* name;
        std::vector<Attached> steps;
        bool same;
    };
    for (const Case& c : std::vector<Case>{
             {"on another output", {{display(1, "HDMI-2")}}, true},
             {"beside others",
              {{display(1, "DP-1"), display(2, "DP-2"), display(0, "DP-3")}},
              true},
             {"moved", {alone, {display(1, "DP-2")}}, true},
             {"moved over being away", {alone, {}, {display(1, "DP-2")}}, true},
             {"a twin comes", {alone, {display(1, "DP-1"), display(1, "DP-2")}}, true},
             {"a twin comes while it is away",
              {alone,
               {display(1, "DP-1"), display(1, "DP-2")},
               {display(1, "DP-2")},
               {display(1, "DP-1"), display(1, "DP-2")}},
              true},
             {"its EDID cannot be read for a while", {alone, {display(0, "DP-1")}}, true},
             {"another display in its place", {alone, {display(2, "DP-1")}}, false},
             {"one without an EDID", {{display(0, "DP-1")}}, false},
         })
        EXPECT_EQ(firstAfter(c.steps) == one, c.same) << c.name;
    EXPECT_EQ(firstAfter({{display(3, "eDP-1")}, {display(4, "eDP-1")}}),
              firstAfter({{display(3, "eDP-1")}}))
        << "nobody changes a built-in panel";
    const Attached twins{display(5, "DP-1"), display(5, "DP-2")};
    EXPECT_EQ(numbersAfter({twins}), numbersAfter({twins}));
    EXPECT_EQ(numbersAfter({{twins[1], twins[0]}}).back(), numbersAfter({twins}).front());
}

TEST(Connectors, HaveOneNameWhoeverSpeaksOfThem) {
    for (const auto& [name, expected] : std::vector<std::pair<const char*, const char*>>{
             {"HDMI-A-1", "HDMI-1"},
             {"card0-HDMI-A-2", "HDMI-2"},
             {"card12-DP-3", "DP-3"},
             {"card1-eDP-1", "eDP-1"},
             {"HDMI-1", "HDMI-1"},
             {"DVI-I-1", "DVI-I-1"},
             {"cardboard", "cardboard"},
             {"", ""},
         })
        EXPECT_EQ(connectorName(name), expected);
    for (const char* name : {"eDP-1", "eDP1", "eDP", "LVDS-1", "LVDS1", "DSI-1"})
        EXPECT_TRUE(isPanelConnectorName(name)) << name;
    for (const char* name : {"", "DP-1", "DP-1-eDP", "HDMI-A-1", "VGA-1", "eD", "Virtual-1"})
        EXPECT_FALSE(isPanelConnectorName(name)) << name;
}

} // namespace

} // namespace noctra
