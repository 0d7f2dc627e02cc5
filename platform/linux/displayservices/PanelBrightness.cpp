#include "platform/linux/displayservices/PanelBrightness.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

constexpr auto rampLength = 200ms;
constexpr auto rampStepLength = 20ms;
// A smaller change may be lost in the hardware's own steps.
constexpr unsigned int visibleChange = 20; // parts of the maximum

} // namespace

void PanelBrightness::setMaximum(unsigned int maximum) {
    failures_ = 0;
    retries_.hurry();
    if (maximum == maximum_)
        return;
    maximum_ = maximum;
    // In units that are gone:
    ramp_.reset();
    before_ = {};
    lastWritten_.reset();
}

unsigned int PanelBrightness::rawOf(float level) const {
    return static_cast<unsigned int>(std::llround(static_cast<double>(level) * maximum_));
}

float PanelBrightness::fractionOf(unsigned int raw) const {
    return static_cast<float>(static_cast<double>(raw) / maximum_);
}

void PanelBrightness::want(float level, bool smoothly) {
    wanted_ = level;
    smoothly_ = smoothly;
    resumed_ = false;
    begun_ = false;
    ramp_.reset();
    nextStep_ = {};
    retries_.reset();
}

void PanelBrightness::resume(const OwnLevel& own) {
    want(own.fraction(), false);
    own_ = own;
    resumed_ = true;
}

void PanelBrightness::wantOwn() {
    if (own_ && (smoothly_ || wanted_ != own_->fraction()))
        want(own_->fraction(), false);
    else if (!own_ && smoothly_)
        fulfilled(); // nothing has been written for it
}

std::optional<float> PanelBrightness::brightness(const BacklightReading& reading) const {
    if (maximum_ == 0)
        return std::nullopt;
    if (wanted_ && !(uncertain_ && reading.setting && rawOf(*wanted_) > *reading.setting))
        return fractionOf(rawOf(*wanted_));
    if (!reading.setting)
        return std::nullopt;
    const bool raised = lastWritten_ == reading.setting && before_.setting &&
                        *reading.setting > *before_.setting &&
                        *reading.setting - *before_.setting > maximum_ / visibleChange;
    // A panel that is dark says 0 whatever its setting is.
    const bool unmoved = reading.actual && *reading.actual > 0 && *reading.actual <= maximum_ &&
                         reading.actual == before_.actual;
    return fractionOf(raised && unmoved ? *before_.setting : *reading.setting);
}

void PanelBrightness::expectQuestion() {
    probing_ = probing_ || !proved_ || failures_ >= failuresThatTell;
    retries_.hurry();
}

std::optional<TimePoint> PanelBrightness::due(bool finishing) const {
    if (maximum_ == 0 || (!wanted_ && (finishing || !probing_)))
        return std::nullopt;
    return std::max(nextStep_, retries_.due(finishing));
}

void PanelBrightness::fulfilled() {
    wanted_.reset();
    ramp_.reset();
    retries_.reset();
}

std::optional<unsigned int> PanelBrightness::step(const BacklightReading& reading, TimePoint now,
                                                  bool finishing) {
    if (resumed_ && reading.setting && *reading.setting < rawOf(own_->fraction())) {
        // The earlier run held it at full; it has been set by hand since.
        own_.reset();
        fulfilled();
    }
    resumed_ = false;
    // What it is to have in the end; by its keys it may get other levels meanwhile.
    if (wanted_ && !own_ && reading.setting)
        own_ = OwnLevel{smoothly_ ? *reading.setting : rawOf(*wanted_), maximum_};
    if (wanted_ && reading.setting == rawOf(*wanted_) && !uncertain_) {
        if (!smoothly_ && own_ && *reading.setting == rawOf(own_->fraction()))
            own_.reset();
        fulfilled();
    }
    if (!wanted_) {
        if (!std::exchange(probing_, false) || finishing)
            return std::nullopt;
        return reading.setting;
    }
    probing_ = false;
    if (!begun_)
        before_ = reading;
    const unsigned int target = rawOf(*wanted_);
    if (std::exchange(justWritten_, false) && lastWritten_ == target) {
        retries_.failed(now); // another program, or the driver, has set something else
        return std::nullopt;
    }
    if (finishing || !smoothly_ || !reading.setting)
        return target;
    return rampStep(*reading.setting, target, now);
}

std::optional<unsigned int> PanelBrightness::rampStep(unsigned int from, unsigned int target,
                                                      TimePoint now) {
    if (!ramp_)
        ramp_ = Ramp{from, now};
    // Where the ramp is by the end of this step: it begins to move at once.
    const auto way = now - ramp_->begun + rampStepLength;
    if (way >= rampLength)
        return target;
    const double part = std::chrono::duration<double>(way) / rampLength;
    const double value = ramp_->from + part * (static_cast<double>(target) - ramp_->from);
    const auto raw = static_cast<unsigned int>(std::llround(value));
    nextStep_ = now + rampStepLength;
    return raw != from ? std::optional(raw) : std::nullopt;
}

bool PanelBrightness::written(unsigned int value, bool succeeded, TimePoint now) {
    if (!succeeded) {
        // Whether it can be written at all is known once one write has succeeded.
        failures_ = proved_ ? failures_ + 1 : failuresThatTell;
        uncertain_ = true;
        retries_.failed(now);
        return false;
    }
    proved_ = true;
    failures_ = 0;
    uncertain_ = false;
    lastWritten_ = value;
    justWritten_ = true;
    const bool first = !std::exchange(begun_, true);
    return first || (wanted_ && value == rawOf(*wanted_));
}

} // namespace noctra::display_services
