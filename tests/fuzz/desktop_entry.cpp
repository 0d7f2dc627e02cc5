// An autostart entry that somebody else wrote, and the path of a program to write into it.

#include <string>

#include "platform/linux/autostart/DesktopEntry.h"
#include "platform/linux/autostart/ExecLine.h"
#include "tests/fuzz/Fuzz.h"

using namespace noctra;
using fuzz::require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view all = fuzz::textIn(data, size);
    const std::string path(all.substr(0, all.find('\0')));
    const std::string_view text = all.substr(std::min(path.size() + 1, all.size()));

    const std::string exec = execLineFor(path);
    require(exec.find('\n') == std::string::npos, "a value is one line");
    const auto arguments = argumentsIn(exec);
    require(arguments.size() == 1 && arguments[0] == path, "a path is read as it was written");
    static_cast<void>(argumentsIn(std::string(text)));

    DesktopEntry entry(text);
    require(entry.text() == text, "an entry that is not changed stays as it is");
    const auto name = entry.value("Name");
    entry.set("Exec", exec);
    const DesktopEntry read(entry.text());
    require(read.value("Exec") == exec && read.value("Name") == name, "one value is set");
    entry.remove("Exec");
    require(!DesktopEntry(entry.text()).value("Exec"), "what is removed is gone");
    return 0;
}
