#pragma once

#include <cstdint>
#include <functional>
#include <utility>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtDBus/QDBusConnection>

class QDBusPendingCallWatcher;

namespace noctra {

/// Whether there is a host of StatusNotifierItems on a session bus, for as long as the connection
/// lasts. Main thread, which never waits for an answer.
class NotifierHosts : public QObject {
    Q_OBJECT
public:
    /// `changed` runs after each change, first when it is known what is there.
    NotifierHosts(QDBusConnection bus, std::function<void()> changed);
    Q_DISABLE_COPY_MOVE(NotifierHosts)

    [[nodiscard]] bool isThere() const { return isThere_; }
    /// The host opens an item's menu at a left click, too.
    [[nodiscard]] bool keepsLeftClicks() const { return keepsLeftClicks_; }
    /// The watcher of the items has not said yet whether there is a host.
    [[nodiscard]] bool areSilent() const { return silent_; }
    /// Whether the watcher was replaced by another since this was last asked.
    [[nodiscard]] bool takeReplacement() { return std::exchange(replaced_, false); }
    /// The host's; 0: unknown.
    [[nodiscard]] std::uint32_t process() const { return process_; }

private slots:
    void ask();

private:
    void ownerChanged(const QString& owner);
    void answered(const QDBusPendingCallWatcher& call);
    void set(bool isThere);

    QDBusConnection bus_;
    std::function<void()> changed_;
    QString owner_; ///< the watcher's own name on the bus; empty: there is none
    bool isThere_ = false;
    bool silent_ = true; ///< asked, and without an answer
    bool replaced_ = false;
    bool keepsLeftClicks_ = false;
    std::uint32_t process_ = 0;
};

} // namespace noctra
