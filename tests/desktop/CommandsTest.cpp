// Commands from other programs: over the message bus and from later starts.

#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/BusClient.h"
#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

class Commands : public DesktopFixture {
protected:
    /// What the program logged after its start, up to now.
    static std::vector<std::string> messagesSinceStart(const Program& program) {
        std::vector<std::string> messages = program.messages();
        const auto running = std::ranges::find(messages, std::string(runningLine));
        messages.erase(messages.begin(), running == messages.end() ? running : running + 1);
        // What comes at a time of its own: this desktop has no system bus, and the icon follows.
        std::erase_if(messages, [](const std::string& message) {
            return message.starts_with("ERROR: Wake from sleep cannot be noticed") ||
                   message.starts_with("Menu bar PDF loaded: ");
        });
        return messages;
    }
};

TEST_F(Commands, OfAFloodWithoutWaitingTheLastOneWins) {
    const std::unique_ptr<Program> program = startProgram();
    std::size_t sent = 0;
    for (const char* last : {"noctra://on", "noctra://off", "noctra://on"}) {
        for (const char* url : {"noctra://toggle", "noctra://off", "noctra://on"})
            for (int times = 0; times < 50; ++times, ++sent)
                channel().openWithoutWaiting({url});
        channel().openWithoutWaiting({last});
        ASSERT_TRUE(program->waitForLines(++sent, appliedLine));
        EXPECT_TRUE(std::string(last) == "noctra://on" ? isDimmed() : isUntouched());
    }
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(Commands, BadUrlsOfEveryShapeAreLoggedAndChangeNothing) {
    // What is a bad one is in the tests of the parser; these come through in different ways.
    const std::vector<std::string> bad{
        "",  "noctra://dim",       "http://on",
        " ", "noctra://\xC3\xB6n", "noctra://" + std::string(1 << 20, 'a')};
    const std::unique_ptr<Program> program = startDimmed();
    const std::size_t before = messagesSinceStart(*program).size();
    channel().open(bad);
    for (const std::string& url : bad)
        channel().open({url});
    command(*program, "noctra://on");

    std::vector<std::string> messages = messagesSinceStart(*program);
    messages.erase(messages.begin(), messages.begin() + static_cast<std::ptrdiff_t>(before));
    std::vector<std::string> expected(2 * bad.size(), ignoredLine);
    expected.insert(expected.end(),
                    {"Automation URL received: noctra://on", "Automation command applied: on"});
    EXPECT_EQ(messages, expected);
    EXPECT_TRUE(isDimmed());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(Commands, BytesThatAreNoTextInALaterStartAreIgnored) {
    const std::unique_ptr<Program> program = startDimmed();
    const std::unique_ptr<Program> later =
        desktop().start({"noctra://\xFFon", "noctra://off\xC3", "noctra://\xED\xA0\x80"});
    EXPECT_EQ(later->waitForEnding(), exited(0));
    EXPECT_TRUE(program->waitForLines(3, ignoredLine));
    EXPECT_TRUE(isDimmed());
}

TEST_F(Commands, SeveralUrlsOfALaterStartAreAppliedInTheirOrder) {
    const std::unique_ptr<Program> program = startProgram();
    const std::unique_ptr<Program> later = desktop().start(
        {"noctra://ON", "NOCTRA://off/x?y#z", "noctra:nonsense", "noctra:///toggle"});
    EXPECT_EQ(later->waitForEnding(), exited(0));
    EXPECT_THAT(later->errorLines(), IsEmpty());
    ASSERT_TRUE(program->waitForLine("Automation command applied: toggle"));
    EXPECT_THAT(messagesSinceStart(*program),
                ElementsAre("Automation URL received: noctra://ON",
                            "Automation command applied: on",
                            "Automation URL received: NOCTRA://off/x?y#z",
                            "Automation command applied: off", ignoredLine,
                            "Automation URL received: noctra:///toggle",
                            "Automation command applied: toggle"));
    EXPECT_TRUE(isDimmed());
}

TEST_F(Commands, ASecondStartWithoutUrlShowsTheFirstAndEnds) {
    const std::unique_ptr<Program> program = startProgram();
    const std::unique_ptr<Program> second = desktop().start();
    EXPECT_EQ(second->waitForEnding(), exited(0));
    EXPECT_TRUE(program->waitForLine("Automation command applied: show"));
    channel().activate();
    EXPECT_TRUE(program->waitForLines(2, "Automation command applied: show"));
    EXPECT_TRUE(isUntouched());
}

TEST_F(Commands, WithoutABusASecondStartOnTheSameDisplayIsRefused) {
    desktop().takeBusAway();
    const std::unique_ptr<Program> first = desktop().start({"noctra://on"});
    ASSERT_TRUE(first->waitForLine("Automation command applied: on"));
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{}, std::vector<std::string>{"noctra://off"}}) {
        const std::unique_ptr<Program> second = desktop().start(arguments);
        EXPECT_EQ(second->waitForEnding(), exited(1));
        EXPECT_THAT(second->errorLines(), Not(IsEmpty()));
        EXPECT_TRUE(isDimmed());
    }
    EXPECT_TRUE(endsCleanly(*first, SIGTERM));
}

TEST_F(Commands, OnANewBusWhereAnotherHasTheNameComeBackOnceItIsGivenUp) {
    const std::unique_ptr<Program> program = startDimmed();
    std::unique_ptr<BusClient> other;
    const auto takesName = [&] {
        desktop().bus().restart();
        other = std::make_unique<BusClient>(desktop().busAddress());
        const QVariantList answer =
            other->call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                        "RequestName", {"org.noctra.Noctra", 0U});
        return answer.value(0).toUInt() == 1; // the program has not been faster
    };
    ASSERT_TRUE(pollUntil(patience, takesName));
    ASSERT_TRUE(program->waitForLine("another program has the name org.noctra.Noctra"));
    const std::size_t lost = program->countLines(busLostLine);
    EXPECT_TRUE(isDimmed());

    const std::size_t backBefore = program->countLines(busBackLine);
    other.reset();
    ASSERT_TRUE(program->waitForLines(backBefore + 1, busBackLine));
    command(*program, "noctra://off");
    EXPECT_TRUE(isUntouched());
    EXPECT_EQ(program->countLines(busLostLine), lost);
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

} // namespace

} // namespace noctra::desktop
