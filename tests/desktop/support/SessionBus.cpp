#include "tests/desktop/support/SessionBus.h"

#include <array>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

#include "tests/desktop/support/LineReader.h"

namespace noctra::desktop {

namespace {

// No service folders: nothing can be started over this bus.
std::string configuration(const std::string& socket) {
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>unix:path=" +
           socket +
           "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
           "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
           "<allow own=\"*\"/></policy></busconfig>\n";
}

} // namespace

SessionBus::SessionBus() {
    const std::string file = folder_ / "bus.conf";
    writeFile(file, configuration(folder_ / "bus"));
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe can be made");
    ChildProcess::Start start;
    start.arguments = {"dbus-daemon",           "--nofork",
                       "--nopidfile",           "--nosyslog",
                       "--config-file=" + file, "--print-address=" + std::to_string(ends[1])};
    start.environment = {"PATH=/usr/bin:/bin"};
    start.kept = ends[1];
    process_ = std::make_unique<ChildProcess>(start);
    close(ends[1]);
    const LineReader reader(ends[0]);
    reader.waitUntil(patience, [](const auto& lines) { return !lines.empty(); });
    if (reader.lines().empty())
        throw std::runtime_error("the session bus did not come up");
    address_ = reader.lines().front();
}

} // namespace noctra::desktop
