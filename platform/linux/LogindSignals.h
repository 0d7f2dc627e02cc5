#pragma once

#include <chrono>
#include <functional>
#include <string>

#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtDBus/QDBusContext>

namespace noctra {

/// Receives what comes over connections to the system bus, on the thread that made the object.
/// Its end waits for QtDBus's own thread.
class LogindSignals : public QObject, public QDBusContext {
    Q_OBJECT
public:
    /// `lost` is told the name of a connection that has ended.
    LogindSignals(std::function<void()> woke, std::function<void(const QString& name)> lost);

    struct Connection {
        QString name;         ///< for the new connection, among those of the process
        QString previousName; ///< of a connection to give up first; may be empty
        std::chrono::milliseconds answerTime;
    };
    /// Connects to the system bus and has its signals delivered to `receiver`. Returns an empty
    /// text on success, else why not. Takes up to three times the answer time: not for the main
    /// thread.
    [[nodiscard]] static std::string subscribe(const Connection& connection,
                                               LogindSignals& receiver);

private slots:
    void prepareForSleep(bool asleep);
    void busWentAway();

private:
    const std::function<void()> woke_;
    const std::function<void(const QString&)> lost_;
};

} // namespace noctra
