// When the panel opens by itself, how high it is, and what a change of the displays does to it.

#include <csignal>
#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/PanelFixture.h"

namespace noctra::desktop {

namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

struct Popover : PanelFixture {
    void xrandr(const std::vector<std::string>& arguments) {
        std::vector<std::string> command{"/usr/bin/xrandr"};
        command.insert(command.end(), arguments.begin(), arguments.end());
        ASSERT_EQ(desktop().startOther(command)->waitForEnding(), exited(0)) << arguments.back();
    }
    /// Xorg's dummy driver takes any mode; the numbers beside the size do not matter to it.
    void setNewMode(int width, int height) {
        const std::string w = std::to_string(width);
        const std::string h = std::to_string(height);
        const std::string name = w + "x" + h + "new";
        xrandr({"--newmode", name, "60", w, w, w, w, h, h, h, h});
        xrandr({"--addmode", "DUMMY0", name});
        xrandr({"--output", "DUMMY0", "--mode", name});
    }
    [[nodiscard]] bool isAt(const Box& place) const {
        return pollUntil(patience, [&] { return windows().placeOf(panelTitle) == place; });
    }
};

TEST_F(Popover, OpensByItselfAtTheVeryFirstStartOnly) {
    desktop().writePreferences("");
    for (const bool first : {true, false}) {
        const std::unique_ptr<Program> program = startProgram();
        if (first) {
            EXPECT_TRUE(pollUntil(patience, [this] { return windows().shows(panelTitle); }));
            program->killAtOnce(); // not before it is noted for good
            EXPECT_THAT(readFile(desktop().preferencesFile()),
                        HasSubstr("hasShownFirstRunPopover=true"));
            continue;
        }
        command(*program, "noctra://on");
        command(*program, "noctra://off");
        EXPECT_FALSE(windows().shows(panelTitle));
        EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    }
}

TEST_F(Popover, IsAsHighAsTheScreenLetsItAndFollowsTheScreen) {
    for (const char* output : {"DUMMY1", "DUMMY2"}) // a pointer that is pushed out stays here
        xrandr({"--output", output, "--off"});
    const std::unique_ptr<Program> program = startProgram();
    struct Screen {
        int width, height, panel;
    };
    for (const Screen& screen :
         {Screen{1920, 1080, 540}, Screen{800, 500, 476}, Screen{640, 350, 360}}) {
        setNewMode(screen.width, screen.height);
        if (HasFatalFailure())
            return;
        if (!windows().shows(panelTitle))
            command(*program, "noctra://show"); // else it follows by itself
        EXPECT_TRUE(isAt({screen.width - 320, 0, 320, screen.panel}))
            << screen.width << "x" << screen.height << ": "
            << windows().placeOf(panelTitle).value_or(Box{});
    }
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(Popover, TheIconTestLeavesTwoPngFilesAndQuits) {
    desktop().writePreferences("");
    desktop().setVariable("NOCTRA_MENUBAR_ICON_TEST", "1");
    const std::string prefix = "/tmp/noctra_menubar_";
    const std::vector<std::string> files{prefix + "off.png", prefix + "active.png",
                                         prefix + "icon_test.txt"};
    for (const std::string& file : files)
        std::filesystem::remove(file);
    const std::unique_ptr<Program> program = desktop().start();
    EXPECT_EQ(program->waitForEnding(), exited(0));
    EXPECT_FALSE(windows().shows(panelTitle));
    EXPECT_EQ(readFile(desktop().preferencesFile()).find("hasShownFirstRunPopover"),
              std::string::npos);
    for (int i = 0; i < 2; ++i)
        EXPECT_THAT(readFile(files[static_cast<std::size_t>(i)]), StartsWith("\x89PNG\r\n\x1A\n"));
    EXPECT_NE(readFile(files[0]), readFile(files[1]));
    const std::string report = readFile(files[2]);
    EXPECT_THAT(report, HasSubstr("dumpStatusIcon(off) -> /tmp/noctra_menubar_off.png"));
    EXPECT_THAT(report, HasSubstr("dumpStatusIcon(active) -> /tmp/noctra_menubar_active.png"));
    EXPECT_TRUE(isUntouched());
    for (const std::string& file : files)
        std::filesystem::remove(file);
}

} // namespace

} // namespace noctra::desktop
