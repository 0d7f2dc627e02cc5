#pragma once

#include <functional>
#include <optional>
#include <string>

#include "foundation/Clock.h"
#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "platform/ScratchFiles.h"

namespace noctra {

/// Set to "1" it asks for the self-test.
inline constexpr const char* iconTestVariable = "NOCTRA_MENUBAR_ICON_TEST";

/// Swaps the menu-bar icon to off and to active, notes each step in a text file, leaves both icons
/// as PNG files, and quits. Run instead of the first-run step where the environment asks for it.
/// Main thread.
class MenuBarIconSelfTest {
public:
    static constexpr const char* reportPath = "/tmp/noctra_menubar_icon_test.txt";

    struct Parts {
        Log& log;
        MainQueue& mainQueue;
        const WallClock& wallClock;
        ScratchFiles& files;
        /// Sets the icon for the filter's state.
        std::function<void(bool enabled)> updateMenuBarIcon;
        /// The icon that is set, as a PNG file; nothing where there is none.
        std::function<std::optional<std::string>()> statusIconPng;
        std::function<void()> terminate;
    };

    explicit MenuBarIconSelfTest(Parts parts);

    /// Starts the steps; the last one, 1.4 s from now, terminates the program.
    void run();

private:
    void testLog(const std::string& message);
    void dumpStatusIcon(const std::string& name);
    void showIcon(bool enabled, const std::string& message, const std::string& name);

    const Parts parts_;
};

} // namespace noctra
