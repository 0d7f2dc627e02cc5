// Outputs that come and go while the filter is on carry no tint afterwards.

#include <csignal>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

class Plugging : public DesktopFixture {};

TEST_F(Plugging, AnOutputUnpluggedForGoodCarriesNoTintAfterOffAndEnd) {
    const std::unique_ptr<Program> program = startDimmed();
    plugs().unplug(1);
    command(*program, "noctra://off");
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    plugs().plug(1);
    EXPECT_TRUE(isUntouched());
}

TEST_F(Plugging, AnOutputThatIsDarkWhenASignalEndsTheProgramComesBackUntinted) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        plugs().plugOnly(displayCount);
        const std::unique_ptr<Program> program = startDimmed();
        plugs().unplug(2);
        EXPECT_TRUE(endsCleanly(*program, signal)) << "signal " << signal;
        plugs().plug(2);
        EXPECT_TRUE(isUntouched()) << "signal " << signal;
    }
}

TEST_F(Plugging, AnOutputPluggedAgainCarriesNoTintAfterOffAndEnd) {
    const std::unique_ptr<Program> program = startDimmed();
    plugs().unplug(1);
    plugs().plug(1);
    command(*program, "noctra://on");
    EXPECT_TRUE(isDimmed());
    command(*program, "noctra://off");
    EXPECT_TRUE(isUntouched());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(Plugging, ANewOutputIsDimmedWithTheOthersAndRestored) {
    const std::unique_ptr<Program> program = startDimmed();
    plugs().plug(3);
    command(*program, "noctra://on");
    EXPECT_TRUE(isDimmed());
    EXPECT_EQ(probe().readLit().size(), 4U);
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(Plugging, ADisplayThatComesOrComesBackIsDimmedWithoutACommand) {
    const std::unique_ptr<Program> program = startDimmed();
    plugs().plug(3);
    EXPECT_TRUE(program->waitForLine("Display settle pass reapply"));
    EXPECT_TRUE(isDimmed());
    EXPECT_EQ(probe().readLit().size(), 4U);
    plugs().unplug(1);
    plugs().plug(1);
    EXPECT_TRUE(program->waitForLines(2, "Display settle pass reapply"));
    EXPECT_TRUE(isDimmed());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(Plugging, OutputsThatComeAndGoWhileCommandsPourInCarryNoTint) {
    const std::unique_ptr<Program> program = startProgram();
    for (int round = 0; round < 60; ++round) {
        channel().openWithoutWaiting({"noctra://toggle"});
        const int output = round % (displayCount + 1);
        round % 2 == 0 ? plugs().unplug(output) : plugs().plug(output);
        channel().openWithoutWaiting({"noctra://on"});
    }
    ASSERT_TRUE(program->waitForLines(120, appliedLine));
    command(*program, "noctra://off");
    plugs().plugOnly(displayCount + 1);
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(Plugging, ADisplayThatFlapsWhileTheFilterIsChangedIsNeverTakenForTinted) {
    for (int round = 0; round < 10; ++round) {
        const std::unique_ptr<Program> program = startDimmed();
        for (int flap = 0; flap < 5; ++flap) {
            plugs().unplug(1);
            plugs().plug(1);
            channel().openWithoutWaiting({"noctra://on", "noctra://on"});
        }
        ASSERT_TRUE(program->waitForLines(11, appliedLine));
        ASSERT_TRUE(endsCleanly(*program, SIGTERM)) << "round " << round;
    }
}

} // namespace

} // namespace noctra::desktop
