#include "platform/linux/tray/TrayHosts.h"

#include <utility>

#include <QtCore/QCoreApplication>

#include "platform/linux/Xcb.h"
#include "platform/linux/sessionbus/SessionBusLink.h"
#include "platform/linux/tray/QtX11.h"

namespace noctra {

TrayHosts::TrayHosts(SessionBusLink* sessionBus, std::function<void()> changed)
    : changed_(std::move(changed)), sessionBus_(sessionBus) {
    if (xcb_connection_t* const connection = qtXConnection()) {
        selection_ = internAtom(connection, "_NET_SYSTEM_TRAY_S0");
        manager_ = internAtom(connection, "MANAGER");
        settings_ = internAtom(connection, "_XSETTINGS_SETTINGS");
        QCoreApplication::instance()->installNativeEventFilter(this);
    }
    if (sessionBus_ != nullptr) {
        connect(sessionBus_, &SessionBusLink::lost, this, &TrayHosts::busLost);
        connect(sessionBus_, &SessionBusLink::renewed, this, &TrayHosts::lookOnBus);
    }
    if (sessionBus_ != nullptr && sessionBus_->connection().isConnected())
        lookOnBus();
    else
        QMetaObject::invokeMethod(
            this, [this] { changed_(); }, Qt::QueuedConnection);
}

TrayHosts::~TrayHosts() {
    if (QCoreApplication* const application = QCoreApplication::instance())
        application->removeNativeEventFilter(this);
}

void TrayHosts::lookOnBus() {
    notifiers_ = std::make_unique<NotifierHosts>(sessionBus_->connection(), changed_);
}

/// An item's own connection has gone, too.
void TrayHosts::busLost() {
    notifiers_.reset();
    busReplaced_ = true;
    changed_();
}

bool TrayHosts::takeReplacement() {
    const bool hostReplaced = notifiers_ && notifiers_->takeReplacement();
    return std::exchange(busReplaced_, false) || hostReplaced;
}

bool TrayHosts::hasEmbeddingHost() const {
    xcb_connection_t* const connection = qtXConnection();
    return connection != nullptr && selection_ != XCB_NONE &&
           selectionOwner(connection, selection_) != XCB_NONE;
}

/// A tray announces itself to all of the root's clients when it takes the selection; settings
/// change on a window that Qt itself watches.
bool TrayHosts::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto* const event = static_cast<const xcb_generic_event_t*>(message);
    const auto* const news = reinterpret_cast<const xcb_client_message_event_t*>(event);
    const auto* const change = reinterpret_cast<const xcb_property_notify_event_t*>(event);
    const int kind = event->response_type & 0x7f;
    if ((kind == XCB_CLIENT_MESSAGE && news->type == manager_ && news->format == 32 &&
         news->data.data32[1] == selection_) ||
        (kind == XCB_PROPERTY_NOTIFY && change->atom == settings_))
        QMetaObject::invokeMethod(
            this, [this] { changed_(); }, Qt::QueuedConnection);
    return false;
}

} // namespace noctra
