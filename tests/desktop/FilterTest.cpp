// What the displays carry while the filter is on, and after it.

#include <csignal>
#include <gtest/gtest.h>

#include "tests/desktop/support/DesktopFixture.h"

namespace noctra::desktop {

namespace {

class Filter : public DesktopFixture {
protected:
    /// A later start of the program, as in a second terminal.
    void later(const std::string& url) {
        const std::unique_ptr<Program> start = desktop().start({url});
        ASSERT_EQ(start->waitForEnding(), exited(0));
    }
};

TEST_F(Filter, LaterStartsSwitchItOnOffAndOver) {
    const std::unique_ptr<Program> program = startProgram();
    EXPECT_TRUE(isUntouched()) << "before the first command";
    later("noctra://on");
    EXPECT_TRUE(becomesDimmed());
    later("noctra://off");
    ASSERT_TRUE(program->waitForLine("Automation command applied: off"));
    EXPECT_TRUE(isUntouched());
    later("noctra://toggle");
    EXPECT_TRUE(becomesDimmed());
    later("noctra://toggle");
    ASSERT_TRUE(program->waitForLines(2, "Automation command applied: toggle"));
    EXPECT_TRUE(isUntouched());
}

TEST_F(Filter, IsWhatThePreferencesSayWithinTheirBounds) {
    struct Setting {
        const char* preferences;
        double warmth, brightness;
    };
    for (const Setting& setting :
         {Setting{"filterIntensity=0.5\nfilterBrightness=0.6\n", 0.5, 0.6},
          Setting{"filterIntensity=0.9\nfilterBrightness=0.05\n", 0.9, 0.1},
          Setting{"filterIntensity=1\nfilterBrightness=0\nallowExtremeDim=true\n", 1, 0},
          Setting{"filterIntensity=nan\nfilterBrightness=nan\n", 0, 1}}) {
        SCOPED_TRACE(setting.preferences);
        desktop().writePreferences(std::string("[General]\n") + setting.preferences);
        const std::unique_ptr<Program> program = startProgram();
        command(*program, "noctra://on");
        EXPECT_TRUE(isDimmed(setting.warmth, setting.brightness));
        command(*program, "noctra://off");
        EXPECT_TRUE(isUntouched());
        EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    }
}

TEST_F(Filter, IsKeptInThePreferencesAndStillStartsOff) {
    const auto comesToContain = [this](const std::string& text) {
        return pollUntil(patience, [&] {
            return readFile(desktop().preferencesFile()).find(text) != std::string::npos;
        });
    };
    const std::unique_ptr<Program> program = startDimmed();
    EXPECT_TRUE(comesToContain("filterEnabled=true"));
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
    const std::unique_ptr<Program> next = startProgram();
    EXPECT_TRUE(isUntouched());
    EXPECT_TRUE(comesToContain("filterEnabled=false"));
    command(*next, "noctra://on");
    EXPECT_TRUE(isDimmed()) << "warmth and brightness are kept";
}

} // namespace

} // namespace noctra::desktop
