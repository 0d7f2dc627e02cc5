// An autostart entry that somebody else wrote, and the path of a program: read, registered and
// taken away again.

#include <optional>
#include <string>

#include "platform/linux/XdgLoginItem.h"
#include "platform/linux/autostart/DesktopEntry.h"
#include "platform/linux/autostart/ExecLine.h"
#include "tests/fuzz/support/Input.h"
#include "tests/fuzz/support/ScratchFolder.h"

using namespace noctra;
using fuzz::require;

namespace {

constexpr auto entryPath = "/autostart/org.noctra.Noctra.desktop";

/// Setting one key changes nothing else.
void checkEntry(const std::string& text, const std::string& exec) {
    DesktopEntry entry(text);
    require(entry.text() == text, "an entry that is not changed stays as it is");
    const auto name = entry.value("Name");
    const auto hidden = entry.value("Hidden");
    entry.set("Exec", exec);
    const DesktopEntry read(entry.text());
    require(read.value("Exec") == exec, "a value that is set is read");
    require(read.value("Name") == name && read.value("Hidden") == hidden, "other values stay");
    entry.remove("Exec");
    require(!DesktopEntry(entry.text()).value("Exec"), "what is removed is gone");
    require(DesktopEntry(entry.text()).value("Name") == name, "other values stay");
}

void checkLoginItem(const std::string& folder, const std::string& text, bool isSystems) {
    const std::string own = folder + "/own";
    const std::string systems = folder + "/systems";
    for (const std::string& place : {own, systems})
        std::filesystem::create_directories(place + "/autostart");
    fuzz::writeFile((isSystems ? systems : own) + entryPath, text);
    XdgLoginItem item("/opt/noctra", [&](const std::string& name) -> std::optional<std::string> {
        if (name == "XDG_CONFIG_HOME")
            return own;
        return name == "XDG_CONFIG_DIRS" ? std::optional(systems) : std::nullopt;
    });
    using Status = LoginItem::Status;
    if (item.registerItem().empty())
        require(item.status() == Status::enabled, "registered is enabled");
    const std::string registered = fuzz::readFile(own + entryPath);
    require(item.registerItem().empty() && fuzz::readFile(own + entryPath) == registered,
            "registering again changes nothing");
    require(item.unregisterItem().empty(), "what was registered can be taken away");
    require(item.status() != Status::enabled, "taken away is not enabled");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchFolder scratch;
    fuzz::Input input(data, size);
    const bool isSystems = input.number<std::uint8_t>() % 2 == 1;
    const std::string path = input.textUpTo('\0');
    const std::string text(fuzz::Input::textIn(input.rest()));

    const std::string exec = execLineFor(path);
    require(exec.find('\n') == std::string::npos, "a value is one line");
    const auto arguments = argumentsIn(exec);
    require(arguments.size() == 1 && arguments[0] == path, "a path is read as it was written");
    std::size_t length = 0;
    for (const std::string& argument : argumentsIn(text))
        length += argument.size();
    require(length <= text.size(), "arguments are made of the line");

    checkEntry(text, exec);
    const std::string folder = scratch.newFolder();
    checkLoginItem(folder, text, isSystems);
    std::filesystem::remove_all(folder);
    return 0;
}
