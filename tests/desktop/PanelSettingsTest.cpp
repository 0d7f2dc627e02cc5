// The sheet of settings over the panel.

#include <algorithm>
#include <csignal>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/support/PanelFixture.h"
#include "tests/desktop/support/XSettingsManager.h"

namespace noctra::desktop {

namespace {

using ::testing::Contains;
using ::testing::HasSubstr;

constexpr const char* copiedLine = "Debug log copied to clipboard";

struct PanelSettings : PanelFixture {
    [[nodiscard]] std::vector<std::string> clipboard() {
        const std::unique_ptr<Program> reader =
            desktop().startOther({"/usr/bin/xclip", "-selection", "clipboard", "-o"});
        EXPECT_EQ(reader->waitForEnding(), exited(0));
        return reader->outputLines();
    }
    /// Where the sheet's top was, in pixels below the panel's, from when it came until it came to
    /// rest.
    [[nodiscard]] std::vector<int> wayOfTheSheet() {
        const int top = panelExtents().y;
        click(controls::gear);
        const Accessible sheet = control(controls::sheet);
        std::vector<int> way;
        pollUntil(patience, [&] {
            way.push_back(sheet.extents().y - top);
            return way.back() == 0;
        });
        return way;
    }
};

TEST_F(PanelSettings, DiagnosticsAreCopiedAsTheyStoodBefore) {
    const std::unique_ptr<Program> program = startWithPanel();
    openSettings();
    for (std::size_t earlier = 0; earlier < 2; ++earlier) {
        click(controls::copy);
        ASSERT_TRUE(program->waitForLines(earlier + 1, copiedLine));
        EXPECT_TRUE(becomes("COPIED DIAGNOSTICS", [](const auto&) { return true; }));
        const std::vector<std::string> copy = clipboard();
        ASSERT_FALSE(copy.empty());
        EXPECT_EQ(copy.front(), "=== Noctra Debug Log ===");
        EXPECT_THAT(copy, Contains(HasSubstr("App launched successfully")));
        EXPECT_EQ(
            std::ranges::count_if(
                copy, [](const auto& line) { return line.find(copiedLine) != std::string::npos; }),
            static_cast<long>(earlier));
        EXPECT_NO_THROW(static_cast<void>(control(controls::copy))) << "the confirmation goes";
    }
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(PanelSettings, LaunchAtLoginIsASwitchForTheAutostartEntry) {
    const auto entry = desktop().preferencesFile().parent_path().parent_path() /
                       "autostart/org.noctra.Noctra.desktop";
    const std::unique_ptr<Program> program = startWithPanel();
    openSettings();
    for (const bool on : {true, false}) {
        click(controls::launchAtLogin);
        EXPECT_TRUE(pollUntil(patience, [&] { return std::filesystem::exists(entry) == on; }));
        EXPECT_TRUE(becomes(controls::launchAtLogin, [on](const Accessible& one) {
            return one.is(AccessibleState::checked) == on;
        }));
    }
    EXPECT_TRUE(endsCleanly(*program, SIGTERM));
}

TEST_F(PanelSettings, AreInTheirPlaceAtOnceWhereTheDesktopAsksForLessMotion) {
    const XSettingsManager manager(server().display(), "Gtk/EnableAnimations", 0);
    const std::unique_ptr<Program> program = startWithPanel();
    EXPECT_THAT(wayOfTheSheet(), testing::Each(0));
    closeSettings();
}

} // namespace

} // namespace noctra::desktop
