#pragma once

#include <algorithm>
#include <chrono>

namespace noctra::display_services {

using TimePoint = std::chrono::steady_clock::time_point;

/// When something that fails is tried again: after pauses that double, and never end. No thread and
/// no clock of its own.
class Retries {
public:
    using Pause = std::chrono::milliseconds;

    /// The pause after the first failure in a row, and the one that is not exceeded.
    Retries(Pause first, Pause longest) : first_(first), longest_(longest) {}

    /// The next try fits then. There is little time once the process is `finishing`.
    [[nodiscard]] TimePoint due(bool finishing) const {
        return finishing ? std::min(due_, failedAt_ + first_) : due_;
    }
    void failed(TimePoint now) {
        pause_ = std::clamp(pause_ * 2, first_, longest_);
        failedAt_ = now;
        due_ = now + pause_;
    }
    /// There is reason to expect that the next try succeeds: it comes soon, once.
    void hurry() { due_ = std::min(due_, failedAt_ + first_); }
    /// Nothing has failed.
    void reset() { *this = Retries(first_, longest_); }

private:
    Pause first_;
    Pause longest_;
    Pause pause_{0};
    TimePoint failedAt_{};
    TimePoint due_{};
};

} // namespace noctra::display_services
