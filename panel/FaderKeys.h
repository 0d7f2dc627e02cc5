#pragma once

namespace noctra {

/// How far keys and the wheel move a fader, as shares of the range 0..1.
namespace fader_keys {

inline constexpr double arrowStep = 0.01;
inline constexpr double pageStep = 0.1;
inline constexpr double wheelNotchStep = 0.02;
/// What toolkits report for one notch; finer wheels report fractions of it.
inline constexpr double wheelNotchUnits = 120.0;

} // namespace fader_keys

/// Named by what they do, whichever key does it: right and up are one, and so are left and down.
enum class FaderKey { up, down, pageUp, pageDown, home, end };

/// The value to which `key` moves a fader that stands at `value`, before clamping.
[[nodiscard]] constexpr double faderValueAfter(FaderKey key, double value, double minimum) {
    switch (key) {
    case FaderKey::up:
        return value + fader_keys::arrowStep;
    case FaderKey::down:
        return value - fader_keys::arrowStep;
    case FaderKey::pageUp:
        return value + fader_keys::pageStep;
    case FaderKey::pageDown:
        return value - fader_keys::pageStep;
    case FaderKey::home:
        return minimum;
    case FaderKey::end:
        return 1.0;
    }
    return value;
}

/// The value to which turning the wheel by `units` (away from the user is positive) moves a fader
/// that stands at `value`, before clamping.
[[nodiscard]] constexpr double faderValueAfterWheel(double units, double value) {
    return value + units / fader_keys::wheelNotchUnits * fader_keys::wheelNotchStep;
}

} // namespace noctra
