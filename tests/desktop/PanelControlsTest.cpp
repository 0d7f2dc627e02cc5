// The main panel worked with the mouse: what the displays carry, and what the controls then say.

#include <csignal>
#include <gtest/gtest.h>

#include "tests/desktop/support/PanelFixture.h"

namespace noctra::desktop {

namespace {

struct PanelControls : PanelFixture {
    [[nodiscard]] bool isChecked(const std::string& name, bool checked = true) const {
        return becomes(name, [checked](const Accessible& one) {
            return one.is(AccessibleState::checked) == checked;
        });
    }
};

TEST_F(PanelControls, FadersAndThePowerSwitchReachTheDisplays) {
    const std::unique_ptr<Program> program = startWithPanel();
    EXPECT_TRUE(isUntouched()) << "by showing the panel";
    click(controls::power);
    EXPECT_TRUE(becomesDimmed());
    EXPECT_TRUE(isChecked(controls::power));

    dragUp(controls::warmth);
    EXPECT_TRUE(becomesDimmed(1, presetBrightness));
    EXPECT_TRUE(reads(controls::warmth, "0K"));
    dragDown(controls::brightness);
    EXPECT_TRUE(becomesDimmed(1, 0.1));
    EXPECT_TRUE(reads(controls::brightness, "10%"));
    dragDown(controls::warmth);
    EXPECT_TRUE(becomesDimmed(0, 0.1));
    EXPECT_TRUE(reads(controls::warmth, "6,500K"));

    click(controls::power);
    EXPECT_TRUE(becomesUntouched());
    EXPECT_TRUE(isChecked(controls::power, false));
    dragUp(controls::brightness);
    EXPECT_TRUE(reads(controls::brightness, "100%")) << "while the filter is off";
    EXPECT_TRUE(isUntouched());
    dragDown(controls::brightness);
    EXPECT_TRUE(reads(controls::brightness, "10%"));
    click(controls::power);
    EXPECT_TRUE(becomesDimmed(0, 0.1));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
