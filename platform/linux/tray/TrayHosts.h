#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include <QtCore/QAbstractNativeEventFilter>
#include <QtCore/QObject>

#include "platform/linux/tray/NotifierHosts.h"

namespace noctra {

class SessionBusLink;

/// Who shows status items on this desktop at the moment: a host of StatusNotifierItems on the
/// session bus, a system tray on the X server (freedesktop.org's protocol by way of XEmbed), both
/// or nobody. Main thread; needs a QGuiApplication.
class TrayHosts : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT
public:
    /// `changed` runs after each change, also of the desktop's settings (XSETTINGS), by which bars
    /// change their looks; first when it is known what is there. `sessionBus` outlives the object;
    /// null: there is none. After a loss of the bus the next one is looked at.
    TrayHosts(SessionBusLink* sessionBus, std::function<void()> changed);
    ~TrayHosts() override;
    Q_DISABLE_COPY_MOVE(TrayHosts)

    [[nodiscard]] bool hasNotifierHost() const { return notifiers_ && notifiers_->isThere(); }
    /// The host of notifier items opens the menu at a left click, too, and reports no left click.
    [[nodiscard]] bool keepsLeftClicks() const {
        return notifiers_ && notifiers_->keepsLeftClicks();
    }
    /// The watcher of notifier items has not said yet whether there is a host. A QSystemTrayIcon
    /// made now would wait for its answer, up to 25 s where it hangs.
    [[nodiscard]] bool notifiersAreSilent() const { return notifiers_ && notifiers_->areSilent(); }
    /// Whether the watcher of notifier items, or the bus, was replaced by another since this was
    /// last asked.
    [[nodiscard]] bool takeReplacement();
    /// Asks the X server.
    [[nodiscard]] bool hasEmbeddingHost() const;
    /// Of the host of StatusNotifierItems; 0: unknown.
    [[nodiscard]] std::uint32_t notifierProcess() const {
        return notifiers_ ? notifiers_->process() : 0;
    }

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void lookOnBus();
    void busLost();

    std::function<void()> changed_;
    SessionBusLink* sessionBus_;
    std::unique_ptr<NotifierHosts> notifiers_; ///< none while there is no bus
    bool busReplaced_ = false;
    std::uint32_t selection_ = 0; ///< atoms; 0 where there is no X server
    std::uint32_t manager_ = 0;
    std::uint32_t settings_ = 0;
};

} // namespace noctra
