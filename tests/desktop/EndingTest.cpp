// Every way out puts the displays back.

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

using ::testing::Contains;
using ::testing::IsEmpty;
using ::testing::Not;

/// The program must be gone 2 s after a signal, whatever the X server does; the rest is for a test
/// machine that is busy with something else.
constexpr Duration longestEnd{2000 + 300};

struct WayOut {
    const char* name;
    int signal;
    const char* message;
};

void PrintTo(const WayOut& way, std::ostream* stream) {
    *stream << way.name;
}

class EndingBySignal : public DesktopFixture, public ::testing::WithParamInterface<WayOut> {};

TEST_P(EndingBySignal, RestoresEveryDisplay) {
    const std::unique_ptr<Program> program = startDimmed();
    EXPECT_TRUE(endsCleanly(*program, GetParam().signal));
    EXPECT_THAT(program->messages(), Contains(GetParam().message));
    EXPECT_THAT(program->errorLines(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Ending, EndingBySignal,
    ::testing::Values(WayOut{"CtrlC", SIGINT, "SIGINT received - restoring gamma"},
                      WayOut{"Kill", SIGTERM, "SIGTERM received - restoring gamma"},
                      WayOut{"TerminalCloses", SIGHUP, "App terminating - restoring gamma"}),
    [](const auto& info) { return std::string(info.param.name); });

class Leaving : public DesktopFixture {};

TEST_F(Leaving, IsNotDisturbedByASignalInTheMiddleOfTheRestore) {
    const std::unique_ptr<Program> program = startDimmed();
    server().pause();
    program->signal(SIGTERM);
    EXPECT_TRUE(program->waitForLine("SIGTERM received - restoring gamma"));
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        program->signal(signal);
    server().resume();
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(Leaving, IsNotOvertakenByACommandThatWaitsForTheRestoreToEnd) {
    int overtaking = 0;
    for (int round = 0; round < 20; ++round) {
        const std::unique_ptr<Program> program = startDimmed();
        const std::size_t received = program->countLines("Automation URL received");
        server().pause();
        program->signal(SIGTERM);
        EXPECT_TRUE(program->waitForLine("SIGTERM received - restoring gamma"));
        channel().openWithoutWaiting({"noctra://on", "noctra://on", "noctra://on"});
        // Now and then the main thread waits for the server itself; the way out waits 1.6 s for it.
        overtaking += pollUntil(std::chrono::milliseconds(800), [&] {
            return program->countLines("Automation URL received") > received;
        });
        server().resume();
        ASSERT_EQ(program->waitForEnding(), exited(0));
        ASSERT_TRUE(isUntouched()) << "round " << round;
    }
    EXPECT_GT(overtaking, 0);
}

class LeavingAHungServer : public EndingBySignal {
protected:
    /// Waits for the end while the server hangs, then lets the server go on.
    std::optional<Ending> endingWhileHung(Program& program) {
        program.signal(GetParam().signal);
        const std::optional<Ending> ending = program.waitForEnding(longestEnd);
        server().resume();
        return ending;
    }

    /// What the server did with the last words of a client that had gone is its own affair; the
    /// next start knows the tables either way.
    void expectNextStartClearsUp() {
        const std::unique_ptr<Program> next = startProgram();
        EXPECT_TRUE(isUntouched());
        EXPECT_TRUE(endsCleanly(*next, SIGTERM));
    }
};

TEST_P(LeavingAHungServer, IsOverInTimeInTheMiddleOfAChange) {
    const std::unique_ptr<Program> program = startDimmed();
    server().pause();
    const std::size_t received = program->countLines("Automation URL received");
    channel().openWithoutWaiting({"noctra://off", "noctra://on", "noctra://off"});
    EXPECT_TRUE(program->waitForLines(received + 1, "Automation URL received"));
    EXPECT_EQ(endingWhileHung(*program), exited(0));
    expectNextStartClearsUp();
}

INSTANTIATE_TEST_SUITE_P(Ending, LeavingAHungServer,
                         ::testing::Values(WayOut{"OnCtrlC", SIGINT, ""},
                                           WayOut{"OnKill", SIGTERM, ""},
                                           WayOut{"OnHangUp", SIGHUP, ""}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(Leaving, AfterTheXServerDiedIsOrderly) {
    const std::unique_ptr<Program> program = startDimmed();
    server().killAtOnce();
    EXPECT_EQ(program->waitForEnding(), exited(1));
    EXPECT_THAT(program->errorLines(), Not(IsEmpty()));
}

TEST_F(Leaving, AfterTheSessionBusWentAwayRestoresEveryDisplay) {
    const std::unique_ptr<Program> program = startDimmed();
    desktop().takeBusAway();
    EXPECT_TRUE(program->waitForLine("session bus went away"));
    EXPECT_TRUE(isDimmed());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(Leaving, WhenNobodyReadsTheLogRestoresEveryDisplay) {
    const std::unique_ptr<Program> program =
        desktop().start({"noctra://on"}, Program::Output::neverRead);
    ASSERT_TRUE(becomesDimmed());
    program->fillOutput();
    channel().open({"noctra://off", "noctra://dim", "noctra://on"});
    EXPECT_TRUE(becomesDimmed());
    program->signal(SIGTERM);
    EXPECT_EQ(program->waitForEnding(longestEnd), exited(0));
    EXPECT_TRUE(isUntouched());
}

TEST_F(Leaving, WhenTheTerminalIsStuckRestoresEveryDisplay) {
    const std::unique_ptr<Program> program =
        desktop().start({"noctra://on"}, Program::Output::stuckTerminal);
    ASSERT_TRUE(becomesDimmed());
    for (int i = 0; i < 50; ++i) // far more lines than a terminal's buffer holds
        channel().open(std::vector<std::string>(40, "noctra://on"));
    program->signal(SIGTERM);
    EXPECT_EQ(program->waitForEnding(longestEnd), exited(0));
    EXPECT_TRUE(isUntouched());
}

TEST_F(Leaving, WhenTheLogsReaderHasGoneRestoresEveryDisplay) {
    const std::unique_ptr<Program> program =
        desktop().start({"noctra://on"}, Program::Output::readerGone);
    ASSERT_TRUE(becomesDimmed());
    channel().open({"noctra://off", "noctra://on"});
    EXPECT_TRUE(becomesDimmed());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
