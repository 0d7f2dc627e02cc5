// What the program does after the machine has slept, as logind tells it.

#include <csignal>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"
#include "tests/desktop/support/MockLogind.h"

namespace noctra::desktop {

namespace {

constexpr const char* wokeLine = "System woke from sleep";
constexpr const char* refreshLine = "Refreshing displays (wake from sleep)";

struct Wake : DesktopFixture {
    SystemBus bus;
    std::unique_ptr<MockLogind> logind;

    void SetUp() override {
        DesktopFixture::SetUp();
        bus.start();
        logind = std::make_unique<MockLogind>(bus);
        desktop().setVariable("DBUS_SYSTEM_BUS_ADDRESS", bus.address());
    }
    void wake() {
        ASSERT_TRUE(pollUntil(patience, [&] { return bus.hasSleepListener(); }));
        logind->prepareForSleep(true);
        logind->prepareForSleep(false);
    }
};

TEST_F(Wake, PutsTheFilterOnAgainWhereTheDriverHasTakenItOff) {
    const std::unique_ptr<Program> program = startDimmed();
    probe().write(tablesBefore());
    wake();
    EXPECT_TRUE(program->waitForLine(refreshLine));
    EXPECT_TRUE(program->waitForLine("Display settle pass reapply"));
    EXPECT_TRUE(isDimmed());
    EXPECT_EQ(program->countLines(wokeLine), 1U);

    command(*program, "noctra://off");
    wake();
    EXPECT_TRUE(program->waitForLines(2, wokeLine));
    command(*program, "noctra://off");
    EXPECT_EQ(program->countLines(refreshLine), 1U);
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
