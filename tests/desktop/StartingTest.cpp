// The command line, the first lines of the log, and starts that fail.

#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::StartsWith;

class Starting : public DesktopFixture {};

TEST_F(Starting, LogsVersionSystemAndScreensFirst) {
    const std::unique_ptr<Program> program = startProgram();
    std::vector<std::string> messages = program->messages();
    ASSERT_GE(messages.size(), 3U);
    messages.resize(3);
    EXPECT_THAT(messages,
                ElementsAre("Noctra v2.23 initialized", StartsWith("Linux "), "Screens: 3"));
    EXPECT_THAT(
        program->outputLines().front(),
        ::testing::MatchesRegex("\\[[0-2][0-9]:[0-5][0-9]:[0-5][0-9]\\.[0-9][0-9][0-9]\\] .*"));
    EXPECT_THAT(program->errorLines(), IsEmpty());
}

// Without a display on purpose: these questions need none.
class CommandLineQuestion : public ::testing::Test {
protected:
    TestDesktop desktop_{""};
};

TEST_F(CommandLineQuestion, HelpAndVersionAreAnsweredOnStandardOutput) {
    const std::unique_ptr<Program> version = desktop_.start({"--version"});
    EXPECT_EQ(version->waitForEnding(), exited(0));
    EXPECT_THAT(version->outputLines(), ElementsAre("noctra 2.23"));
    const std::unique_ptr<Program> help = desktop_.start({"--help"});
    EXPECT_EQ(help->waitForEnding(), exited(0));
    ASSERT_THAT(help->outputLines(), Not(IsEmpty()));
    EXPECT_THAT(help->outputLines().front(), HasSubstr("noctra"));
    EXPECT_THAT(help->errorLines(), IsEmpty());
}

TEST_F(CommandLineQuestion, AnythingElseGetsAUsageLineAndStatusTwo) {
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"foo"}, {"--foo"}, {"-h"}, {""}, {"noctra://on", "foo"}}) {
        const std::unique_ptr<Program> program = desktop_.start(arguments);
        EXPECT_EQ(program->waitForEnding(), exited(2)) << arguments.back();
        ASSERT_THAT(program->errorLines(), SizeIs(1)) << arguments.back();
        EXPECT_THAT(program->errorLines().front(), HasSubstr("usage")) << arguments.back();
        EXPECT_THAT(program->outputLines(), IsEmpty()) << arguments.back();
    }
}

TEST(StartingWithoutADisplay, IsRefusedWithOneLine) {
    for (const char* display : {"", ":7654", "nonsense"}) {
        TestDesktop desktop(display);
        const std::unique_ptr<Program> program = desktop.start();
        EXPECT_EQ(program->waitForEnding(), exited(1)) << display;
        EXPECT_THAT(program->errorLines(), SizeIs(1)) << display;
    }
}

} // namespace

} // namespace noctra::desktop
