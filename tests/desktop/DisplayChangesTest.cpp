// What the program makes of displays that come, go and change, as its log and the tables show it.

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

using ::testing::Contains;
using ::testing::ContainsRegex;

constexpr const char* refreshLine = "Refreshing displays (";
constexpr const char* settleLine = "Display settle pass reapply";

struct DisplayChanges : DesktopFixture {
    /// Runs xrandr to its end.
    void xrandr(const std::vector<std::string>& arguments) {
        std::vector<std::string> command{"/usr/bin/xrandr"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        ASSERT_EQ(desktop().startOther(command)->waitForEnding(), exited(0));
    }
    /// Waits for the end of what one burst of changes leads to, and checks that it was one refresh
    /// and one settle pass more than `before`.
    void expectOneRefresh(const Program& program, std::size_t before) {
        EXPECT_TRUE(program.waitForLines(before + 1, settleLine));
        EXPECT_EQ(program.countLines(refreshLine), before + 1);
        EXPECT_EQ(program.countLines(settleLine), before + 1);
        EXPECT_TRUE(isDimmed());
    }
};

TEST_F(DisplayChanges, AreToldDisplayByDisplayAndAnsweredWithOneRefreshEach) {
    const std::unique_ptr<Program> program = startDimmed();
    plugs().unplug(2);
    expectOneRefresh(*program, 0);
    plugs().plug(2);
    expectOneRefresh(*program, 1);
    xrandr({"--addmode", "DUMMY1", "1280x720"});
    expectOneRefresh(*program, 2);
    xrandr({"--output", "DUMMY1", "--mode", "1280x720"});
    expectOneRefresh(*program, 3);
    xrandr({"--output", "DUMMY1", "--pos", "100x500"});
    expectOneRefresh(*program, 4);
    EXPECT_EQ(probe().readLit().size(), 3U);

    const std::vector<std::string> messages = program->messages();
    EXPECT_THAT(messages, Contains(ContainsRegex("^Display [0-9]+ configuration begin$")));
    EXPECT_THAT(messages, Contains(ContainsRegex("^Display [0-9]+ disconnected - cleaning up$")));
    EXPECT_THAT(messages, Contains(ContainsRegex("^Display [0-9]+ connected$")));
    EXPECT_THAT(messages, Contains(ContainsRegex("callback flags=32\\)$")));
    EXPECT_THAT(messages, Contains(ContainsRegex("callback flags=16\\)$")));
    // A server may let the change be seen as off and on again.
    EXPECT_THAT(messages, Contains(ContainsRegex("(flags: (8|10|2)\\)|connected)$")));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(DisplayChanges, TenTimesInABurstAreAnsweredOnce) {
    const std::unique_ptr<Program> program = startDimmed();
    const auto began = std::chrono::steady_clock::now();
    for (int change = 0; change < 10; ++change)
        change % 2 == 0 ? plugs().unplug(1) : plugs().plug(1);
    plugs().unplug(0);
    ASSERT_LT(std::chrono::steady_clock::now() - began, Duration(400)) << "no burst";
    expectOneRefresh(*program, 0);
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
