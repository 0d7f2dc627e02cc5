#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace noctra {

/// What the command line asks for. Beside URLs there is hardly anything to ask: the program is
/// driven from its panel, and by URLs of its scheme.
struct CommandLine {
    enum class Action { run, help, version, refuse };

    Action action = Action::run;
    std::vector<std::string>
        urls; ///< in their order, unchecked; whether they mean anything shows later
};

/// `arguments` without the program's name. An argument that starts with a scheme and a colon is a
/// URL;
/// --help, or -h, and --version win over everything else; any other argument is refused.
[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::string>& arguments);

inline constexpr std::string_view usageLine =
    "usage: noctra [-h | --help | --version | noctra://on | noctra://off | noctra://toggle | "
    "noctra://show ...]";

/// What is to be said of those among `urls` that ask for nothing; empty where each is a command.
[[nodiscard]] std::string complaintAbout(const std::vector<std::string>& urls);

/// What --help prints.
[[nodiscard]] std::string helpText();

} // namespace noctra
