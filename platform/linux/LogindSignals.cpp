#include "platform/linux/LogindSignals.h"

#include <utility>

#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusError>
#include <QtDBus/QDBusMessage>

#include "platform/linux/systembus/BusProbe.h"

namespace noctra {

namespace {

constexpr auto logind = "org.freedesktop.login1";
constexpr auto manager = "/org/freedesktop/login1";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";
constexpr auto signalName = "PrepareForSleep";

/// QtDBus asks the bus for signals too, but does not look at the answer.
QString askForSignal(const QDBusConnection& bus, std::chrono::milliseconds answerTime) {
    auto request = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("AddMatch"));
    request << QStringLiteral("type='signal',sender='%1',path='%2',interface='%3',member='%4'")
                   .arg(logind, manager, managerInterface, signalName);
    const QDBusMessage answer =
        bus.call(request, QDBus::Block, static_cast<int>(answerTime.count()));
    return answer.type() == QDBusMessage::ReplyMessage ? QString() : answer.errorMessage();
}

} // namespace

LogindSignals::LogindSignals(std::function<void()> woke, std::function<void(const QString&)> lost)
    : woke_(std::move(woke)), lost_(std::move(lost)) {}

std::string LogindSignals::subscribe(const Connection& connection, LogindSignals& receiver) {
    if (!connection.previousName.isEmpty())
        QDBusConnection::disconnectFromBus(connection.previousName);
    if (const auto reason = whyBusIsSilent(systemBusAddress(), connection.answerTime);
        !reason.empty())
        return "no system bus (" + reason + ")";
    // As the system bus and not by its address: by address, QtDBus aborts the process where a bus
    // accepts the connection but does not register it.
    auto bus = QDBusConnection::connectToBus(QDBusConnection::SystemBus, connection.name);
    if (!bus.isConnected())
        return "no system bus (" + bus.lastError().message().toStdString() + ")";
    bus.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                QStringLiteral("org.freedesktop.DBus.Local"), QStringLiteral("Disconnected"),
                &receiver, SLOT(busWentAway()));
    if (const QString reason = askForSignal(bus, connection.answerTime); !reason.isEmpty())
        return "the system bus refuses (" + reason.toStdString() + ")";
    // Looks up who logind is and waits for the answer: only its signals count.
    const bool connected = bus.connect(logind, manager, managerInterface, signalName, &receiver,
                                       SLOT(prepareForSleep(bool)));
    return connected && bus.isConnected() ? "" : "the system bus went away";
}

void LogindSignals::prepareForSleep(bool asleep) {
    if (!asleep)
        woke_();
}

void LogindSignals::busWentAway() {
    lost_(connection().name());
}

} // namespace noctra
