// The main panel worked with the mouse: what the displays carry, and what the controls then say.

#include <cmath>
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

TEST_F(PanelControls, PresetsSwitchTheFilterOnAndTheChosenOneShows) {
    struct Preset {
        const char* name;
        double warmth;
        double brightness;
        const char* kelvin;
        const char* percent;
    };
    const std::unique_ptr<Program> program = startWithPanel();
    for (const Preset& preset :
         {Preset{controls::day, 1 - 4000.0 / 6500.0, 1, "4,000K", "100%"},
          Preset{controls::evening, 1 - 2700.0 / 6500.0, 0.85, "2,700K", "85%"},
          Preset{controls::night, 1, 0.7, "0K", "70%"}}) {
        click(preset.name);
        EXPECT_TRUE(becomesDimmed(preset.warmth, preset.brightness)) << preset.name;
        EXPECT_TRUE(reads(controls::warmth, preset.kelvin));
        EXPECT_TRUE(reads(controls::brightness, preset.percent));
        EXPECT_TRUE(isChecked(controls::power));
        for (const char* other : {controls::day, controls::evening, controls::night})
            EXPECT_TRUE(isChecked(other, other == preset.name))
                << other << " after " << preset.name;
    }
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(PanelControls, NoPresetShowsWhileTheWarmthIsHeld) {
    const std::unique_ptr<Program> program = startWithPanel();
    click(controls::evening);
    EXPECT_TRUE(isChecked(controls::evening));
    hands().press(control(controls::warmth).extents().center());
    EXPECT_TRUE(isChecked(controls::evening, false));
    hands().release();
    EXPECT_TRUE(isChecked(controls::evening));
}

TEST_F(PanelControls, AFaderMoves2PercentWithEachNotchOfTheWheel) {
    const std::unique_ptr<Program> program = startWithPanel();
    const Accessible fader = control(controls::warmth);
    click(controls::power);
    const Point place = fader.extents().center();
    for (const auto& [notches, warmth] : {std::pair(3, 0.56), {-5, 0.46}, {40, 1.0}}) {
        hands().wheel(place, notches);
        EXPECT_TRUE(becomesDimmed(warmth, presetBrightness)) << notches;
        EXPECT_TRUE(pollUntil(patience, [&, wanted = warmth] {
            return std::abs(fader.value() - wanted) < 1e-9;
        })) << fader.value();
    }
}

} // namespace

} // namespace noctra::desktop
