// The panel's window: it comes and goes, and the program goes on.

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/PanelFixture.h"

namespace noctra::desktop {

namespace {

struct PanelWindow : PanelFixture {
    void openAndSeeItDrawn() {
        const auto look = [this] {
            return Screenshot(server().display(), {480, 0, 320, 540});
        };
        const Screenshot before = look();
        channel().open({"noctra://show"});
        ASSERT_TRUE(pollUntil(patience, [&] { return look() != before; }));
    }
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

TEST_F(PanelWindow, FollowsACommandWhileItIsOpenAndIsNotOpenedTwice) {
    const std::unique_ptr<Program> program = startWithPanel();
    command(*program, "noctra://on");
    EXPECT_TRUE(becomes(controls::power,
                        [](const Accessible& one) { return one.is(AccessibleState::checked); }));
    channel().open({"noctra://show", "noctra://show"});
    close();
    EXPECT_TRUE(isDimmed());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(PanelWindow, OpenedAndClosedManyTimesTakesNoMoreMemory) {
    constexpr int rounds = 30;
    constexpr long tolerance = freedMemoryIsKept ? 32 * 1024 : 3 * 1024;
    desktop().setVariable("ASAN_OPTIONS", "quarantine_size_mb=1"); // where it is built with that
    const std::unique_ptr<Program> program = startProgram();
    long first = 0;
    for (int round = 0; round <= rounds; ++round) {
        openAndSeeItDrawn();
        close();
        if (round == 0)
            first = program->residentKiB();
    }
    RecordProperty("first_KiB", std::to_string(first));
    RecordProperty("last_KiB", std::to_string(program->residentKiB()));
    EXPECT_TRUE(
        pollUntil(Duration{2000}, [&] { return program->residentKiB() <= first + tolerance; }))
        << first << " KiB after the first time, " << program->residentKiB() << " after the last";
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
