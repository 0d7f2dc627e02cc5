#include "platform/linux/backlight/SysfsBacklight.h"

#include <filesystem>
#include <iterator>
#include <optional>

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
    folder.write("good", "actual_brightness", "101\n");
    EXPECT_EQ(backlight.level(), 0.2F) << "beyond its maximum";
    folder.remove("spare");
    EXPECT_EQ(backlight.level(), std::nullopt);
    folder.write("good", "actual_brightness", "50\n");
    EXPECT_EQ(backlight.level(), 0.5F);
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

TEST(SysfsBacklight, KeepsOneFileOpenHoweverOftenItIsAskedAndChooses) {
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
        EXPECT_EQ(openFiles(), before + 1);
        backlight.lookAgain();
        EXPECT_EQ(openFiles(), before);
    }
}

} // namespace

} // namespace noctra
