#pragma once

namespace noctra::desktop {

/// A place on the screen, in pixels.
struct Point {
    int x = 0;
    int y = 0;
};

/// A rectangle on the screen, in pixels.
struct Box {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] Point at(double xShare, double yShare) const {
        return {x + static_cast<int>(xShare * (width - 1)),
                y + static_cast<int>(yShare * (height - 1))};
    }
    [[nodiscard]] Point center() const { return at(0.5, 0.5); }
    [[nodiscard]] bool contains(Point point) const {
        return point.x >= x && point.x < x + width && point.y >= y && point.y < y + height;
    }
    friend bool operator==(const Box&, const Box&) = default;
};

} // namespace noctra::desktop
