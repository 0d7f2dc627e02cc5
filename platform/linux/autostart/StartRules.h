#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/autostart/DesktopEntry.h"

namespace noctra {

/// What a session goes by when it decides which autostart entries it starts.
struct AutostartSession {
    std::vector<std::string> desktops; ///< the desktop's names, the most particular first
    std::vector<std::string> folders;  ///< in which commands without a path are looked for
};

/// The session that XDG_CURRENT_DESKTOP and PATH describe.
[[nodiscard]] AutostartSession autostartSession(std::string_view currentDesktop,
                                                std::string_view path);

/// The absolute paths in a list with colons; others do not count.
[[nodiscard]] std::vector<std::string> absolutePaths(std::string_view list);

/// Somebody, or a desktop's settings, has switched the entry off.
[[nodiscard]] bool isSwitchedOff(const DesktopEntry& entry);

/// Whether `session` starts the entry, which is not switched off. A command that is not there does
/// not count against it, since the program mends that at its next start.
[[nodiscard]] bool isStarted(const DesktopEntry& entry, const AutostartSession& session);

/// Changes what keeps `session` from starting the entry, and nothing else. `exec` takes the place
/// of a command that cannot be run.
void makeStart(DesktopEntry& entry, const AutostartSession& session, const std::string& exec);

} // namespace noctra
