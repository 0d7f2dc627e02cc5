#pragma once

#include <functional>
#include <string_view>

#include "panel/AnimationTransaction.h"
#include "panel/ControlStyles.h"

namespace noctra {

/// A button that sets a stored pair of warmth and brightness.
struct PresetButton {
    std::string_view label;
    bool isActive = false;
    /// What a press does; runs inside an animation of `pressSpring`.
    std::function<void()> action;

    static constexpr SpringSpec pressSpring{.response = 0.5, .dampingFraction = 1.0};

    [[nodiscard]] static constexpr ButtonStyle style(bool isActive) {
        return {
            .foreground = isActive ? colors::white : colors::systemGrey,
            .background = isActive ? VerticalGradient{Color::grey(0.25), Color::grey(0.2)}
                                   : VerticalGradient{Color::grey(0.12), Color::grey(0.08)},
            .border = {colors::white.withAlpha(0.1), colors::black.withAlpha(0.5)},
            .shadow = {.color = colors::black.withAlpha(0.5), .radius = 2.0, .offsetY = 1.0},
        };
    }
};

} // namespace noctra
