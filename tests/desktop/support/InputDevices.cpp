#include "tests/desktop/support/InputDevices.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <stdexcept>

#include "tests/desktop/support/ChildProcess.h"

namespace noctra::desktop {

namespace {

constexpr int pixelsPerStep = 16;

void append(InputDevices::Commands& commands, const InputDevices::Commands& more) {
    commands.insert(commands.end(), more.begin(), more.end());
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const Box& box) {
    return stream << box.width << "x" << box.height << "+" << box.x << "+" << box.y;
}

InputDevices::Commands InputDevices::moving(Point point) {
    return {"mousemove", std::to_string(point.x), std::to_string(point.y)};
}

InputDevices::Commands InputDevices::dragging(Point from, Point to) {
    Commands commands = moving(from);
    append(commands, {"mousedown", "1"});
    const int distance = std::max(std::abs(to.x - from.x), std::abs(to.y - from.y));
    const int steps = distance / pixelsPerStep + 1;
    for (int step = 1; step <= steps; ++step)
        append(commands, moving({from.x + (to.x - from.x) * step / steps,
                                 from.y + (to.y - from.y) * step / steps}));
    append(commands, {"mouseup", "1"});
    return commands;
}

InputDevices::Commands InputDevices::turning(int notches) {
    Commands commands;
    for (int notch = 0; notch < std::abs(notches); ++notch)
        append(commands, {"click", "--delay", "0", notches > 0 ? "4" : "5"});
    return commands;
}

void InputDevices::press(Point point) const {
    Commands commands = moving(point);
    append(commands, {"mousedown", "1"});
    perform(commands);
}

void InputDevices::click(Point point) const {
    Commands commands = moving(point);
    append(commands, {"click", "--delay", "0", "1"});
    perform(commands);
}

void InputDevices::drag(Point from, Point to) const {
    perform(dragging(from, to));
}

void InputDevices::wheel(Point point, int notches) const {
    Commands commands = moving(point);
    append(commands, turning(notches));
    perform(commands);
}

void InputDevices::type(const std::vector<std::string>& keys) const {
    Commands commands{"key"};
    append(commands, keys);
    perform(commands);
}

void InputDevices::perform(const Commands& commands) const {
    ChildProcess::Start start;
    start.arguments = {"/usr/bin/xdotool"};
    append(start.arguments, commands);
    start.environment = {"DISPLAY=" + display_};
    ChildProcess xdotool(start);
    if (xdotool.waitForEnding(patience) != exited(0))
        throw std::runtime_error("xdotool failed at " + commands.front());
}

} // namespace noctra::desktop
