#pragma once

namespace noctra {

/// A point on the X screen, in pixels from its top left corner.
struct PixelPoint {
    int x = 0;
    int y = 0;

    friend constexpr bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

/// A rectangle on the X screen, in pixels, y growing downwards.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    friend constexpr bool operator==(const PixelRect&, const PixelRect&) = default;

    [[nodiscard]] constexpr bool isEmpty() const { return width <= 0 || height <= 0; }
    [[nodiscard]] constexpr bool contains(PixelPoint point) const {
        return point.x >= x && point.x < x + width && point.y >= y && point.y < y + height;
    }
    [[nodiscard]] constexpr PixelPoint middle() const { return {x + width / 2, y + height / 2}; }
};

} // namespace noctra
