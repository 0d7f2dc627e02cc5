#pragma once

#include <string>
#include <vector>

#include "tests/desktop/support/Waiting.h"

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
std::ostream& operator<<(std::ostream& stream, const Box& box);

/// The mouse and the keyboard of an X server, moved by xdotool. What is done has reached the server
/// when a call returns, not the program. Throws std::runtime_error where xdotool fails.
class InputDevices {
public:
    using Commands = std::vector<std::string>;

    /// `display` as in the DISPLAY variable.
    explicit InputDevices(std::string display) : display_(std::move(display)) {}

    void moveTo(Point point) const { perform(moving(point)); }
    void press(Point point) const;
    void release() const { perform({"mouseup", "1"}); }
    void click(Point point) const;
    /// With the left button, in steps of a few pixels.
    void drag(Point from, Point to) const;
    /// Positive `notches` away from the user.
    void wheel(Point point, int notches) const;
    /// Keys by their X names, e.g. "Page_Up" or "shift+Tab", one after the other.
    void type(const std::vector<std::string>& keys) const;

    /// xdotool's own commands, all with one start of it.
    void perform(const Commands& commands) const;

    [[nodiscard]] static Commands moving(Point point);
    [[nodiscard]] static Commands dragging(Point from, Point to);
    [[nodiscard]] static Commands turning(int notches);

private:
    std::string display_;
};

} // namespace noctra::desktop
