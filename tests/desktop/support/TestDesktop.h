#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/desktop/support/Program.h"
#include "tests/desktop/support/SessionBus.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

/// One person's session on an X server: folders and message bus of its own, nothing of the session
/// that the tests run in.
class TestDesktop {
public:
    /// `display` as in the DISPLAY variable; empty: the variable is not set.
    explicit TestDesktop(std::string display);

    /// From now on programs find no session bus.
    void takeBusAway();
    [[nodiscard]] const std::string& busAddress() const { return busAddress_; }
    /// Not after it was taken away.
    [[nodiscard]] SessionBus& bus() { return *bus_; }
    void setVariable(const std::string& name, const std::string& value) { extra_[name] = value; }

    [[nodiscard]] std::filesystem::path runtimeFolder() const { return folder_ / "runtime"; }
    [[nodiscard]] std::filesystem::path preferencesFile() const;
    void writePreferences(const std::string& bytes) const;
    /// A preferences file with these settings, of somebody who has used the program before.
    void presetFilter(double warmth, double brightness, bool allowExtremeDim = false) const;

    /// Starts the program under test with `arguments`.
    [[nodiscard]] std::unique_ptr<Program>
    start(const std::vector<std::string>& arguments = {},
          Program::Output output = Program::Output::read) const;

    /// Starts the program under test with a remote control on its standard input (driven/main.cpp
    /// says what it takes), by way of `launcher`, a command that runs what is put behind it.
    [[nodiscard]] std::unique_ptr<Program>
    startDriven(const std::vector<std::string>& launcher = {}) const;

    /// From now on the two above start copies in a folder of their own, which holds all that the
    /// programs look for beside themselves except the file `missing`.
    void copyProgramsWithout(const std::string& missing);

    /// Starts another program of this desktop; `command` is its path and its arguments.
    [[nodiscard]] std::unique_ptr<Program>
    startOther(const std::vector<std::string>& command) const;

private:
    [[nodiscard]] std::vector<std::string> environment() const;

    std::string display_;
    TemporaryFolder folder_;
    std::unique_ptr<SessionBus> bus_;
    std::string busAddress_;
    std::map<std::string, std::string> extra_;
    std::filesystem::path binary_;
    std::filesystem::path drivenBinary_;
};

} // namespace noctra::desktop
