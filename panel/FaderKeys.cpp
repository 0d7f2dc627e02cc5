#include "panel/FaderKeys.h"

#include <cmath>

namespace noctra {

double faderValueOf(int hundredths) {
    const double value = hundredths / 100.0;
    return hundredthsOf(value) < hundredths ? std::nextafter(value, 2.0) : value;
}

double nearestHundredth(double value) {
    return faderValueOf(static_cast<int>(std::lround(value * 100.0)));
}

double faderValueAfter(FaderKey key, double value, double minimum) {
    const auto moved = [value](int hundredths) {
        return faderValueOf(hundredthsOf(value) + hundredths);
    };
    switch (key) {
    case FaderKey::up:
        return moved(fader_keys::arrowStep);
    case FaderKey::down:
        return moved(-fader_keys::arrowStep);
    case FaderKey::pageUp:
        return moved(fader_keys::pageStep);
    case FaderKey::pageDown:
        return moved(-fader_keys::pageStep);
    case FaderKey::home:
        return minimum;
    case FaderKey::end:
        return 1.0;
    }
    return value;
}

} // namespace noctra
