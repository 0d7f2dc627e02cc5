#pragma once

#include <chrono>
#include <future>
#include <optional>

#include <QDBusConnection>
#include <QString>
#include <QVariantList>

namespace noctra {

/// Calls to services of the system bus that are made in passes, each of which ends in bounded time.
///
/// Has a connection of its own, made when it is first needed and again in the pass after it broke.
/// On any thread, one at a time; it needs no event loop. Only its end is unbounded: it waits for a
/// connection that is being made to a bus that does not answer.
class BoundedSystemBus {
public:
    struct Method {
        const char* service;
        QString path;
        const char* interface;
        const char* name;
        const char* answers; ///< the D-Bus signature of a right answer
    };

    BoundedSystemBus();
    BoundedSystemBus(const BoundedSystemBus&) = delete;
    BoundedSystemBus& operator=(const BoundedSystemBus&) = delete;
    ~BoundedSystemBus();

    /// Starts a pass: all its calls together may wait for `budget` (within the timer's precision, a
    /// twentieth).
    void beginPass(std::chrono::milliseconds budget);

    /// Calls `method` without starting its service. Gives nothing when the answer is an error or
    /// has another signature, and at once when the pass is over: a call got no answer in time,
    /// there is no bus, or no pass has begun.
    std::optional<QVariantList> call(const Method& method, const QVariantList& arguments);

private:
    using Clock = std::chrono::steady_clock;

    bool isConnected();
    void disconnect();

    const QString name_;
    std::optional<QDBusConnection> connection_;
    std::future<QDBusConnection> connecting_;   // valid while a connection is being made
    std::optional<Clock::time_point> deadline_; // nothing: the pass is over
};

} // namespace noctra
