#pragma once

#include <chrono>
#include <optional>

namespace noctra::display_services {

using TimePoint = std::chrono::steady_clock::time_point;

/// What has been asked for of the built-in panel's backlight, and which value is to be written
/// next. No thread of its own and no clock; whoever uses it takes turns.
class PanelBrightness {
public:
    /// A backlight with this highest value is there; 0: none. Forgets failures.
    void setMaximum(unsigned int maximum);

    /// `brightness` from 0.0 to 1.0; `smoothly` in small steps. Replaces what was asked for before.
    void request(float brightness, bool smoothly);
    /// There is a backlight, and not three writes in a row have failed.
    [[nodiscard]] bool canChange() const { return maximum_ > 0 && failures_ < triesInARow; }
    /// True while a request has not been written in full and has not failed for good.
    [[nodiscard]] bool isPending() const { return target_.has_value(); }
    /// What is being asked for, as long as it is pending.
    [[nodiscard]] std::optional<float> pendingBrightness() const;

    /// When the next step of the request comes; nothing when there is none.
    [[nodiscard]] std::optional<TimePoint> due() const;
    /// What to write now, given what the backlight has; nothing when this step changes nothing.
    /// Once the process is `finishing`, the target at once.
    std::optional<unsigned int> step(std::optional<unsigned int> current, TimePoint now,
                                     bool finishing);
    /// The outcome of a write of `value`. True when it began or ended the way to a target.
    bool written(unsigned int value, bool succeeded, TimePoint now);

private:
    static constexpr int triesInARow = 3;

    struct Ramp {
        unsigned int from;
        TimePoint begun;
    };

    unsigned int maximum_ = 0;
    std::optional<unsigned int> target_;
    std::optional<unsigned int> lastWritten_;
    bool smoothly_ = false;
    bool begun_ = false;
    std::optional<Ramp> ramp_;
    TimePoint due_;
    int failures_ = 0; // in a row, over all requests
    int tries_ = 0;    // failures of this request, in a row
};

} // namespace noctra::display_services
