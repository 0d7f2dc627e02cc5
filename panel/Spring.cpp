#include "panel/Spring.h"

#include <cmath>
#include <numbers>

namespace noctra {

Spring::Spring(Seconds response, double damping, double offset, double velocity)
    : frequency_(2.0 * std::numbers::pi / response.count()), damping_(damping), offset_(offset),
      push_(velocity + damping * frequency_ * offset) {}

double Spring::value(Seconds time) const {
    const Basis basis = basisAt(time.count());
    return offset_ * basis.even + push_ * basis.odd;
}

double Spring::velocity(Seconds time) const {
    const Basis basis = basisAt(time.count());
    const double decay = damping_ * frequency_;
    const double start = push_ - decay * offset_;
    return start * basis.even - (decay * start + frequency_ * frequency_ * offset_) * basis.odd;
}

bool Spring::hasSettled(Seconds time, double threshold) const {
    const double decay = damping_ * frequency_;
    if (damping_ < 1.0) {
        const double swing = frequency_ * std::sqrt(1.0 - damping_ * damping_);
        const double amplitude = std::hypot(offset_, push_ / swing);
        return amplitude * std::exp(-decay * time.count()) < threshold;
    }
    // Without swings the same motion with both parts positive lies above this one. It rises at most
    // once, so on its way down it is an envelope.
    Spring above = *this;
    above.offset_ = std::abs(offset_);
    above.push_ = std::abs(push_);
    return above.value(time) < threshold && above.velocity(time) <= 0.0;
}

Spring::Basis Spring::basisAt(double time) const {
    const double decay = damping_ * frequency_;
    const double spread = frequency_ * std::sqrt(std::abs(1.0 - damping_ * damping_));
    if (spread == 0.0) {
        const double envelope = std::exp(-decay * time);
        return {envelope, envelope * time};
    }
    if (damping_ < 1.0) {
        const double envelope = std::exp(-decay * time);
        return {envelope * std::cos(spread * time), envelope * std::sin(spread * time) / spread};
    }
    // cosh and sinh with the damping inside their exponents, or they would overflow.
    const double slow = std::exp((spread - decay) * time);
    const double missing = -std::expm1(-2.0 * spread * time);
    return {slow * (2.0 - missing) / 2.0, slow * missing / (2.0 * spread)};
}

} // namespace noctra
