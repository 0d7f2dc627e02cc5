#pragma once

namespace noctra {

/// A rectangle in points, its origin at the bottom-left corner, y growing upwards.
struct Rect {
    double x = 0.0;
    double y = 0.0;
    double width = 0.0;
    double height = 0.0;

    friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

} // namespace noctra
