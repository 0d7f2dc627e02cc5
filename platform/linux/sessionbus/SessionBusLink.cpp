#include "platform/linux/sessionbus/SessionBusLink.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtDBus/QDBusError>

#include "platform/linux/systembus/BusProbe.h"

namespace noctra {

namespace {

using std::chrono::milliseconds;

constexpr Seconds longestDelay{60};
constexpr auto addressVariable = "DBUS_SESSION_BUS_ADDRESS";

QString unusedName() {
    static int count = 0;
    return QStringLiteral("noctra-session-%1").arg(++count);
}

/// The session bus's address: the environment's, else the user bus's socket; never a bus for which
/// a program would have to be started. Without the bus's GUID: one that is started again has
/// another.
QString sessionBusAddress() {
    const QString address = qEnvironmentVariable(addressVariable);
    if (!address.isEmpty()) {
        QStringList ways = address.split(';');
        ways.removeIf([](const QString& way) {
            return way.startsWith(QLatin1String("autolaunch:")) ||
                   way.startsWith(QLatin1String("unixexec:"));
        });
        return ways.join(';').remove(QRegularExpression(QStringLiteral(",guid=[0-9a-f]+")));
    }
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (runtime.isEmpty() || !QFileInfo::exists(runtime + "/bus"))
        return {};
    return "unix:path=" + runtime + "/bus";
}

/// Makes a connection with that name. Returns an empty text, or why there is none. It takes as long
/// as a bus takes that has answered once; any thread.
std::string connectToSessionBus(const QString& name, milliseconds answerTime) {
    const std::string address = qgetenv(addressVariable).toStdString();
    if (const std::string silence = whyBusIsSilent(address, answerTime); !silence.empty())
        return silence;
    // By its role, not by its address: Qt 6.4 stops the process where a bus at an address refuses
    // to let it in.
    const auto bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name);
    return bus.isConnected() ? "" : bus.lastError().message().toStdString();
}

} // namespace

SessionBusLink::SessionBusLink(MainQueue& queue, Settings settings)
    : queue_(queue), settings_(settings), delay_(settings.firstDelay),
      retry_(queue, [this] { renew(); }), name_(unusedName()), connection_(name_) {}

SessionBusLink::SessionBusLink(MainQueue& queue) : SessionBusLink(queue, Settings{}) {}

SessionBusLink::~SessionBusLink() {
    if (renewal_.valid())
        renewal_.wait();
    QDBusConnection::disconnectFromBus(name_);
}

std::string SessionBusLink::open() {
    const QString address = sessionBusAddress();
    if (address.isEmpty())
        return "no session bus (DBUS_SESSION_BUS_ADDRESS names none that runs)";
    qputenv(addressVariable, address.toUtf8());
    // Connecting takes no time limit, so it gets a thread. One that is stuck is left to the end of
    // the process: nothing could make it stop.
    auto* const connecting = new std::future<std::string>(
        std::async(std::launch::async, [name = name_, answerTime = settings_.answerTime] {
            return connectToSessionBus(name, answerTime);
        }));
    if (connecting->wait_for(2 * settings_.answerTime) != std::future_status::ready)
        return "no session bus (it does not answer)";
    std::string problem = connecting->get();
    delete connecting;
    if (problem.empty() && !adopt())
        problem = "it went away";
    return problem.empty() ? problem : "no session bus (" + problem + ")";
}

/// Takes the connection called `name_`. Returns whether the bus is still there; if not, that is not
/// reported.
bool SessionBusLink::adopt() {
    connection_ = QDBusConnection(name_);
    connection_.connect({}, QStringLiteral("/org/freedesktop/DBus/Local"),
                        QStringLiteral("org.freedesktop.DBus.Local"),
                        QStringLiteral("Disconnected"), this, SLOT(busWentAway()));
    isUp_ = connection_.isConnected();
    return isUp_;
}

void SessionBusLink::busWentAway() {
    if (!isUp_ || connection_.isConnected())
        return; // news of an earlier connection
    isUp_ = false;
    tryLater();
    emit lost();
}

void SessionBusLink::tryLater() {
    retry_.schedule(delay_);
    delay_ = std::min(delay_ * 2, longestDelay);
}

void SessionBusLink::renew() {
    const QString previous = std::exchange(name_, unusedName());
    try {
        renewal_ = std::async(std::launch::async, [this, previous, name = name_, &queue = queue_,
                                                   answerTime = settings_.answerTime,
                                                   alive = std::weak_ptr(alive_)] {
            QDBusConnection::disconnectFromBus(previous);
            const bool connected = connectToSessionBus(name, answerTime).empty();
            queue.async([this, alive, connected] {
                if (alive.lock())
                    renewalEnded(connected);
            });
        });
    } catch (const std::system_error&) { // no thread to be had
        name_ = previous;
        tryLater();
    }
}

void SessionBusLink::renewalEnded(bool connected) {
    renewal_.get();
    if (!connected || !adopt())
        return tryLater();
    delay_ = settings_.firstDelay;
    emit renewed();
}

} // namespace noctra
