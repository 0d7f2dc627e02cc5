#pragma once

#include <chrono>
#include <functional>
#include <memory>

#include "foundation/Clock.h"
#include "foundation/Log.h"
#include "foundation/MainQueue.h"

namespace noctra {

/// Hears from logind, over the system bus, that the machine woke up. Main thread, which is never
/// held up: connections are made on a thread of their own. Needs a Qt event loop in the main
/// thread.
///
/// Where the bus is missing, dies or refuses, one log line says so until it works again, and the
/// bus is tried again after a delay that doubles up to a minute.
class LogindSleep {
public:
    struct Settings {
        Seconds firstDelay{1};                      ///< before the first new try
        std::chrono::milliseconds answerTime{5000}; ///< how long the bus may take for an answer
    };

    /// Begins to connect. Calls `woke` from the main queue after each wake from sleep. `queue` and
    /// `log` must outlive the object.
    LogindSleep(MainQueue& queue, Log& log, std::function<void()> woke, Settings settings);
    LogindSleep(MainQueue& queue, Log& log, std::function<void()> woke);
    LogindSleep(const LogindSleep&) = delete;
    LogindSleep& operator=(const LogindSleep&) = delete;
    /// Waits for a connection that is being made, up to three times the answer time.
    ~LogindSleep();

private:
    class Link;
    std::shared_ptr<Link> link_;
};

} // namespace noctra
