#include "panel/quick/SpringFollower.h"

namespace noctra {

namespace {

// Of the whole way: less than a tenth of a device pixel on the largest thing that moves.
constexpr double restThreshold = 1e-4;

} // namespace

SpringFollower::SpringFollower(const SteadyClock& clock, double value, QObject* parent)
    : QAbstractAnimation(parent), clock_(clock), value_(value), target_(value) {}

void SpringFollower::moveTo(double target, const std::optional<SpringSpec>& spring) {
    if (!spring) {
        stop();
        spring_.reset();
        target_ = target;
        setValue(target);
        emit settled();
        return;
    }
    if (target == target_)
        return;
    const double velocity = spring_ ? spring_->velocity(elapsed()) : 0.0;
    target_ = target;
    spring_.emplace(Seconds(spring->response), spring->dampingFraction, value_ - target, velocity);
    start_ = clock_.now();
    start();
}

void SpringFollower::updateCurrentTime(int) {
    if (!spring_)
        return;
    if (spring_->hasSettled(elapsed(), restThreshold)) {
        spring_.reset();
        stop();
        setValue(target_);
        emit settled();
        return;
    }
    setValue(target_ + spring_->value(elapsed()));
}

void SpringFollower::setValue(double value) {
    if (value == value_)
        return;
    value_ = value;
    emit valueChanged();
}

} // namespace noctra
