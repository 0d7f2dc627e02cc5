#include "platform/simulated/VirtualTime.h"

#include <utility>

namespace noctra {

std::tm VirtualWallClock::localTime(TimePoint time) const {
    const auto local = time + zone_;
    const auto day = std::chrono::floor<std::chrono::days>(local);
    const std::chrono::year_month_day date(day);
    const std::chrono::hh_mm_ss timeOfDay(std::chrono::floor<std::chrono::seconds>(local - day));
    std::tm parts{};
    parts.tm_year = static_cast<int>(date.year()) - 1900;
    parts.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
    parts.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
    parts.tm_hour = static_cast<int>(timeOfDay.hours().count());
    parts.tm_min = static_cast<int>(timeOfDay.minutes().count());
    parts.tm_sec = static_cast<int>(timeOfDay.seconds().count());
    return parts;
}

void SimulatedRunLoop::watch(int descriptor, std::function<void()> readable) {
    watched_[descriptor] = std::move(readable);
}

void SimulatedRunLoop::unwatch(int descriptor) {
    watched_.erase(descriptor);
}

void SimulatedRunLoop::settle(MainQueue& queue) {
    // Work may submit more work; a chain this long in one moment would be an endless loop.
    for (int turn = 0; turn < 100; ++turn)
        queue.runDue();
}

void SimulatedRunLoop::advance(MainQueue& queue, Seconds time) {
    using Duration = SteadyClock::TimePoint::duration;
    const auto moveTo = [&](SteadyClock::TimePoint moment) {
        wall_.set(wall_.now() + std::chrono::duration_cast<WallClock::TimePoint::duration>(
                                    moment - steady_.now()));
        steady_.set(moment);
    };
    const auto end = steady_.now() + std::chrono::duration_cast<Duration>(time);
    settle(queue);
    while (const auto next = queue.nextDeadline()) {
        if (*next > end)
            break;
        moveTo(std::max(*next, steady_.now()));
        settle(queue);
    }
    moveTo(end);
    settle(queue);
}

void SimulatedRunLoop::makeReadable(int descriptor) {
    if (const auto found = watched_.find(descriptor); found != watched_.end()) {
        const auto readable = found->second;
        readable();
    }
}

} // namespace noctra
