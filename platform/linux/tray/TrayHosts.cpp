#include "platform/linux/tray/TrayHosts.h"

#include <utility>

#include <QtCore/QCoreApplication>
#include <QtCore/QTimer>
#include <QtDBus/QDBusConnection>
#include <QtDBus/QDBusConnectionInterface>
#include <QtDBus/QDBusMessage>
#include <QtDBus/QDBusPendingCallWatcher>
#include <QtDBus/QDBusPendingReply>
#include <QtDBus/QDBusServiceWatcher>

#include "platform/linux/XConnection.h"
#include "platform/linux/tray/QtX11.h"

namespace noctra {

namespace {

// KDE's name for it is the one in use, also elsewhere.
constexpr auto watcherName = "org.kde.StatusNotifierWatcher";
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

TrayHosts::TrayHosts(std::function<void()> changed) : changed_(std::move(changed)) {
    if (xcb_connection_t* const connection = qtXConnection()) {
        selection_ = internAtom(connection, "_NET_SYSTEM_TRAY_S0");
        manager_ = internAtom(connection, "MANAGER");
        QCoreApplication::instance()->installNativeEventFilter(this);
    }
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        QMetaObject::invokeMethod(
            this, [this] { changed_(); }, Qt::QueuedConnection);
        return;
    }
    watcher_ =
        new QDBusServiceWatcher(watcherName, bus, QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher_, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString&, const QString&, const QString& owner) { ownerChanged(owner); });
    for (const char* const signal :
         {"StatusNotifierHostRegistered", "StatusNotifierHostUnregistered"})
        bus.connect({}, watcherPath, watcherName, signal, this, SLOT(ask()));
    silent_ = true;
    onReply<QString>(this, bus.interface()->asyncCall("GetNameOwner", watcherName),
                     [this](const QString& owner) { ownerChanged(owner); });
}

TrayHosts::~TrayHosts() {
    if (QCoreApplication* const application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
}

void TrayHosts::ownerChanged(const QString& owner) {
    replaced_ = replaced_ || (!owner_.isEmpty() && !owner.isEmpty());
    owner_ = owner;
    process_ = 0;
    silent_ = !owner.isEmpty();
    if (owner.isEmpty()) {
        set(false);
        return;
    }
    onReply<uint>(
        this,
        QDBusConnection::sessionBus().interface()->asyncCall("GetConnectionUnixProcessID", owner),
        [this, owner](uint process) {
            if (owner == owner_)
                process_ = process;
        });
    ask();
}

void TrayHosts::ask() {
    if (owner_.isEmpty())
        return;
    // Its own name: nothing shall be started by asking.
    QDBusMessage question = QDBusMessage::createMethodCall(
        owner_, watcherPath, "org.freedesktop.DBus.Properties", "Get");
    question.setArguments({QString(watcherName), QString(registeredProperty)});
    auto* const call = new QDBusPendingCallWatcher(
        QDBusConnection::sessionBus().asyncCall(question, answerMilliseconds), this);
    connect(call, &QDBusPendingCallWatcher::finished, this,
            [this, owner = owner_](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (owner == owner_)
                    answered(*finished);
            });
}

void TrayHosts::answered(const QDBusPendingCallWatcher& call) {
    const QDBusPendingReply<QDBusVariant> reply = call;
    silent_ = reply.isError() && reply.error().type() == QDBusError::NoReply;
    if (silent_)
        QTimer::singleShot(retryMilliseconds, this, &TrayHosts::ask);
    set(!reply.isError() && reply.value().variant().toBool());
}

void TrayHosts::set(bool notifierHost) {
    notifierHost_ = notifierHost;
    changed_();
}

bool TrayHosts::hasEmbeddingHost() const {
    xcb_connection_t* const connection = qtXConnection();
    if (connection == nullptr || selection_ == XCB_NONE)
        return false;
    const XcbReply<xcb_get_selection_owner_reply_t> reply(xcb_get_selection_owner_reply(
        connection, xcb_get_selection_owner(connection, selection_), nullptr));
    return reply && reply->owner != XCB_NONE;
}

/// A tray announces itself to all of the root's clients when it takes the selection.
bool TrayHosts::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
        return false;
    const auto* const news = reinterpret_cast<const xcb_client_message_event_t*>(event);
    if (news->type == manager_ && news->format == 32 && news->data.data32[1] == selection_)
        QMetaObject::invokeMethod(
            this, [this] { changed_(); }, Qt::QueuedConnection);
    return false;
}

} // namespace noctra
