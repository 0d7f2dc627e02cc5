// The panel as assistive technology is told of it, and worked by it.

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/PanelFixture.h"

namespace noctra::desktop {

namespace {

struct Expected {
    const char* name;
    AccessibleRole role;
    const char* description = "";
    bool checked = false;
};

struct PanelAccessibility : PanelFixture {
    void expectControls(const std::vector<Expected>& all) const {
        for (const Expected& expected : all) {
            const Accessible found = control(expected.name);
            EXPECT_EQ(found.role(), expected.role) << expected.name;
            EXPECT_EQ(found.description(), expected.description) << expected.name;
            EXPECT_EQ(found.is(AccessibleState::checked), expected.checked) << expected.name;
            EXPECT_TRUE(found.is(AccessibleState::focusable)) << expected.name;
            EXPECT_TRUE(found.is(AccessibleState::showing)) << expected.name;
        }
    }
    void expectRange(const char* name, double minimum, double value) const {
        const Accessible fader = control(name);
        EXPECT_EQ(fader.minimum(), minimum) << name;
        EXPECT_EQ(fader.maximum(), 1.0) << name;
        EXPECT_EQ(fader.value(), value) << name;
    }
};

TEST_F(PanelAccessibility, EveryControlSaysWhatItIsAndHowItStands) {
    desktop().presetFilter(1 - 4000.0 / 6500.0, 0.75, true);
    const std::unique_ptr<Program> program = startWithPanel();
    using enum AccessibleRole;
    expectControls({{controls::gear, button},
                    {controls::warmth, slider, "4,000K"},
                    {controls::brightness, slider, "75%"},
                    {controls::day, button, "", true},
                    {controls::evening, button},
                    {controls::night, button},
                    {controls::power, checkBox}});
    expectRange(controls::brightness, 0, 0.75);
    EXPECT_FALSE(control(controls::pwmSafe).is(AccessibleState::showing)) << "no display has it";
    openSettings();
    EXPECT_EQ(control(controls::sheet).role(), dialog);
    expectControls({{controls::close, button},
                    {controls::launchAtLogin, checkBox},
                    {controls::allowExtremeDim, checkBox, "", true},
                    {controls::copy, button},
                    {controls::stop, button}});
}

TEST_F(PanelAccessibility, WorksTheControls) {
    const std::unique_ptr<Program> program = startWithPanel();
    control(controls::evening).perform("Press");
    EXPECT_TRUE(becomesDimmed(1 - 2700.0 / 6500.0, 0.85));
    control(controls::warmth).setValue(0.25);
    EXPECT_TRUE(becomesDimmed(0.25, 0.85));
    control(controls::brightness).setValue(0.05);
    EXPECT_TRUE(becomesDimmed(0.25, 0.1)) << "not below the fader's end";
    control(controls::power).perform("Toggle");
    EXPECT_TRUE(becomesUntouched());

    control(controls::gear).perform("Press");
    control(controls::allowExtremeDim).perform("Toggle");
    control(controls::close).perform("Press");
    EXPECT_TRUE(
        becomes(controls::brightness, [](const Accessible& one) { return one.minimum() == 0; }));
    control(controls::gear).perform("Press");
    control(controls::stop).perform("Press");
    EXPECT_EQ(program->waitForEnding(), exited(0));
}

} // namespace

} // namespace noctra::desktop
