#include "platform/linux/displayservices/AmbientLight.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

namespace noctra::display_services {

namespace {

struct Setting {
    std::optional<bool> value = true;
    bool locked = false;
    bool markerThereWhenWritten = false;
    int writes = 0;
};

class FakeSetting : public AmbientSetting {
public:
    FakeSetting(Setting& setting, std::string marker)
        : setting_(setting), marker_(std::move(marker)) {}
    std::optional<bool> read() override { return setting_.value; }
    bool write(bool on) override {
        ++setting_.writes;
        setting_.markerThereWhenWritten = std::filesystem::exists(marker_);
        if (!setting_.locked)
            setting_.value = on;
        return !setting_.locked;
    }

private:
    Setting& setting_;
    const std::string marker_;
};

struct AmbientLightTest : testing::Test {
    AmbientLightTest() { EXPECT_NE(::mkdtemp(folder.data()), nullptr); }
    ~AmbientLightTest() override { std::filesystem::remove_all(folder); }
    [[nodiscard]] AmbientLight aRun() {
        return AmbientLight(marker(), std::make_unique<FakeSetting>(setting, marker()));
    }
    [[nodiscard]] std::string marker() const { return folder + "/state/noctra/ambient-light-off"; }
    [[nodiscard]] bool hasMarker() const { return std::filesystem::exists(marker()); }

    std::string folder = std::filesystem::temp_directory_path() / "noctra-ambient-XXXXXX";
    Setting setting;
};

TEST_F(AmbientLightTest, IsRememberedBeforeItIsSwitchedOffAndUntilItIsPutBack) {
    AmbientLight run = aRun();
    run.switchOff();
    EXPECT_EQ(setting.value, false);
    EXPECT_TRUE(setting.markerThereWhenWritten);
    run.putBack();
    EXPECT_EQ(setting.value, true);
    EXPECT_TRUE(setting.markerThereWhenWritten) << "a run that is killed here is made good later";
    EXPECT_FALSE(hasMarker());
}

TEST_F(AmbientLightTest, IsLeftAsItIsWhereItWasOffOrIsUnknown) {
    for (const std::optional<bool> value : {std::optional(false), std::optional<bool>()}) {
        setting.value = value;
        AmbientLight run = aRun();
        run.switchOff();
        run.putBack();
        EXPECT_EQ(setting.value, value);
        EXPECT_EQ(setting.writes, 0);
        EXPECT_FALSE(hasMarker());
    }
}

TEST_F(AmbientLightTest, KeepsTheMarkerAsLongAsItCannotBePutBack) {
    AmbientLight run = aRun();
    run.switchOff();
    setting.locked = true;
    run.putBack();
    EXPECT_TRUE(hasMarker());
    setting.locked = false;
    aRun().putBack();
    EXPECT_EQ(setting.value, true);
    EXPECT_FALSE(hasMarker());

    setting.locked = true;
    run.switchOff();
    EXPECT_FALSE(hasMarker()) << "it was not switched off";
}

TEST_F(AmbientLightTest, IsPutBackAlsoWhereNothingCanBeRemembered) {
    AmbientLight run("/proc/nowhere/marker", std::make_unique<FakeSetting>(setting, marker()));
    run.switchOff();
    EXPECT_EQ(setting.value, false);
    run.putBack();
    EXPECT_EQ(setting.value, true);
}

} // namespace

} // namespace noctra::display_services
