#include "tests/desktop/support/SessionBus.h"

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

SessionBus::SessionBus()
    : bus_(startMessageBus(folder_ / "bus.conf", configuration(folder_ / "bus"))) {}

} // namespace noctra::desktop
