#include "platform/linux/LogindSleep.h"

#include <algorithm>
#include <atomic>
#include <future>
#include <system_error>
#include <utility>

#include <QtDBus/QDBusConnection>

#include "platform/linux/LogindSignals.h"

namespace noctra {

namespace {

constexpr Seconds longestDelay{60};
constexpr auto busWentAway = "the system bus went away";

QString unusedConnectionName() {
    static std::atomic<int> count = 0;
    return QStringLiteral("noctra-logind-%1").arg(++count);
}

} // namespace

/// Everything belongs to the main thread, but what `connecting_` runs.
class LogindSleep::Link : public std::enable_shared_from_this<Link> {
public:
    Link(MainQueue& queue, Log& log, std::function<void()> woke, Settings settings)
        : queue_(queue), log_(log), woke_(std::move(woke)), settings_(std::move(settings)),
          delay_(settings_.firstDelay), retry_(queue, [this] { connect(); }),
          signals_([this] { deliver(); }, [this](const QString& name) { lost(name); }) {}
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;
    ~Link() {
        if (connecting_.valid())
            connecting_.wait();
        if (!name_.isEmpty())
            QDBusConnection::disconnectFromBus(name_);
    }

    void connect();

private:
    void connectingEnded(const std::string& reason);
    void lost(const QString& name);
    void failed(const std::string& reason);
    void deliver();

    MainQueue& queue_;
    Log& log_;
    const std::function<void()> woke_;
    const Settings settings_;
    Seconds delay_; ///< before the next try
    WorkItem retry_;
    enum class State { apart, connected, lost } state_ = State::apart;
    bool hasComplained_ = false; ///< since it last worked
    QString name_;               ///< of the current or the last connection
    LogindSignals signals_;
    std::future<void> connecting_; ///< the thread uses `signals_`
};

void LogindSleep::Link::connect() {
    const QString previousName = std::exchange(name_, unusedConnectionName());
    state_ = State::apart;
    const LogindSignals::Connection connection{name_, previousName, settings_.answerTime};
    try {
        connecting_ =
            std::async(std::launch::async, [connection, &queue = queue_, &receiver = signals_,
                                            weak = weak_from_this()] {
                queue.async([weak, reason = LogindSignals::subscribe(connection, receiver)] {
                    if (const auto self = weak.lock())
                        self->connectingEnded(reason);
                });
            });
    } catch (const std::system_error& error) { // no thread to be had
        name_ = previousName;
        failed(error.code().message());
    }
}

void LogindSleep::Link::connectingEnded(const std::string& reason) {
    connecting_.get();
    if (!reason.empty())
        return failed(reason);
    if (state_ == State::lost)
        return failed(busWentAway);
    state_ = State::connected;
    hasComplained_ = false;
    delay_ = settings_.firstDelay;
}

void LogindSleep::Link::lost(const QString& name) {
    if (name != name_) // given up already
        return;
    if (std::exchange(state_, State::lost) == State::connected)
        failed(busWentAway);
}

void LogindSleep::Link::failed(const std::string& reason) {
    if (!std::exchange(hasComplained_, true))
        log_.log("ERROR: Wake from sleep cannot be noticed: " + reason);
    retry_.schedule(delay_);
    delay_ = std::min(delay_ * 2, longestDelay);
}

void LogindSleep::Link::deliver() {
    queue_.async([weak = weak_from_this()] {
        if (const auto self = weak.lock())
            self->woke_();
    });
}

LogindSleep::LogindSleep(MainQueue& queue, Log& log, std::function<void()> woke, Settings settings)
    : link_(std::make_shared<Link>(queue, log, std::move(woke), std::move(settings))) {
    link_->connect();
}

LogindSleep::LogindSleep(MainQueue& queue, Log& log, std::function<void()> woke)
    : LogindSleep(queue, log, std::move(woke), Settings{}) {}

LogindSleep::~LogindSleep() = default;

} // namespace noctra
