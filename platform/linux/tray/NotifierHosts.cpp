#include "platform/linux/tray/NotifierHosts.h"

#include <QtCore/QTimer>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusServiceWatcher>

namespace noctra {

namespace {

// KDE's name for it is the one in use, also elsewhere.
constexpr auto watcherName = "org.kde.StatusNotifierWatcher";
constexpr auto shellName = "org.gnome.Shell";
constexpr auto watcherPath = "/StatusNotifierWatcher";
constexpr auto registeredProperty = "IsStatusNotifierHostRegistered";
constexpr int answerMilliseconds = 1000;
constexpr int retryMilliseconds = 5000;

/// Runs `receive` with the reply's first argument, unless it is an error or another type.
template <typename Value, typename Receive>
void onReply(QObject* context, const QDBusPendingCall& call, Receive receive) {
    auto* const watcher = new QDBusPendingCallWatcher(call, context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context,
                     [receive](QDBusPendingCallWatcher* finished) {
                         const QDBusPendingReply<Value> reply = *finished;
                         finished->deleteLater();
                         receive(reply.isError() ? Value() : reply.value());
                     });
}

} // namespace

NotifierHosts::NotifierHosts(QDBusConnection bus, std::function<void()> changed)
    : bus_(std::move(bus)), changed_(std::move(changed)) {
    const auto* const owners =
        new QDBusServiceWatcher(watcherName, bus_, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owners, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { ownerChanged(owner); });
    for (const char* const signal :
         {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        bus_.connect({}, watcherPath, watcherName, signal, this, SLOT(ask()));
    onReply<QString>(this, bus_.interface()->asyncCall("GetNameOwner", watcherName),
                     [this](const QString& owner) { ownerChanged(owner); });
}

void NotifierHosts::ownerChanged(const QString& owner) {
    replaced_ = replaced_ || (!owner_.isEmpty() && !owner.isEmpty());
    owner_ = owner;
    process_ = 0;
    keepsLeftClicks_ = false;
    silent_ = !owner.isEmpty();
    if (owner.isEmpty()) {
        set(false);
        return;
    }
    onReply<uint>(this, bus_.interface()->asyncCall("GetConnectionUnixProcessID", owner),
                  [this, owner](uint process) {
                      if (owner == owner_)
                          process_ = process;
                  });
    // GNOME's extension for such items runs inside the shell, on the shell's connection.
    onReply<QString>(this, bus_.interface()->asyncCall("GetNameOwner", shellName),
                     [this, owner](const QString& shell) {
                         if (owner == owner_)
                             keepsLeftClicks_ = shell == owner;
                     });
    ask();
}

void NotifierHosts::ask() {
    if (owner_.isEmpty())
        return;
    // To the watcher's own name: a call to the well-known one may start a program.
    QDBusMessage question = QDBusMessage::createMethodCall(
        owner_, watcherPath, "org.freedesktop.DBus.Properties", "Get");
    question.setArguments({QString(watcherName), QString(registeredProperty)});
    auto* const call =
        new QDBusPendingCallWatcher(bus_.asyncCall(question, answerMilliseconds), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, owner = owner_](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (owner == owner_)
                    answered(*finished);
            });
}

void NotifierHosts::answered(const QDBusPendingCallWatcher& call) {
    const QDBusPendingReply<QDBusVariant> reply = call;
    silent_ = reply.isError() && reply.error().type() == QDBusError::NoReply;
    if (silent_)
        QTimer::singleShot(retryMilliseconds, this, &NotifierHosts::ask);
    set(!reply.isError() && reply.value().variant().toBool());
}

void NotifierHosts::set(bool isThere) {
    isThere_ = isThere;
    changed_();
}

} // namespace noctra
