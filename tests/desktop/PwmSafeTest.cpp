// The built-in panel's backlight, as the program reads it and holds it at full power in PWM-safe
// mode: the whole program and its own library on a backlight that stands in for the kernel's.

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"
#include "tests/desktop/support/FakeBacklight.h"
#include "tests/desktop/support/MockLogind.h"
#include "tests/desktop/support/MountNamespace.h"

namespace noctra::desktop {

namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::Not;

constexpr int priorLevel = 400; // of 1000

struct PwmSafe : DesktopFixture {
    FakeBacklight backlight{priorLevel};

    void SetUp() override {
        if (!canPutFoldersElsewhere())
            GTEST_SKIP() << "no mount namespace can be made here (root is needed)";
        DesktopFixture::SetUp();
        plugs().setBuiltIn(0, true);
    }
    void TearDown() override {
        if (!IsSkipped() && probe().isAlive())
            plugs().setBuiltIn(0, false);
    }

    [[nodiscard]] std::unique_ptr<Program> startDriven() {
        return DesktopFixture::startDriven(backlight.launcher());
    }
    /// Starts the program and waits until the mode is on and has been checked.
    [[nodiscard]] std::unique_ptr<Program> startLocked() {
        std::unique_ptr<Program> program = startDriven();
        program->type("pwm on");
        EXPECT_TRUE(answers(*program, "state", "pwm=Locked"));
        EXPECT_EQ(backlight.value(), 1000);
        return program;
    }
    [[nodiscard]] bool reaches(int value) const {
        return pollUntil(patience, [&] { return backlight.value() == value; });
    }
};

TEST_F(PwmSafe, ReadsTheBacklightAndWarnsInThreeSteps) {
    const std::unique_ptr<Program> program = startDriven();
    for (const auto& [value, expected] : {std::pair(1000, "flicker none"),
                                          {850, "flicker mild"},
                                          {799, "flicker severe"},
                                          {800, "flicker mild"}}) {
        backlight.set(value);
        EXPECT_TRUE(answers(*program, "flicker", expected)) << value;
    }
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    EXPECT_EQ(backlight.value(), 800) << "never touched";
}

TEST_F(PwmSafe, GoesThroughItsStatesAndPutsTheBacklightBack) {
    const std::unique_ptr<Program> program = startDriven();
    EXPECT_TRUE(answers(*program, "state", "pwm=Off controllable=1 flicker=severe hardware=0.4"));
    program->type("pwm on");
    program->type("state");
    EXPECT_TRUE(program->waitForLine("PWM-Safe enabled - locked 1 display(s) at 100%"));
    EXPECT_TRUE(program->waitForLine("state pwm=Locking"));
    EXPECT_TRUE(answers(*program, "state", "pwm=Locked controllable=1 flicker=none hardware=1.0"));

    backlight.set(500);
    EXPECT_TRUE(program->waitForLine("PWM-Safe re-assert: drift detected on display "));
    EXPECT_TRUE(program->waitForLine(" (0.5)"));
    EXPECT_TRUE(reaches(1000));
    EXPECT_TRUE(answers(*program, "state", "pwm=Locked"));

    program->type("pwm off");
    EXPECT_TRUE(program->waitForLine("PWM-Safe disabled - restored 1 display(s)"));
    EXPECT_TRUE(reaches(priorLevel));
    EXPECT_TRUE(answers(*program, "state", "pwm=Off"));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    EXPECT_EQ(backlight.value(), priorLevel);
}

TEST_F(PwmSafe, PutsTheBacklightAndTheTablesBackOnEveryWayOut) {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, 0}) {
        const std::unique_ptr<Program> program = startLocked();
        command(*program, "noctra://on");
        if (signal == 0)
            program->type("quit");
        else
            program->signal(signal);
        EXPECT_EQ(program->waitForEnding(), exited(0)) << signal;
        EXPECT_EQ(backlight.value(), priorLevel) << signal;
        EXPECT_TRUE(isUntouched()) << signal;
        EXPECT_THAT(program->messages(),
                    Contains("PWM-Safe restoreOnExit - restored 1 display(s)"));
    }
}

TEST_F(PwmSafe, PutsTheBacklightBackWhereTheXServerHangsOrDies) {
    for (const std::string what :
         {"hangs at a signal", "hangs at a quit", "dies", "dies, and Qt crashes"}) {
        SetUp();
        const std::unique_ptr<Program> program = startLocked();
        const bool dies = what.starts_with("dies");
        const bool crashes = dies && what != "dies";
        if (crashes)
            program->signal(SIGSTOP);
        dies ? server().killAtOnce() : server().pause();
        if (what == "hangs at a signal")
            program->signal(SIGTERM);
        else if (!dies)
            program->type("quit");
        if (crashes) {
            program->signal(SIGSEGV);
            program->signal(SIGCONT);
        }
        EXPECT_EQ(program->waitForEnding(), exited(dies ? 1 : 0)) << what;
        EXPECT_EQ(backlight.value(), priorLevel) << what;
        if (!dies)
            server().resume();
    }
}

TEST_F(PwmSafe, RevertsByItselfWhereTheBacklightStaysDark) {
    backlight.stickAt(priorLevel);
    const std::unique_ptr<Program> program = startDriven();
    program->type("pwm on");
    EXPECT_TRUE(program->waitForLine("PWM-Safe verification FAILED — auto-reverting toggle"));
    EXPECT_TRUE(answers(*program, "state", "pwm=Off"));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    EXPECT_EQ(backlight.value(), priorLevel);
    EXPECT_THAT(readFile(desktop().preferencesFile()), HasSubstr("pwmSafeMode=false"));
}

TEST_F(PwmSafe, KeepsTheFirstLevelThroughQuickSwitching) {
    const std::unique_ptr<Program> program = startLocked();
    for (const char* request : {"pwm off", "pwm on", "pwm off", "pwm on"})
        program->type(request);
    EXPECT_TRUE(answers(*program, "state", "pwm=Locked"));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    EXPECT_EQ(backlight.value(), priorLevel);
}

TEST_F(PwmSafe, ComesBackWithTheNextStart) {
    EXPECT_TRUE(endsCleanly(*startLocked(), SIGTERM));
    const std::unique_ptr<Program> next = startDriven();
    EXPECT_EQ(backlight.value(), priorLevel) << "not before the panel is opened";
    EXPECT_TRUE(answers(*next, "state", "pwm=Locked"));
    EXPECT_EQ(backlight.value(), 1000);
    EXPECT_TRUE(endsCleanly(*next, SIGINT));
    EXPECT_EQ(backlight.value(), priorLevel);
}

TEST_F(PwmSafe, AsksLogindToWriteAndHearsOfWaking) {
    SystemBus bus;
    bus.start();
    const MockLogind logind(bus);
    desktop().setVariable("DBUS_SYSTEM_BUS_ADDRESS", bus.address());
    const std::unique_ptr<Program> program = startDriven();
    ASSERT_TRUE(pollUntil(patience, [&] { return bus.hasSleepListener(); }));
    logind.prepareForSleep(true);
    logind.prepareForSleep(false);
    EXPECT_TRUE(program->waitForLine("System woke from sleep"));
    program->type("pwm on");
    ASSERT_TRUE(pollUntil(patience, [&] {
        return !logind.brightnessCalls().empty() && logind.brightnessCalls().back().value == 1000;
    }));
    for (const auto& call : logind.brightnessCalls()) {
        EXPECT_EQ(call.subsystem, "backlight");
        EXPECT_EQ(call.name, "test_backlight");
    }
    EXPECT_EQ(program->countLines("Refreshing displays"), 0U) << "the filter is off";
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    EXPECT_EQ(logind.brightnessCalls().back().value, static_cast<unsigned>(priorLevel));
}

TEST_F(PwmSafe, IsNotEvenLoadedWhileNobodyHasUsedIt) {
    const std::unique_ptr<Program> program = startDriven();
    backlight.set(850);
    ASSERT_TRUE(answers(*program, "flicker", "flicker mild")); // after a poll
    const std::string maps = readFile("/proc/" + std::to_string(program->id()) + "/maps");
    EXPECT_THAT(maps, AllOf(HasSubstr("noctra_driven"), Not(HasSubstr("displayservices")),
                            Not(HasSubstr("ddcutil"))));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
