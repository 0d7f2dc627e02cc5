#pragma once

namespace noctra {

/// How far keys and the wheel move a fader, in hundredths of the range 0..1.
namespace fader_keys {

inline constexpr int arrowStep = 1;
inline constexpr int pageStep = 10;
/// What toolkits report for one notch; finer wheels report fractions of it.
inline constexpr int wheelNotchUnits = 120;
inline constexpr int wheelUnitsPerHundredth = wheelNotchUnits / 2;

} // namespace fader_keys

/// Named by what they do, whichever key does it: right and up are one, and so are left and down.
enum class FaderKey { up, down, pageUp, pageDown, home, end };

/// `value`, in 0..1, in whole hundredths that are cut off, as a readout in percent counts them.
[[nodiscard]] constexpr int hundredthsOf(double value) {
    return static_cast<int>(value * 100.0);
}

/// The value that counts as `hundredths`, any number. The quotient does not always: 29 / 100.0
/// times 100 is below 29.
[[nodiscard]] double faderValueOf(int hundredths);

/// The value of whole hundredths that is nearest to `value`, in 0..1.
[[nodiscard]] double nearestHundredth(double value);

/// The value to which `key` moves a fader that stands at `value`, before clamping: steps lead from
/// hundredth to hundredth, and leave none out.
[[nodiscard]] double faderValueAfter(FaderKey key, double value, double minimum);

/// The wheel over a fader. What does not make a whole hundredth yet is kept for the next turn.
class FaderWheel {
public:
    /// The hundredths by which turning it by `units` (away from the user is positive) moves the
    /// fader.
    [[nodiscard]] int turn(int units) {
        if (units * rest_ < 0)
            rest_ = 0; // turned round
        rest_ += units;
        const int steps = rest_ / fader_keys::wheelUnitsPerHundredth;
        rest_ %= fader_keys::wheelUnitsPerHundredth;
        return steps;
    }

private:
    int rest_ = 0; ///< units
};

} // namespace noctra
