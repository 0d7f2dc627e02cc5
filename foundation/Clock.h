#pragma once

#include <chrono>
#include <ctime>

namespace noctra {

/// A length of time in seconds, as the program's constants are written.
using Seconds = std::chrono::duration<double>;

/// Time that only moves forward; what delays and timers are measured with. Any thread.
class SteadyClock {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    virtual ~SteadyClock() = default;
    [[nodiscard]] virtual TimePoint now() const = 0;
};

/// The time of day; it jumps when the user or the network sets it. Any thread.
class WallClock {
public:
    using TimePoint = std::chrono::system_clock::time_point;

    virtual ~WallClock() = default;
    [[nodiscard]] virtual TimePoint now() const = 0;
    /// `time` broken down in the process's time zone.
    [[nodiscard]] virtual std::tm localTime(TimePoint time) const = 0;
};

} // namespace noctra
