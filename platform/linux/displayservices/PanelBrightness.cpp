#include "platform/linux/displayservices/PanelBrightness.h"

#include <algorithm>
#include <cmath>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

constexpr auto rampLength = 200ms;
constexpr auto rampStep = 20ms;
constexpr auto betweenTries = 100ms;

} // namespace

void PanelBrightness::setMaximum(unsigned int maximum) {
    failures_ = 0;
    if (maximum == maximum_)
        return;
    maximum_ = maximum;
    target_.reset(); // in units that are gone
    lastWritten_.reset();
    ramp_.reset();
}

void PanelBrightness::request(float brightness, bool smoothly) {
    target_ = static_cast<unsigned int>(std::llround(static_cast<double>(brightness) * maximum_));
    smoothly_ = smoothly;
    begun_ = false;
    ramp_.reset();
    due_ = {};
    tries_ = 0;
}

std::optional<float> PanelBrightness::pendingBrightness() const {
    if (!target_)
        return std::nullopt;
    return static_cast<float>(*target_) / static_cast<float>(maximum_);
}

std::optional<TimePoint> PanelBrightness::due() const {
    return target_ ? std::optional(due_) : std::nullopt;
}

std::optional<unsigned int> PanelBrightness::step(std::optional<unsigned int> current,
                                                  TimePoint now, bool finishing) {
    if (!target_)
        return std::nullopt;
    // A backlight that has not followed the last write may still do so.
    if (current == target_ && (!lastWritten_ || lastWritten_ == target_)) {
        target_.reset();
        return std::nullopt;
    }
    if (finishing || !smoothly_ || !current)
        return target_;
    if (!ramp_)
        ramp_ = Ramp{*current, now};
    // Where the ramp is by the end of this step: it begins to move at once.
    const auto way = now - ramp_->begun + rampStep;
    if (way >= rampLength)
        return target_;
    const double part = std::chrono::duration<double>(way) / rampLength;
    const double value = ramp_->from + part * (static_cast<double>(*target_) - ramp_->from);
    const auto raw = static_cast<unsigned int>(std::llround(value));
    due_ = now + rampStep;
    return raw != *current ? std::optional(raw) : std::nullopt;
}

bool PanelBrightness::written(unsigned int value, bool succeeded, TimePoint now) {
    if (succeeded) {
        lastWritten_ = value;
        failures_ = 0;
        tries_ = 0;
        const bool first = !begun_;
        begun_ = true;
        const bool last = value == target_;
        if (last)
            target_.reset();
        return first || last;
    }
    failures_ = std::min(failures_ + 1, triesInARow);
    due_ = now + betweenTries;
    if (++tries_ >= triesInARow)
        target_.reset();
    return false;
}

} // namespace noctra::display_services
