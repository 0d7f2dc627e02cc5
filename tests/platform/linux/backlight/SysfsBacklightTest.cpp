#include "platform/linux/backlight/SysfsBacklight.h"

#include <filesystem>
#include <iterator>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/linux/backlight/BacklightFolder.h"

namespace noctra {

namespace {

using test::BacklightFolder;

TEST(SysfsBacklight, TheSameReadingTurnsToAnotherDeviceWhenItsOwnFails) {
    BacklightFolder folder;
    folder.add("good", {.type = "firmware\n", .value = "40\n"});
    folder.add("spare", {.type = "raw\n", .maximum = "10\n", .value = "2\n"});
    SysfsBacklight backlight(folder.path());
    ASSERT_EQ(backlight.level(), 0.4F);
    folder.set("good", "101\n");
    EXPECT_EQ(backlight.level(), 0.2F) << "beyond its maximum";
    folder.remove("spare");
    EXPECT_EQ(backlight.level(), std::nullopt);
    folder.set("good", "50\n");
    EXPECT_EQ(backlight.level(), 0.5F);
}

TEST(SysfsBacklight, BelievesTheHardwareOnlyOnTheScaleOfTheSettingAndWhileThePanelIsLit) {
    struct Step {
        const char* setting;
        const char* actual;
        std::optional<float> level;
    };
    for (const std::vector<Step>& steps : std::vector<std::vector<Step>>{
             {{"58", "45", 0.58F}, {"100", "97", 1.0F}, {"100", "65535", 1.0F}}, // another scale
             {{"100", "", 1.0F}, {"90", "0", 0.9F}},                             // absent, dark
             {{"", "40", 0.4F}},
             {{"50", "49", 0.49F}, {"100", "50", 0.5F}, {"100", "0", 1.0F}}, // it has agreed
         }) {
        BacklightFolder folder;
        folder.add("panel", {});
        SysfsBacklight backlight(folder.path());
        for (const auto& [setting, actual, level] : steps) {
            folder.write("panel", "brightness", setting);
            folder.write("panel", "actual_brightness", actual);
            EXPECT_EQ(backlight.level(), level) << setting << ' ' << actual;
        }
    }
}

TEST(SysfsBacklight, TakesABetterDeviceOnlyWhenToldToLook) {
    BacklightFolder folder;
    folder.add("raw", {.type = "raw\n", .value = "40\n"});
    SysfsBacklight backlight(folder.path());
    ASSERT_EQ(backlight.level(), 0.4F);
    folder.add("better", {.type = "firmware\n", .value = "70\n"});
    EXPECT_EQ(backlight.level(), 0.4F);
    backlight.lookAgain();
    EXPECT_EQ(backlight.level(), 0.7F);
}

TEST(SysfsBacklight, KeepsTwoFilesOpenHoweverOftenItIsAskedAndChooses) {
    const auto openFiles = [] {
        const std::filesystem::directory_iterator files("/proc/self/fd");
        return std::distance(begin(files), end(files));
    };
    BacklightFolder folder;
    folder.add("panel", {});
    const auto before = openFiles();
    SysfsBacklight backlight(folder.path());
    for (int round = 0; round < 5; ++round) {
        EXPECT_EQ(backlight.level(), 0.4F);
        EXPECT_EQ(openFiles(), before + 2);
        backlight.lookAgain();
        EXPECT_EQ(openFiles(), before);
    }
}

} // namespace

} // namespace noctra
