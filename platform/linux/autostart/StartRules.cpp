#include "platform/linux/autostart/StartRules.h"

#include <algorithm>
#include <array>
#include <optional>

#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/autostart/ExecLine.h"

namespace noctra {

namespace {

// The keys by which desktops' settings switch an entry off.
constexpr std::array desktopsSwitches{"X-GNOME-Autostart-enabled", "X-MATE-Autostart-enabled"};

std::vector<std::string> parts(std::string_view list, char separator) {
    std::vector<std::string> found;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(separator), list.size());
        if (end > 0)
            found.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return found;
}

bool contains(const std::vector<std::string>& list, const std::string& wanted) {
    return std::find(list.begin(), list.end(), wanted) != list.end();
}

std::vector<std::string> listIn(const DesktopEntry& entry, const char* key) {
    return parts(entry.value(key).value_or(""), ';');
}

void setList(DesktopEntry& entry, const char* key, const std::vector<std::string>& list) {
    std::string value;
    for (const std::string& name : list)
        value.append(name).append(";");
    if (value.empty())
        entry.remove(key);
    else
        entry.set(key, value);
}

/// The first of the desktop's names that either list has decides.
bool isShownIn(const std::vector<std::string>& desktops, const DesktopEntry& entry) {
    const auto only = listIn(entry, "OnlyShowIn");
    const auto never = listIn(entry, "NotShowIn");
    for (const std::string& desktop : desktops) {
        if (contains(only, desktop))
            return true;
        if (contains(never, desktop))
            return false;
    }
    return !entry.value("OnlyShowIn");
}

void showIn(const std::vector<std::string>& desktops, DesktopEntry& entry) {
    auto never = listIn(entry, "NotShowIn");
    if (std::erase_if(never, [&](const auto& name) { return contains(desktops, name); }) > 0)
        setList(entry, "NotShowIn", never);
    if (isShownIn(desktops, entry))
        return;
    auto only = listIn(entry, "OnlyShowIn");
    if (desktops.empty())
        only.clear(); // a session without a name is in no list
    else
        only.push_back(desktops.front());
    setList(entry, "OnlyShowIn", only);
}

enum class Command { canRun, cannotRun, missing };

Command stateOf(const std::string& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0 || !S_ISREG(status.st_mode))
        return Command::missing;
    return ::access(file.c_str(), X_OK) == 0 ? Command::canRun : Command::cannotRun;
}

Command stateOf(const std::string& command, const std::vector<std::string>& folders) {
    if (command.empty())
        return Command::missing;
    if (command.find('/') != std::string::npos)
        return command.starts_with('/') ? stateOf(command) : Command::missing;
    Command best = Command::missing;
    for (const std::string& folder : folders)
        best = std::min(best, stateOf(folder + "/" + command));
    return best;
}

Command commandOf(const DesktopEntry& entry, const AutostartSession& session) {
    const auto arguments = argumentsIn(entry.value("Exec").value_or(""));
    return arguments.empty() ? Command::missing : stateOf(arguments.front(), session.folders);
}

/// What TryExec names, which has to be there, can be run.
bool passesTry(const DesktopEntry& entry, const AutostartSession& session) {
    const std::string tried = textIn(entry.value("TryExec").value_or(""));
    return tried.empty() || stateOf(tried, session.folders) == Command::canRun;
}

} // namespace

AutostartSession autostartSession(std::string_view currentDesktop, std::string_view path) {
    AutostartSession session{parts(currentDesktop, ':'), absolutePaths(path)};
    // A name that an entry's list cannot hold as it stands is no desktop's.
    std::erase_if(session.desktops, [](const std::string& name) {
        return std::any_of(name.begin(), name.end(), [](char character) {
            return character <= ' ' || character == ';' || character == '\\';
        });
    });
    return session;
}

std::vector<std::string> absolutePaths(std::string_view list) {
    auto paths = parts(list, ':');
    std::erase_if(paths, [](const std::string& path) { return !path.starts_with('/'); });
    return paths;
}

bool isSwitchedOff(const DesktopEntry& entry) {
    return entry.has("Hidden", "true") ||
           std::any_of(desktopsSwitches.begin(), desktopsSwitches.end(),
                       [&](const char* key) { return entry.has(key, "false"); });
}

bool isStarted(const DesktopEntry& entry, const AutostartSession& session) {
    // Which command it runs does not count: it may be a wrapper, or another copy of the program.
    return entry.has("Type", "Application") && !entry.value("Exec").value_or("").empty() &&
           commandOf(entry, session) != Command::cannotRun && passesTry(entry, session) &&
           isShownIn(session.desktops, entry);
}

void makeStart(DesktopEntry& entry, const AutostartSession& session, const std::string& exec) {
    if (entry.has("Hidden", "true"))
        entry.remove("Hidden");
    for (const char* key : desktopsSwitches)
        if (entry.has(key, "false"))
            entry.remove(key);
    entry.set("Type", "Application");
    if (!entry.value("Name"))
        entry.set("Name", "Noctra");
    if (commandOf(entry, session) != Command::canRun)
        entry.set("Exec", exec);
    if (!passesTry(entry, session))
        entry.remove("TryExec");
    if (!isShownIn(session.desktops, entry))
        showIn(session.desktops, entry);
}

} // namespace noctra
