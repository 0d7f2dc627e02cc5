#include "platform/linux/backlight/BacklightDevices.h"

#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/platform/linux/backlight/BacklightFolder.h"

namespace noctra {

namespace {

using test::BacklightFolder;

std::vector<std::string> namesIn(const BacklightFolder& folder) {
    std::vector<std::string> names;
    for (const BacklightDevice& device : listBacklightDevices(folder.path()))
        names.push_back(device.name);
    return names;
}

TEST(BacklightDevices, FirmwareComesBeforePlatformBeforeRawAndEqualsByName) {
    BacklightFolder folder;
    for (const char* name : {"d", "a"})
        folder.add(name, {.type = "raw\n"});
    for (const char* name : {"e", "b"})
        folder.add(name, {.type = "platform\n"});
    for (const char* name : {"f", "c"})
        folder.add(name, {.type = "firmware\n"});
    folder.add("0", {.type = "software\n"});
    EXPECT_EQ(namesIn(folder), (std::vector<std::string>{"c", "f", "b", "e", "a", "d"}));
}

struct Reading {
    const char* text;
    std::optional<unsigned int> value;
};
const std::vector<Reading> readings{
    {"40\n", 40},
    {"40", 40},
    {"0\n", 0},
    {"", std::nullopt},
    {"\n", std::nullopt},
    {"-1\n", std::nullopt},
    {"+1\n", std::nullopt},
    {"0x10\n", std::nullopt},
    {"1.5\n", std::nullopt},
    {"40\n50\n", std::nullopt},
    {"forty\n", std::nullopt},
    {"4294967295\n", 4294967295U},
    {"4294967296\n", std::nullopt},
    {"99999999999999999999\n", std::nullopt},
    {"0000000000000000000000000000000000000000000000000001\n", std::nullopt},
};

TEST(BacklightDevices, OnlyAPlainNumberUpToTheMaximumIsAValue) {
    BacklightFolder folder;
    folder.add("panel", {.maximum = "4294967295\n"});
    const BacklightDevice whole = listBacklightDevices(folder.path()).at(0);
    folder.write("panel", "actual_brightness", "");
    for (const char* file : {"brightness", "actual_brightness"}) {
        for (const auto& [text, value] : readings) {
            folder.write("panel", file, text);
            EXPECT_EQ(readBacklight(whole).setting, value) << text << " in " << file;
            EXPECT_EQ(namesIn(folder).size(), value ? 1 : 0) << text;
        }
        folder.write("panel", file, "101\n");
        EXPECT_EQ(readBacklight({.name = "panel", .folder = whole.folder, .maximum = 100}).setting,
                  std::nullopt);
        folder.write("panel", "brightness", ""); // where it is missing the hardware's own counts
    }
    folder.remove("panel");
    EXPECT_EQ(readBacklight(whole).setting, std::nullopt);
}

} // namespace

} // namespace noctra
