#pragma once

#include <QtDBus/QDBusConnection>
#include <string>
#include <vector>

#include "bench/support/Waiting.h"

namespace noctra::desktop {

/// The way in which a desktop hands a URL to the running program: calls over the session bus.
///
/// A call that waits throws std::runtime_error when it is refused or nobody answers it.
class CommandChannel {
public:
    explicit CommandChannel(const std::string& busAddress);
    ~CommandChannel();
    CommandChannel(const CommandChannel&) = delete;
    CommandChannel& operator=(const CommandChannel&) = delete;

    /// Not any more once the bus has gone.
    [[nodiscard]] bool isConnected() const { return connection_.isConnected(); }
    /// Whether a program owns the name under which Noctra is found.
    [[nodiscard]] bool isServed() const;

    /// Hands URLs over and waits until the program has taken them.
    void open(const std::vector<std::string>& urls);
    /// Hands URLs over and goes on at once.
    void openWithoutWaiting(const std::vector<std::string>& urls);
    /// What a desktop calls when the program's entry is chosen again.
    void activate();

private:
    static QDBusConnection connect(const std::string& address, const QString& name);
    void call(const QString& method, const QVariantList& arguments);

    QString name_;
    QDBusConnection connection_;
};

} // namespace noctra::desktop
