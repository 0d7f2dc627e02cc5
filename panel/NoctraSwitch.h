#pragma once

#include "panel/AnimationTransaction.h"
#include "panel/Binding.h"
#include "panel/ControlStyles.h"

namespace noctra {

/// The wide power switch at the foot of the panel.
struct NoctraSwitch {
    Binding<bool> isOn;

    static constexpr SpringSpec pressSpring{.response = 0.3, .dampingFraction = 0.6};

    /// A press, inside an animation of `pressSpring`.
    void press(AnimationTransaction& transaction) const {
        transaction.with(pressSpring, [this] { isOn.set(!isOn.get()); });
    }

    [[nodiscard]] static constexpr ButtonStyle style(bool isOn) {
        return {
            .foreground = isOn ? colors::white : colors::systemGrey,
            .background = isOn ? VerticalGradient{{0.8, 0.0, 0.0}, {0.6, 0.0, 0.0}}
                               : VerticalGradient{Color::grey(0.15), Color::grey(0.1)},
            .border = {colors::white.withAlpha(isOn ? 0.3 : 0.1), colors::black.withAlpha(0.5)},
            .shadow = isOn ? Shadow{colors::systemRed.withAlpha(0.4), 10.0, 0.0}
                           : Shadow{colors::black.withAlpha(0.5), 2.0, 2.0},
        };
    }
};

} // namespace noctra
