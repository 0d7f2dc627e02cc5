#pragma once

#include <functional>
#include <map>

#include "foundation/Clock.h"
#include "foundation/MainQueue.h"
#include "foundation/RunLoop.h"

namespace noctra {

/// A steady clock that stands still until it is moved.
class VirtualSteadyClock : public SteadyClock {
public:
    [[nodiscard]] TimePoint now() const override { return now_; }
    void set(TimePoint now) { now_ = now; }

private:
    TimePoint now_{};
};

/// A wall clock that is set by hand, in a time zone of its own.
class VirtualWallClock : public WallClock {
public:
    [[nodiscard]] TimePoint now() const override { return now_; }
    [[nodiscard]] std::tm localTime(TimePoint time) const override;

    void set(TimePoint now) { now_ = now; }
    void setZone(std::chrono::minutes eastOfUtc) { zone_ = eastOfUtc; }

private:
    TimePoint now_{};
    std::chrono::minutes zone_{0};
};

/// The main thread's sleep on the simulated desktop: time passes only in `advance`, and then at
/// once. Both clocks move together; a test that wants them apart sets the wall clock.
class SimulatedRunLoop : public RunLoop {
public:
    SimulatedRunLoop(VirtualSteadyClock& steady, VirtualWallClock& wall)
        : steady_(steady), wall_(wall) {}

    void wake() override {}
    void wakeAt(SteadyClock::TimePoint) override {}
    void watch(int descriptor, std::function<void()> readable) override;
    void unwatch(int descriptor) override;

    /// Runs what `queue` has to do now, without letting time pass.
    static void settle(MainQueue& queue);
    /// Lets `time` pass, running everything at the moment at which it is due.
    void advance(MainQueue& queue, Seconds time);
    /// What the main thread does when a watched descriptor becomes readable.
    void makeReadable(int descriptor);
    [[nodiscard]] bool isWatched(int descriptor) const { return watched_.contains(descriptor); }

private:
    VirtualSteadyClock& steady_;
    VirtualWallClock& wall_;
    std::map<int, std::function<void()>> watched_;
};

} // namespace noctra
