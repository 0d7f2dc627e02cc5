#include "pwmsafe/PwmSafeStatusRow.h"

#include <optional>
#include <string>
#include <vector>

#include "tests/pwmsafe/PanelControllersFixture.h"

namespace noctra {

namespace {

struct PwmSafeRow : PanelControllers {
    int changes = 0;
    std::optional<PwmSafeStatusRow> row;

    PwmSafeStatusRow& show() {
        return row.emplace(engine, manager, desktop.mainQueue, desktop.cursor,
                           [this] { ++changes; });
    }
    /// With a warning to hover.
    PwmSafeStatusRow& showWarning() {
        setBacklight(0.6F);
        return show();
    }
};

constexpr Color green{0.0, 1.0, 0.4};

} // namespace

TEST_F(PwmSafeRow, TheBarFollowsTheModeFromOffToLockedAndBackWhereItFails) {
    setControllable(true);
    desktop.displayServices.displays[1].brightness = 0.5F;
    PwmSafeStatusRow& bar = show();
    ASSERT_TRUE(bar.showsToggleRow());
    EXPECT_EQ(bar.statusWord(), "OFF");
    EXPECT_EQ(bar.dotColor(0.25), colors::white.withAlpha(0.25));
    EXPECT_EQ(bar.borderColor(), colors::white.withAlpha(0.08));
    EXPECT_EQ(bar.labelColor(), colors::white.withAlpha(0.5));

    bar.toggle();
    EXPECT_EQ(bar.statusWord(), "...");
    EXPECT_EQ(bar.dotColor(0.25), colors::systemYellow);
    EXPECT_EQ(bar.borderColor(), colors::systemYellow.withAlpha(0.4));
    desktop.advance(Seconds(0.8));
    EXPECT_EQ(bar.statusWord(), "ON");
    EXPECT_EQ(bar.dotColor(0.4), green);
    EXPECT_EQ(bar.borderColor(), green.withAlpha(0.4));
    EXPECT_EQ(bar.labelColor(), colors::white.withAlpha(0.95));

    bar.toggle();
    EXPECT_FALSE(manager.isEnabled);
    bar.toggle();
    desktop.displayServices.displays[1].brightness = 0.5F; // it does not take
    desktop.advance(Seconds(0.8));
    EXPECT_EQ(bar.statusWord(), "OFF");
}

TEST_F(PwmSafeRow, TheTooltipOpensAfterARestAndClosesAfterALeave) {
    struct Step {
        enum { text, leaveText, tip, leaveTip } what;
        double after; ///< seconds since the step before
    };
    struct Case {
        const char* situation;
        std::vector<Step> steps;
        double wait; ///< seconds, after the last step
        bool visible;
    };
    for (const Case& given : std::vector<Case>{
             {"not yet", {{Step::text, 0}}, 0.49, false},
             {"rested", {{Step::text, 0}}, 0.51, true},
             {"left before it opened", {{Step::text, 0}, {Step::leaveText, 0.4}}, 2, false},
             {"left and came back: the first entry's time counts",
              {{Step::text, 0}, {Step::leaveText, 0.2}, {Step::text, 0.1}},
              0.21,
              true},
             {"still closing", {{Step::text, 0}, {Step::leaveText, 0.6}}, 0.19, true},
             {"closed", {{Step::text, 0}, {Step::leaveText, 0.6}}, 0.21, false},
             {"moved onto the tooltip",
              {{Step::text, 0}, {Step::leaveText, 0.6}, {Step::tip, 0.1}},
              2,
              true},
             {"left the tooltip",
              {{Step::text, 0}, {Step::leaveText, 0.6}, {Step::tip, 0.1}, {Step::leaveTip, 1}},
              0.21,
              false},
         }) {
        PwmSafeStatusRow& shown = showWarning();
        for (const Step& step : given.steps) {
            desktop.advance(Seconds(step.after));
            if (step.what == Step::text || step.what == Step::leaveText)
                shown.hoverWarning(step.what == Step::text);
            else
                shown.hoverTooltip(step.what == Step::tip);
        }
        desktop.advance(Seconds(given.wait));
        EXPECT_EQ(shown.isTooltipShown(), given.visible) << given.situation;
        row.reset();
        EXPECT_EQ(desktop.cursor.depth, 0) << given.situation;
    }
}

TEST_F(PwmSafeRow, EverythingThatTakesTheWarningAwayEndsTheHovering) {
    struct Case {
        const char* situation;
        std::function<void()> happen;
    };
    for (const Case& given : std::vector<Case>{
             {"the backlight is full again",
              [this] {
                  setBacklight(1.0F);
              }},
             {"a display can be changed",
              [this] {
                  setControllable(true);
              }},
             {"the panel closes",
              [this] {
                  row.reset();
              }},
         }) {
        setControllable(false);
        PwmSafeStatusRow& shown = showWarning();
        shown.hoverWarning(true);
        shown.hoverWarning(true);
        desktop.advance(Seconds(0.6));
        ASSERT_TRUE(shown.isTooltipShown()) << given.situation;
        ASSERT_EQ(desktop.cursor.depth, 1) << given.situation;
        given.happen();
        EXPECT_EQ(desktop.cursor.depth, 0) << given.situation;
        EXPECT_TRUE(!row || !row->isTooltipShown()) << given.situation;
        setBacklight(0.6F);
        setControllable(false);
        EXPECT_TRUE(!row || !row->isTooltipShown()) << given.situation << ": stays closed";
    }
}

} // namespace noctra
