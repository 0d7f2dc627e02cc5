#include "platform/linux/XdgLoginItem.h"

#include <utility>

#include <sys/stat.h>

#include "platform/linux/autostart/DesktopEntry.h"
#include "platform/linux/autostart/EntryFile.h"
#include "platform/linux/autostart/ExecLine.h"
#include "platform/linux/autostart/StartRules.h"

namespace noctra {

namespace {

constexpr auto autostart = "/autostart";
constexpr auto entryName = "/org.noctra.Noctra.desktop";
constexpr auto noFolder =
    "there is no configuration folder: neither XDG_CONFIG_HOME nor HOME is an "
    "absolute path that can be used";

bool isFolder(const std::string& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
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
    makeStart(entry, session(), execLineFor(program_));
    const std::string text = entry.text();
    return text == own.text ? "" : replaceEntry(folder + entryName, text);
}

std::string XdgLoginItem::unregisterItem() {
    const std::string folder = userFolder();
    const EntryFile own = folder.empty() ? EntryFile{} : readEntry(folder + entryName);
    if (!own.error.empty())
        return own.error;
    if (status() != Status::enabled)
        return {}; // every start of the program asks for what is so already
    if (folder.empty())
        return noFolder;
    const auto system = systemEntry();
    const bool isNeeded = system && statusOf(DesktopEntry(*system)) == Status::enabled;
    if (!isNeeded && own.text == newEntry().text())
        return removeEntry(folder + entryName);
    // The user's entry keeps its other keys; where he has none, a new one hides the system's.
    DesktopEntry entry = own.text ? DesktopEntry(*own.text) : newEntry();
    entry.set("Hidden", "true");
    return replaceEntry(folder + entryName, entry.text());
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
    return isStarted(entry, session()) ? Status::enabled : Status::notRegistered;
}

DesktopEntry XdgLoginItem::newEntry() const {
    return DesktopEntry("[Desktop Entry]\n"
                        "Type=Application\n"
                        "Version=1.0\n"
                        "Name=Noctra\n"
                        "Comment=Dims and warms every display without backlight flicker\n"
                        "Icon=org.noctra.Noctra\n"
                        "Terminal=false\n"
                        "X-GNOME-Autostart-enabled=true\n"
                        "Exec=" +
                        execLineFor(program_) + "\n");
}

AutostartSession XdgLoginItem::session() const {
    return autostartSession(variable("XDG_CURRENT_DESKTOP"), variable("PATH"));
}

std::string XdgLoginItem::variable(const char* name) const {
    return environment_(name).value_or("");
}

} // namespace noctra
