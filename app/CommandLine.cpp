#include "app/CommandLine.h"

#include <algorithm>

#include "app/AutomationCommand.h"
#include "app/Url.h"

namespace noctra {

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    const auto has = [&](std::string_view option) {
        return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
    };
    if (has("--help") || has("-h"))
        return {CommandLine::Action::help, {}};
    if (has("--version"))
        return {CommandLine::Action::version, {}};
    if (!std::all_of(arguments.begin(), arguments.end(), startsWithUrlScheme))
        return {CommandLine::Action::refuse, {}};
    return {CommandLine::Action::run, arguments};
}

std::string complaintAbout(const std::vector<std::string>& urls) {
    std::string complaint;
    for (const std::string& url : urls)
        if (!commandInUrl(url)) {
            complaint += complaint.empty() ? "no such command: " : ", ";
            // What is no URL may hold anything, and standard error may be a terminal.
            complaint += parseUrl(url) ? url : "(no valid URL)";
        }
    return complaint;
}

std::string helpText() {
    return std::string(usageLine) +
           "\n\n"
           "Dims and warms every display in software, so that the backlight can stay at 100 %.\n"
           "The first start runs in the foreground until it is ended (Ctrl-C, kill); every later\n"
           "start hands its URLs to the running one, or without any has it show its panel, and\n"
           "returns.\n\n"
           "  noctra://on       filter on\n"
           "  noctra://off      filter off\n"
           "  noctra://toggle   filter on if it was off, off if it was on\n"
           "  noctra://show     show the panel\n"
           "  -h, --help        print this text\n"
           "  --version         print the program's version\n";
}

} // namespace noctra
