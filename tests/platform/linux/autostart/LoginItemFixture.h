#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "platform/linux/XdgLoginItem.h"
#include "tests/support/TemporaryFolder.h"

namespace noctra::test {

/// A person's home folder and the system's configuration folder, with the login item in between.
class LoginItemFixture : public ::testing::Test {
protected:
    using Status = LoginItem::Status;
    using Path = std::filesystem::path;

    LoginItemFixture() {
        std::filesystem::create_directories(folder_ / "bin");
        writeProgram(program());
    }

    [[nodiscard]] std::string program() const { return folder_ / "bin" / "noctra"; }
    [[nodiscard]] Path config() const { return folder_ / "config"; }
    [[nodiscard]] Path own() const { return config() / "autostart/org.noctra.Noctra.desktop"; }
    [[nodiscard]] Path systems() const {
        return folder_ / "xdg" / "autostart/org.noctra.Noctra.desktop";
    }
    [[nodiscard]] XdgLoginItem item() const {
        return XdgLoginItem(program(), [this](const char* name) -> std::optional<std::string> {
            const auto found = variables_.find(name);
            return found == variables_.end() ? std::nullopt : std::optional(found->second);
        });
    }

    static void write(const Path& file, const std::string& text) {
        std::filesystem::create_directories(file.parent_path());
        test::writeFile(file, text);
    }
    static void writeProgram(const Path& file) {
        write(file, "");
        std::filesystem::permissions(file, std::filesystem::perms(0755));
    }
    /// An entry that runs the program, with more lines.
    [[nodiscard]] std::string entry(const std::string& more = {}) const {
        return "[Desktop Entry]\nType=Application\nName=Noctra\nExec=" + program() + "\n" + more;
    }

    test::TemporaryFolder folder_;
    std::map<std::string, std::string> variables_{
        {"XDG_CONFIG_HOME", config()},
        {"XDG_CONFIG_DIRS",
         "relative:" + (folder_ / "none").string() + ":" + (folder_ / "xdg").string()},
        {"PATH", "/nowhere:" + (folder_ / "bin").string()}};
};

} // namespace noctra::test
