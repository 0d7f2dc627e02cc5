#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

#include "foundation/Clock.h"
#include "foundation/Log.h"
#include "foundation/ThreadSafety.h"
#include "platform/LineOutput.h"
#include "platform/SystemInfo.h"

namespace noctra {

/// The diagnostic log: the last 200 lines in memory, each echoed as it comes. Nothing goes to disk.
///
/// Any thread. The lock is held while a line is stored and echoed; the thread that answers signals
/// is an ordinary thread, so it can wait for it, and the output bounds how long that is.
class DebugLogger : public Log {
public:
    static constexpr std::size_t maxLogs = 200;

    /// The program's one log, created on first use.
    static DebugLogger& shared();

    /// Logs the header: the program's version, the system's name and version, the number of
    /// screens. Everything passed in must outlive the log.
    DebugLogger(const WallClock& clock, const SystemInfo& system, LineOutput& output);

    /// Stores "[HH:mm:ss.SSS] " + `message` (local time, 24 hours); at the 201st line the oldest
    /// goes.
    void log(std::string_view message) override;

    /// The diagnostics for the user to pass on: a header of the moment, then the lines, oldest
    /// first.
    [[nodiscard]] std::string getFullLog() const;

private:
    [[nodiscard]] std::string stamp() const;

    const WallClock& clock_;
    const SystemInfo& system_;
    LineOutput& output_;
    mutable Mutex mutex_;
    std::deque<std::string> logs_ GUARDED_BY(mutex_);
};

} // namespace noctra
