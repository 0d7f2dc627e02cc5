#include "tests/desktop/support/SessionBus.h"

#include "tests/desktop/support/MessageBus.h"

namespace noctra::desktop {

namespace {

// No service folders: nothing can be started over this bus.
std::string configuration(const std::string& address) {
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><type>session</type><listen>" +
           address +
           "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
           "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
           "<allow own=\"*\"/></policy></busconfig>\n";
}

} // namespace

SessionBus::SessionBus() {
    restart();
}

std::string SessionBus::address() const {
    return "unix:path=" + (folder_ / "bus").string();
}

void SessionBus::kill() {
    if (!process_)
        return;
    process_->signal(SIGKILL);
    process_->waitForEnding(patience);
    process_.reset();
}

void SessionBus::restart() {
    kill();
    std::filesystem::remove(folder_ / "bus"); // a killed bus leaves it
    process_ = startMessageBus(folder_ / "bus.conf", configuration(address())).process;
}

} // namespace noctra::desktop
