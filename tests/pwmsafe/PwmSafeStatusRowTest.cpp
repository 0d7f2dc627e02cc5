#include "pwmsafe/PwmSafeStatusRow.h"

#include <optional>
#include <vector>

#include "tests/pwmsafe/PanelControllersFixture.h"

namespace noctra {

namespace {

struct PwmSafeRow : PanelControllers {
    std::optional<PwmSafeStatusRow> row;

    void showWarning() {
        setControllable(false);
        setBacklight(0.6F);
        row.emplace(engine, manager, desktop.mainQueue, desktop.cursor, [] {});
    }
};

} // namespace

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
    const Step enter{Step::text, 0};
    const Step leave{Step::leaveText, 0.6};
    const Step reachTip{Step::tip, 0.1};
    for (const Case& given : std::vector<Case>{
             {"not yet", {enter}, 0.49, false},
             {"rested", {enter}, 0.51, true},
             {"left before it opened", {enter, {Step::leaveText, 0.4}}, 2, false},
             {"came back: the first entry counts",
              {enter, {Step::leaveText, 0.3}, enter},
              0.21,
              true},
             {"still closing", {enter, leave}, 0.19, true},
             {"closed", {enter, leave}, 0.21, false},
             {"moved onto the tooltip", {enter, leave, reachTip}, 2, true},
             {"left the tooltip", {enter, leave, reachTip, {Step::leaveTip, 1}}, 0.21, false}}) {
        showWarning();
        for (const Step& step : given.steps) {
            desktop.advance(Seconds(step.after));
            if (step.what == Step::text || step.what == Step::leaveText)
                row->hoverWarning(step.what == Step::text);
            else
                row->hoverTooltip(step.what == Step::tip);
        }
        desktop.advance(Seconds(given.wait));
        EXPECT_EQ(row->isTooltipShown(), given.visible) << given.situation;
        row.reset();
        EXPECT_EQ(desktop.cursor.depth, 0) << given.situation;
    }
}

TEST_F(PwmSafeRow, EverythingThatTakesTheWarningAwayEndsTheHovering) {
    for (const bool becomesControllable : {false, true}) {
        showWarning();
        row->hoverWarning(true);
        row->hoverWarning(true);
        desktop.advance(Seconds(0.6));
        ASSERT_TRUE(row->isTooltipShown());
        ASSERT_EQ(desktop.cursor.depth, 1);
        becomesControllable ? setControllable(true) : setBacklight(1.0F);
        EXPECT_EQ(desktop.cursor.depth, 0);
        setBacklight(0.6F);
        setControllable(false);
        EXPECT_FALSE(row->isTooltipShown()) << "stays closed";
    }
}

} // namespace noctra
