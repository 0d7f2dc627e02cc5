// A program that is killed cannot put the displays back; the next one does.

#include <csignal>
#include <filesystem>
#include <gtest/gtest.h>
#include <random>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

class KilledProgram : public DesktopFixture {
protected:
    void startDimmedAndKill() {
        const std::unique_ptr<Program> program = startDimmed();
        program->killAtOnce();
        ASSERT_TRUE(isDimmed()) << "a killed program leaves its tint behind";
    }
};

TEST_F(KilledProgram, IsClearedUpAfterByTheNextStart) {
    startDimmedAndKill();
    const std::unique_ptr<Program> next = startProgram();
    EXPECT_TRUE(isUntouched());
    EXPECT_TRUE(endsCleanly(*next, SIGTERM));
}

TEST_F(KilledProgram, KilledWhileItStartsLeavesNoTint) {
    startDimmedAndKill();
    for (const char* moment : {"initialized", "init starting", "Captured gamma", "Init complete"}) {
        const std::unique_ptr<Program> program = desktop().start({"noctra://on"});
        ASSERT_TRUE(program->waitForLine(moment)) << moment;
        program->killAtOnce();
    }
    const std::unique_ptr<Program> next = startProgram();
    EXPECT_TRUE(endsCleanly(*next, SIGTERM));
}

TEST_F(KilledProgram, KilledAtAnyMomentOfManyChangesLeavesNoTint) {
    constexpr int rounds = 12;
    std::minstd_rand moments(20231); // the same moments in every run, as far as a clock allows
    for (int round = 0; round < rounds; ++round) {
        const std::unique_ptr<Program> program = startProgram();
        for (int sent = 0; sent < 200; ++sent)
            channel().openWithoutWaiting({"noctra://toggle"});
        ASSERT_TRUE(program->waitForLines(1 + moments() % 100, appliedLine));
        program->killAtOnce();

        const std::unique_ptr<Program> next = startProgram();
        ASSERT_TRUE(isUntouched()) << "round " << round;
        ASSERT_TRUE(endsCleanly(*next, SIGTERM)) << "round " << round;
    }
}

TEST_F(KilledProgram, IsClearedUpAfterAlsoWhereTheRuntimeFolderCannotBeUsed) {
    desktop().setVariable("XDG_RUNTIME_DIR", "/nonexistent/run");
    startDimmedAndKill();
    const std::unique_ptr<Program> next = startDimmed();
    EXPECT_TRUE(next->waitForLine("/nonexistent/run")) << "and says so";
    EXPECT_TRUE(endsCleanly(*next, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
