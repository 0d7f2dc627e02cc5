#pragma once

#include <chrono>
#include <future>
#include <memory>
#include <string>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtDBus/QDBusConnection>

#include "foundation/Clock.h"
#include "foundation/MainQueue.h"

namespace noctra {

/// The program's connection to the session bus, renewed where the bus goes away and another comes
/// to the same address. Main thread, which the renewal does not hold up: it is made on a thread of
/// its own, after delays that double up to a minute. Needs a Qt event loop for that.
class SessionBusLink : public QObject {
    Q_OBJECT
public:
    struct Settings {
        Seconds firstDelay{1};                      ///< before the first new try
        std::chrono::milliseconds answerTime{5000}; ///< how long the bus may take for an answer
    };

    /// `queue` must outlive the link.
    SessionBusLink(MainQueue& queue, Settings settings);
    explicit SessionBusLink(MainQueue& queue);
    /// Waits for a renewal that is being made.
    ~SessionBusLink() override;
    Q_DISABLE_COPY_MOVE(SessionBusLink)

    /// Connects, within twice the answer time; once. Never starts a bus. Returns an empty text, or
    /// why there is no bus to be had; nothing is tried again then.
    [[nodiscard]] std::string open();

    /// The connection of the moment; not connected while there is no bus.
    [[nodiscard]] const QDBusConnection& connection() const { return connection_; }

signals:
    void lost();
    /// There is a new connection, to a bus that knows nothing of this program yet.
    void renewed();

private slots:
    void busWentAway();

private:
    bool adopt();
    void renew();
    void renewalEnded(bool connected);
    void tryLater();

    MainQueue& queue_;
    const Settings settings_;
    Seconds delay_; ///< before the next try
    WorkItem retry_;
    QString name_; ///< Qt's, of the current or the last connection
    QDBusConnection connection_;
    bool isUp_ = false;
    std::future<void> renewal_;
    /// What the renewal's thread asks, on the main thread, before it touches the link.
    const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

} // namespace noctra
