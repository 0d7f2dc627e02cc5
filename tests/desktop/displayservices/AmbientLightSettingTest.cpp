// The desktop's automatic brightness: the real library on real settings, kept in a file of the
// test's.

#include <gtest/gtest.h>

#include "tests/desktop/displayservices/Driver.h"
#include "tests/desktop/displayservices/Surroundings.h"
#include "tests/desktop/support/OutputPlugs.h"

namespace noctra::desktop {

namespace {

using namespace std::chrono_literals;

constexpr const char* schema = R"(<schemalist>
<schema id="org.gnome.settings-daemon.plugins.power" path="/org/gnome/settings-daemon/plugins/power/">
<key name="ambient-enabled" type="b"><default>true</default></key>
</schema>
</schemalist>
)";
constexpr const char* group = "[org/gnome/settings-daemon/plugins/power]\nambient-enabled=";

/// A panel and an external display on a desktop with the setting.
struct AmbientLightSetting : testing::Test {
    void SetUp() override {
        std::filesystem::create_directory(folder / "schemas");
        writeFile(folder / "schemas/power.gschema.xml", schema);
        ChildProcess::Start compile;
        compile.arguments = {"glib-compile-schemas", folder / "schemas"};
        compile.environment = {"PATH=/usr/bin:/usr/lib/x86_64-linux-gnu/glib-2.0"};
        try {
            ASSERT_EQ(ChildProcess(compile).waitForEnding(patience), exited(0));
        } catch (const std::runtime_error&) {
            GTEST_SKIP() << "glib-compile-schemas is missing";
        }
        plugs.plugOnly(2);
        plugs.setBuiltIn(0, true);
    }
    void TearDown() override { plugs.setBuiltIn(0, false); }

    [[nodiscard]] std::unique_ptr<Driver> start(bool withSchema = true) const {
        Driver::Surroundings surroundings{
            {{"DISPLAY", sharedServer().display()},
             {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (folder / "no-bus").string()},
             {"GSETTINGS_BACKEND", "keyfile"},
             {"XDG_CONFIG_HOME", folder / "config"},
             {"XDG_DATA_DIRS", folder / "data"},
             {"XDG_STATE_HOME", folder / "state"}},
            {}};
        if (withSchema)
            surroundings.environment["GSETTINGS_SCHEMA_DIR"] = folder / "schemas";
        auto driver = std::make_unique<Driver>(surroundings);
        // The list of displays may come later than the first answer.
        EXPECT_TRUE(
            pollUntil(patience, [&] { return driver->enableAmbientLight(external, true); }));
        return driver;
    }
    [[nodiscard]] std::string setting() const {
        const std::string text = readFile(folder / "config/glib-2.0/settings/keyfile");
        const auto at = text.find(group);
        const auto begin = at + std::string(group).size();
        return at == std::string::npos ? "default"
                                       : text.substr(begin, text.find('\n', begin) - begin);
    }
    void set(bool on) const {
        std::filesystem::create_directories(folder / "config/glib-2.0/settings");
        writeFile(folder / "config/glib-2.0/settings/keyfile",
                  std::string(group) + (on ? "true\n" : "false\n"));
    }
    [[nodiscard]] bool hasMarker() const { return std::filesystem::exists(marker); }
    static void endCleanly(Driver& driver) {
        EXPECT_TRUE(driver.finish(3000ms));
        EXPECT_LT(driver.longestCall(), Driver::callLimit);
    }

    TemporaryFolder folder;
    std::filesystem::path marker = folder / "state/noctra/ambient-light-off";
    OutputPlugs plugs{sharedServer().display()};
    DisplayId panel = outputIds(sharedServer()).at(0);
    DisplayId external = outputIds(sharedServer()).at(1);
};

TEST_F(AmbientLightSetting, IsPutBackByTheRunAfterOneThatWasKilled) {
    set(true);
    auto killed = start();
    EXPECT_TRUE(killed->enableAmbientLight(panel, false));
    EXPECT_TRUE(pollUntil(patience, [&] { return setting() == "false"; }));
    ASSERT_TRUE(hasMarker());
    EXPECT_EQ(std::filesystem::status(marker).permissions(),
              std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
    killed->kill();

    const auto next = start();
    EXPECT_TRUE(next->enableAmbientLight(panel, false));
    endCleanly(*next);
    EXPECT_EQ(setting(), "false");
    EXPECT_TRUE(next->enableAmbientLight(panel, true));
    endCleanly(*next);
    EXPECT_EQ(setting(), "true");
    EXPECT_FALSE(hasMarker());
}

} // namespace

} // namespace noctra::desktop
