// The panel's row for PWM-safe mode, on a backlight that stands in for the kernel's.

#include <csignal>
#include <gtest/gtest.h>

#include "tests/desktop/support/FakeBacklight.h"
#include "tests/desktop/support/MountNamespace.h"
#include "tests/desktop/support/PanelFixture.h"

namespace noctra::desktop {

namespace {

constexpr int severeLevel = 400; // of 1000
constexpr const char* severeText = "DISPLAY BRIGHTNESS LOW —\nNOCTRA CANNOT REDUCE PWM HERE";
constexpr std::uint32_t yellow = 0xFFD60A;

struct PanelStatusRow : PanelFixture {
    FakeBacklight backlight{severeLevel};
    std::unique_ptr<Program> program;

    void SetUp() override {
        if (!canPutFoldersElsewhere())
            GTEST_SKIP() << "no mount namespace can be made here (root is needed)";
        PanelFixture::SetUp();
        plugs().setBuiltIn(0, true);
    }
    void TearDown() override {
        if (!IsSkipped() && probe().isAlive())
            plugs().setBuiltIn(0, false);
    }

    void startWithRow() {
        program = startDriven(backlight.launcher());
        showPanel();
    }
    /// The program without what could hold the backlight at full power.
    void startWithWarning() {
        desktop().copyProgramsWithout("libnoctra-displayservices.so");
        startWithRow();
    }
    /// The panel above the warning, where nothing but the tooltip is yellow.
    [[nodiscard]] bool tooltipIs(bool shown) const {
        const Box panel = panelExtents();
        const Box warning = control(severeText).extents();
        return pollUntil(patience, [&] {
            const Screenshot above(server().display(),
                                   {panel.x, panel.y, panel.width, warning.y - panel.y});
            return (above.countOf(yellow) > panel.width) == shown;
        });
    }
    [[nodiscard]] ::testing::AssertionResult cursorIs(const std::string& name) const {
        return answers(*program, "panel", "cursor=" + name + " ");
    }
    void hover() const { hands().moveTo(control(severeText).extents().center()); }
    void leave() const { hands().moveTo(panelExtents().at(0.5, 0.01)); } // still on the panel
};

TEST_F(PanelStatusRow, AClickOnTheBarSwitchesTheModeThroughItsStates) {
    startWithRow();
    EXPECT_TRUE(reads(controls::pwmSafe, "OFF"));
    click(controls::pwmSafe);
    EXPECT_TRUE(reads(controls::pwmSafe, "..."));
    EXPECT_TRUE(reads(controls::pwmSafe, "ON"));
    EXPECT_EQ(backlight.value(), 1000);
    EXPECT_TRUE(control(controls::pwmSafe).is(AccessibleState::checked));
    click(controls::pwmSafe);
    EXPECT_TRUE(reads(controls::pwmSafe, "OFF"));
    EXPECT_TRUE(pollUntil(patience, [&] { return backlight.value() == severeLevel; }));

    backlight.stickAt(severeLevel);
    click(controls::pwmSafe);
    EXPECT_TRUE(reads(controls::pwmSafe, "..."));
    EXPECT_TRUE(reads(controls::pwmSafe, "OFF")) << "it does not come to full power";
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(PanelStatusRow, HoveringTheWarningShowsTheTooltipAndTheHand) {
    startWithWarning();
    EXPECT_TRUE(tooltipIs(false));
    EXPECT_TRUE(cursorIs("none"));
    const auto entered = std::chrono::steady_clock::now();
    hover();
    EXPECT_TRUE(cursorIs("hand"));
    EXPECT_TRUE(tooltipIs(true));
    EXPECT_GE(std::chrono::steady_clock::now() - entered, Duration{500});
    leave();
    EXPECT_TRUE(cursorIs("none"));
    EXPECT_TRUE(tooltipIs(false));
}

TEST_F(PanelStatusRow, TheBacklightGoesBackWhereTheXServerDiesUnderTheOpenPanel) {
    startWithRow();
    click(controls::pwmSafe);
    ASSERT_TRUE(reads(controls::pwmSafe, "ON"));
    ASSERT_EQ(backlight.value(), 1000);
    hands().press(control(controls::warmth).extents().center()); // in the middle of a drag
    server().killAtOnce();
    EXPECT_EQ(program->waitForEnding(), exited(1));
    EXPECT_EQ(backlight.value(), severeLevel);
}

} // namespace

} // namespace noctra::desktop
