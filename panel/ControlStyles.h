#pragma once

#include "foundation/Color.h"

namespace noctra {

/// A colour that runs from the top edge of something to its bottom edge.
struct VerticalGradient {
    Color top;
    Color bottom;

    friend constexpr bool operator==(const VerticalGradient&, const VerticalGradient&) = default;
};

/// A shadow, or a glow where it has a light colour and no offset. Lengths in points.
struct Shadow {
    Color color;
    double radius = 0.0;  ///< standard deviation of the blur
    double offsetY = 0.0; ///< downwards

    friend constexpr bool operator==(const Shadow&, const Shadow&) = default;
};

/// How a raised button looks in one of its states.
struct ButtonStyle {
    Color foreground;
    VerticalGradient background;
    VerticalGradient border;
    Shadow shadow;

    friend constexpr bool operator==(const ButtonStyle&, const ButtonStyle&) = default;
};

/// The style that is `amount` of the way from `from` (0) to `to` (1). Beyond either end it goes on
/// in the same direction as far as colours and lengths allow, as a spring that overshoots wants.
[[nodiscard]] ButtonStyle mixed(const ButtonStyle& from, const ButtonStyle& to, double amount);

} // namespace noctra
