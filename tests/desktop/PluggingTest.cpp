// Outputs that come and go while the filter is on carry no tint afterwards.

#include <csignal>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

class Plugging : public DesktopFixture {};

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

} // namespace

} // namespace noctra::desktop
