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

TEST_F(Filter, AppliedTwiceItDoesNotStack) {
    const std::unique_ptr<Program> program = startDimmed();
    for (int again = 0; again < 5; ++again)
        command(*program, "noctra://on");
    EXPECT_TRUE(isDimmed());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

struct Setting {
    const char* name;
    const char* intensity;
    const char* brightness;
    const char* allowExtremeDim;
    double warmth;         ///< the warmth that this comes to
    double softBrightness; ///< the brightness that this comes to
};

void PrintTo(const Setting& setting, std::ostream* stream) {
    *stream << setting.name;
}

class FilterSetting : public Filter, public ::testing::WithParamInterface<Setting> {};

TEST_P(FilterSetting, IsWhatTheDisplaysCarry) {
    const Setting& setting = GetParam();
    desktop().writePreferences(std::string("[General]\nfilterIntensity=") + setting.intensity +
                               "\nfilterBrightness=" + setting.brightness +
                               "\nallowExtremeDim=" + setting.allowExtremeDim + "\n");
    const std::unique_ptr<Program> program = startProgram();
    command(*program, "noctra://on");
    EXPECT_TRUE(isDimmed(setting.warmth, setting.softBrightness));
    command(*program, "noctra://off");
    EXPECT_TRUE(isUntouched());
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

INSTANTIATE_TEST_SUITE_P(
    Filter, FilterSetting,
    ::testing::Values(Setting{"Neutral", "0", "1", "false", 0, 1},
                      Setting{"OnlyDim", "0", "0.1", "false", 0, 0.1},
                      Setting{"ALittleWarm", "0.05", "1", "false", 0.05, 1},
                      Setting{"Candle", "0.5", "0.6", "false", 0.5, 0.6},
                      Setting{"JustAboveTheModelsEnd", "0.69", "0.8", "false", 0.69, 0.8},
                      Setting{"JustBelowTheModelsEnd", "0.7", "0.8", "false", 0.7, 0.8},
                      Setting{"NearlyRed", "0.9", "0.37", "false", 0.9, 0.37},
                      Setting{"PureRed", "1", "1", "false", 1, 1},
                      Setting{"BelowTheUsualMinimum", "0.3", "0.05", "false", 0.3, 0.1},
                      Setting{"BelowTheUsualMinimumWithPermission", "0.3", "0.05", "true", 0.3,
                              0.05},
                      Setting{"Black", "0.3", "0", "true", 0.3, 0},
                      Setting{"OutOfRange", "1.7", "2.5", "false", 1, 1},
                      Setting{"OutOfRangeBelow", "-0.2", "-1", "false", 0, 0.1},
                      Setting{"NotANumber", "nan", "nan", "false", 0, 1}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(Filter, InScreenshotModeNoTableIsTouched) {
    desktop().setVariable("NOCTRA_SCREENSHOT_RENDER", "1");
    const std::string preferences = readFile(desktop().preferencesFile());
    const std::unique_ptr<Program> program = startProgram();
    for (const char* url : {"noctra://on", "noctra://toggle", "noctra://toggle"}) {
        command(*program, url);
        EXPECT_TRUE(isUntouched()) << url;
    }
    EXPECT_TRUE(endsCleanly(*program, SIGHUP));
    EXPECT_EQ(readFile(desktop().preferencesFile()), preferences);
}

} // namespace

} // namespace noctra::desktop
