#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include <QtCore/QAbstractNativeEventFilter>
#include <QtCore/QObject>
#include <QtCore/QString>

class QDBusPendingCallWatcher;
class QDBusServiceWatcher;

namespace noctra {

/// Who shows status items on this desktop at the moment: a host of StatusNotifierItems on the
/// session bus, a system tray on the X server (freedesktop.org's protocol by way of XEmbed), both
/// or nobody. Main thread; needs a QGuiApplication.
class TrayHosts : public QObject, private QAbstractNativeEventFilter {
    Q_OBJECT
public:
    /// `changed` runs after each change, first when it is known what is there.
    explicit TrayHosts(std::function<void()> changed);
    ~TrayHosts() override;
    Q_DISABLE_COPY_MOVE(TrayHosts)

    [[nodiscard]] bool hasNotifierHost() const { return notifierHost_; }
    /// It is not known yet whether there is such a host; or what keeps the items on the bus does
    /// not answer. Whoever calls that waits for long.
    [[nodiscard]] bool notifiersAreSilent() const { return silent_; }
    /// Whether the keeper of notifier items was replaced by another since this was last asked.
    [[nodiscard]] bool takeReplacement() { return std::exchange(replaced_, false); }
    /// Asks the X server.
    [[nodiscard]] bool hasEmbeddingHost() const;
    /// Of the host of StatusNotifierItems; 0: unknown.
    [[nodiscard]] std::uint32_t notifierProcess() const { return process_; }

private slots:
    void ask();

private:
    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;
    void ownerChanged(const QString& owner);
    void answered(const QDBusPendingCallWatcher& call);
    void set(bool notifierHost);

    std::function<void()> changed_;
    QDBusServiceWatcher* watcher_ = nullptr;
    QString owner_; ///< the watcher's own name on the bus; empty: there is none
    bool notifierHost_ = false;
    bool silent_ = false; ///< asked, and without an answer
    bool replaced_ = false;
    std::uint32_t process_ = 0;
    std::uint32_t selection_ = 0; ///< atoms; 0 where there is no X server
    std::uint32_t manager_ = 0;
};

} // namespace noctra
