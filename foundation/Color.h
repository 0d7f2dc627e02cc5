#pragma once

namespace noctra {

/// A colour in sRGB: components and opacity from 0 to 1, not premultiplied.
struct Color {
    double red = 0.0;
    double green = 0.0;
    double blue = 0.0;
    double alpha = 1.0;

    friend constexpr bool operator==(const Color&, const Color&) = default;

    /// The grey whose three components are `level`.
    static constexpr Color grey(double level, double alpha = 1.0) {
        return {level, level, level, alpha};
    }

    [[nodiscard]] constexpr Color withAlpha(double opacity) const {
        return {red, green, blue, opacity};
    }
};

namespace colors {

inline constexpr Color black = Color::grey(0.0);
inline constexpr Color white = Color::grey(1.0);
inline constexpr Color clear = Color::grey(0.0, 0.0);
// What desktops use for these names on a dark background.
inline constexpr Color systemRed{1.0, 69.0 / 255.0, 58.0 / 255.0};
inline constexpr Color systemYellow{1.0, 214.0 / 255.0, 10.0 / 255.0};
inline constexpr Color systemGreen{50.0 / 255.0, 215.0 / 255.0, 75.0 / 255.0};
inline constexpr Color systemGrey{152.0 / 255.0, 152.0 / 255.0, 157.0 / 255.0};

} // namespace colors

} // namespace noctra
