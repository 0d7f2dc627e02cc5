#include "tests/desktop/support/SystemBus.h"

#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtDBus/QDBusArgument>
#include <algorithm>

#include "tests/desktop/support/BusClient.h"
#include "tests/desktop/support/MessageBus.h"

namespace noctra::desktop {

namespace {

// No service folders: nothing can be started over this bus.
std::string configuration(const std::string& address, const std::string& rules) {
    return "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\"\n"
           " \"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
           "<busconfig><listen>" +
           address +
           "</listen><auth>EXTERNAL</auth><policy context=\"default\">"
           "<allow send_destination=\"*\" eavesdrop=\"true\"/><allow eavesdrop=\"true\"/>"
           "<allow own=\"*\"/></policy>" +
           rules + "</busconfig>\n";
}

} // namespace

std::string SystemBus::address() const {
    return "unix:path=" + (folder_ / "system-bus").string();
}

void SystemBus::start(const std::string& rules) {
    kill();
    std::filesystem::remove(folder_ / "system-bus");
    process_ = startMessageBus(folder_ / "bus.conf", configuration(address(), rules)).process;
}

void SystemBus::kill() {
    if (!process_)
        return;
    process_->signal(SIGKILL);
    process_->waitForEnding(patience);
    process_.reset();
}

bool SystemBus::hasSleepListener() const {
    const QVariantList answer =
        BusClient(address()).call("org.freedesktop.DBus", "/org/freedesktop/DBus",
                                  "org.freedesktop.DBus.Debug.Stats", "GetAllMatchRules");
    const auto rules = qdbus_cast<QMap<QString, QStringList>>(answer.value(0));
    return std::any_of(rules.begin(), rules.end(), [](const QStringList& ofClient) {
        // The program asks once to see the bus's answer, and QtDBus asks once more.
        return ofClient.filter(QStringLiteral("PrepareForSleep")).size() >= 2;
    });
}

} // namespace noctra::desktop
