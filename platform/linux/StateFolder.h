#pragma once

#include <cstdlib>
#include <string>

namespace noctra {

/// Where a file named `name` belongs that the program keeps for its next run:
/// $XDG_STATE_HOME/noctra, else ~/.local/state/noctra; empty where neither is known. Any thread.
[[nodiscard]] inline std::string stateFile(const std::string& name) {
    const char* const state = std::getenv("XDG_STATE_HOME");
    if (state != nullptr && *state == '/')
        return std::string(state) + "/noctra/" + name;
    const char* const home = std::getenv("HOME");
    return home != nullptr && *home == '/' ? std::string(home) + "/.local/state/noctra/" + name
                                           : std::string();
}

} // namespace noctra
