#pragma once

#include <string>
#include <vector>

#include <QtCore/QObject>
#include <QtDBus/QDBusVirtualObject>

#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "platform/UrlChannel.h"
#include "platform/linux/sessionbus/SessionBusLink.h"

namespace noctra {

/// One running program per session, found under a well-known name of the session bus, which hands
/// it the URLs of later starts. It takes the name again on a bus that comes after that bus, or,
/// where another process has been faster there, once that one gives it up. Speaks the interface by
/// which desktops activate programs (org.freedesktop.Application: Activate, Open, ActivateAction).
/// Main thread.
class SessionBusUrlChannel : public QDBusVirtualObject, public UrlChannel {
    Q_OBJECT
public:
    enum class Claim {
        ours,     ///< this process is the session's running program now
        anothers, ///< another process is
        noBus,    ///< there is no session bus to be had; `problem` says more
    };

    /// `bus`, which nobody has opened yet, must outlive the channel.
    SessionBusUrlChannel(MainQueue& mainQueue, SessionBusLink& bus);

    /// Connects to the session bus and asks for the name.
    Claim claim();
    [[nodiscard]] const std::string& problem() const { return problem_; }
    /// Where to say later that the bus has gone, or come back; `log` must outlive the channel.
    void setLog(Log& log) { log_ = &log; }

    /// Hands `urls`, or without any the wish to show the panel, to the running program. Returns an
    /// empty text once it has dealt with them, else why it could not be reached (within 5 s).
    [[nodiscard]] std::string handOver(const std::vector<std::string>& urls);

    /// Queues URLs as if they had arrived.
    void deliver(const std::vector<std::string>& urls);

    std::string setHandlers(Handlers handlers) override;
    void removeHandlers() override;

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private slots:
    void nameAcquired(const QString& name);

private:
    void busWentAway();
    void askForName();
    void nameNotHad(const std::string& reason);
    void say(const std::string& message);
    void receive(const std::vector<std::string>& urls);
    void handOnWaiting();

    MainQueue& mainQueue_;
    Log* log_ = nullptr;
    SessionBusLink& bus_;
    std::string problem_;
    Handlers handlers_;
    bool hasHandlers_ = false;
    std::vector<std::string> waiting_; ///< arrived before there were handlers
};

} // namespace noctra
