#include "tests/desktop/support/MockLogind.h"

#include <QtDBus/QDBusArgument>
#include <QtDBus/QDBusVariant>
#include <stdexcept>
#include <unistd.h>

namespace noctra::desktop {

namespace {

constexpr auto service = "org.freedesktop.login1";
constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto sessionPath = "/org/freedesktop/login1/session/auto";
constexpr auto mock = "org.freedesktop.DBus.Mock";

} // namespace

MockLogind::MockLogind(const SystemBus& bus) {
    ChildProcess::Start start;
    start.arguments = {"/usr/bin/python3", "-m", "dbusmock", "--system", "--template", "logind"};
    start.environment = {"PATH=/usr/bin:/bin", "LANG=C.UTF-8",
                         "DBUS_SYSTEM_BUS_ADDRESS=" + bus.address()};
    process_ = std::make_unique<ChildProcess>(start);
    client_ = std::make_unique<BusClient>(bus.address());
    if (!pollUntil(patience, [this] { return client_->hasService(service); }))
        throw std::runtime_error("the mock of logind did not come up");
    client_->call(service, managerPath, mock, "AddSession",
                  {"auto", "seat0", static_cast<unsigned int>(getuid()), "tester", true});
    refuseBrightness(false);
}

void MockLogind::prepareForSleep(bool asleep) const {
    const QVariantList arguments{QVariant::fromValue(QDBusVariant(asleep))};
    client_->call(service, managerPath, mock, "EmitSignal",
                  {"org.freedesktop.login1.Manager", "PrepareForSleep", "b", arguments});
}

std::vector<MockLogind::BrightnessCall> MockLogind::brightnessCalls() const {
    const auto answer =
        client_->call(service, sessionPath, mock, "GetMethodCalls", {"SetBrightness"});
    const auto array = answer.value(0).value<QDBusArgument>();
    std::vector<BrightnessCall> calls;
    array.beginArray();
    while (!array.atEnd()) {
        quint64 time = 0;
        QVariantList arguments;
        array.beginStructure();
        array >> time >> arguments;
        array.endStructure();
        calls.push_back({arguments.value(0).toString().toStdString(),
                         arguments.value(1).toString().toStdString(), arguments.value(2).toUInt()});
    }
    array.endArray();
    return calls;
}

void MockLogind::refuseBrightness(bool refused) const {
    answerSetBrightness(refused ? "raise dbus.exceptions.DBusException('refused', "
                                  "name='org.freedesktop.DBus.Error.AccessDenied')"
                                : "");
}

void MockLogind::obeyBrightness(const std::string& file) const {
    // Never empty in between: the mock may be killed then.
    answerSetBrightness("with open('" + file +
                        "', 'r+') as f: f.write(str(args[2]) + chr(10)); f.truncate()");
}

void MockLogind::answerSetBrightness(const std::string& code) const {
    client_->call(service, sessionPath, mock, "AddMethod",
                  {"org.freedesktop.login1.Session", "SetBrightness", "ssu", "",
                   QString::fromStdString(code)});
}

} // namespace noctra::desktop
