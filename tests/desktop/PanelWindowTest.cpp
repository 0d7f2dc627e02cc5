// The panel's window: it comes and goes, and the program goes on.

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/PanelFixture.h"

namespace noctra::desktop {

namespace {

struct PanelWindow : PanelFixture {
    void close() {
        windows().askToClose(panelTitle);
        ASSERT_TRUE(panelGoes());
    }
};

TEST_F(PanelWindow, ClosesWithoutTheFilterAndComesBackWithTheSameValues) {
    const std::unique_ptr<Program> program = startWithPanel();
    click(controls::evening);
    const double warmth = 1 - 2700.0 / 6500.0;
    ASSERT_TRUE(becomesDimmed(warmth, 0.85));
    close();
    EXPECT_TRUE(isDimmed(warmth, 0.85));
    command(*program, "noctra://off");
    EXPECT_TRUE(isUntouched());
    showPanel();
    EXPECT_TRUE(reads(controls::warmth, "2,700K"));
    EXPECT_TRUE(reads(controls::brightness, "85%"));
    EXPECT_FALSE(control(controls::power).is(AccessibleState::checked));
    hands().type({"Escape"});
    EXPECT_TRUE(panelGoes());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(PanelWindow, ThatCannotBeDrawnIsSaidAndNothingElseChanges) {
    desktop().copyProgramsWithout("libnoctra-panel.so");
    const std::unique_ptr<Program> program = startDimmed();
    command(*program, "noctra://show");
    EXPECT_THAT(program->messages(), testing::Contains(testing::AllOf(
                                         testing::StartsWith("ERROR: The panel cannot be shown: "),
                                         testing::HasSubstr("libnoctra-panel.so"))));
    EXPECT_FALSE(windows().shows(panelTitle));
    EXPECT_TRUE(isDimmed());
    command(*program, "noctra://off");
    EXPECT_TRUE(isUntouched());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
