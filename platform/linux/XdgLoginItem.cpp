#include "platform/linux/XdgLoginItem.h"

#include <algorithm>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/stat.h>

#include "platform/linux/autostart/DesktopEntry.h"
#include "platform/linux/autostart/EntryFile.h"
#include "platform/linux/autostart/ExecLine.h"

namespace noctra {

namespace {

constexpr auto autostart = "/autostart";
constexpr auto entryName = "/org.noctra.Noctra.desktop";
constexpr auto noFolder =
    "there is no configuration folder: neither XDG_CONFIG_HOME nor HOME is an "
    "absolute path that can be used";

// By which a desktop's settings switch an entry off.
constexpr auto desktopsSwitch = "X-GNOME-Autostart-enabled";

/// The absolute paths in a list; others do not count.
std::vector<std::string> absolutePaths(std::string_view list) {
    std::vector<std::string> paths;
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(':'), list.size());
        if (list.front() == '/')
            paths.emplace_back(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return paths;
}

bool isSwitchedOff(const DesktopEntry& entry) {
    return entry.has("Hidden", "true") || entry.has(desktopsSwitch, "false");
}

bool isFile(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

DesktopEntry newEntry() {
    return DesktopEntry("[Desktop Entry]\n"
                        "Type=Application\n"
                        "Version=1.0\n"
                        "Name=Noctra\n"
                        "Comment=Dims and warms every display without backlight flicker\n"
                        "Icon=org.noctra.Noctra\n"
                        "Terminal=false\n"
                        "X-GNOME-Autostart-enabled=true\n");
}

} // namespace

XdgLoginItem::XdgLoginItem(std::string program, Environment environment)
    : program_(std::move(program)), environment_(std::move(environment)) {}

LoginItem::Status XdgLoginItem::status() const {
    const std::string folder = userFolder();
    if (!folder.empty()) {
        const EntryFile own = readEntry(folder + entryName);
        if (!own.error.empty())
            return Status::notFound;
        if (own.text)
            return statusOf(DesktopEntry(*own.text));
    }
    if (const auto system = systemEntry())
        if (const Status status = statusOf(DesktopEntry(*system)); status != Status::notRegistered)
            return status;
    return folder.empty() || !isUsableFolder(folder) ? Status::notFound : Status::notRegistered;
}

std::string XdgLoginItem::registerItem() {
    const std::string folder = userFolder();
    if (folder.empty())
        return noFolder;
    const EntryFile own = readEntry(folder + entryName);
    if (!own.error.empty())
        return own.error;
    if (!own.text && status() == Status::enabled) // system-wide
        return {};
    DesktopEntry entry = own.text ? DesktopEntry(*own.text) : newEntry();
    if (entry.has("Hidden", "true"))
        entry.remove("Hidden");
    if (entry.has(desktopsSwitch, "false"))
        entry.remove(desktopsSwitch);
    entry.set("Type", "Application");
    if (!entry.value("Name"))
        entry.set("Name", "Noctra");
    if (!canRun(entry)) {
        entry.set("Exec", execLineFor(program_));
        entry.remove("TryExec"); // names the old place
    }
    const std::string text = entry.text();
    return text == own.text ? "" : replaceEntry(folder + entryName, text);
}

std::string XdgLoginItem::unregisterItem() {
    const std::string folder = userFolder();
    if (folder.empty())
        return status() == Status::enabled ? noFolder : "";
    const EntryFile own = readEntry(folder + entryName);
    if (!own.error.empty())
        return own.error;
    const auto system = systemEntry();
    if (!system || isSwitchedOff(DesktopEntry(*system)))
        return own.text ? removeEntry(folder + entryName) : "";
    // An entry of the user's hides the system's.
    DesktopEntry entry = own.text ? DesktopEntry(*own.text) : newEntry();
    entry.set("Hidden", "true");
    if (!entry.value("Exec"))
        entry.set("Exec", execLineFor(program_));
    const std::string text = entry.text();
    return text == own.text ? "" : replaceEntry(folder + entryName, text);
}

std::string XdgLoginItem::userFolder() const {
    if (const std::string config = variable("XDG_CONFIG_HOME"); config.starts_with('/'))
        return config + autostart;
    const std::string home = variable("HOME");
    return home.starts_with('/') && isFolder(home) ? home + "/.config" + autostart : "";
}

std::optional<std::string> XdgLoginItem::systemEntry() const {
    const std::string folders = variable("XDG_CONFIG_DIRS");
    for (const std::string& folder : absolutePaths(folders.empty() ? "/etc/xdg" : folders))
        if (auto entry = readEntry(folder + autostart + entryName); entry.text)
            return entry.text;
    return std::nullopt;
}

LoginItem::Status XdgLoginItem::statusOf(const DesktopEntry& entry) const {
    if (isSwitchedOff(entry))
        return Status::requiresApproval;
    // Whatever it runs: it may be a wrapper of the user's, or another copy of the program.
    return entry.has("Type", "Application") && !entry.value("Exec").value_or("").empty()
               ? Status::enabled
               : Status::notRegistered;
}

bool XdgLoginItem::canRun(const DesktopEntry& entry) const {
    const auto arguments = argumentsIn(entry.value("Exec").value_or(""));
    if (arguments.empty() || arguments.front().empty())
        return false;
    const std::string& command = arguments.front();
    if (command.find('/') != std::string::npos)
        return command.starts_with('/') && isFile(command);
    const auto folders = absolutePaths(variable("PATH"));
    return std::any_of(folders.begin(), folders.end(),
                       [&](const std::string& folder) { return isFile(folder + "/" + command); });
}

std::string XdgLoginItem::variable(const char* name) const {
    return environment_(name).value_or("");
}

} // namespace noctra
