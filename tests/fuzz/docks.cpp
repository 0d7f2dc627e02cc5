// The bars of a desktop as their windows describe themselves, and the place for the popover.

#include <vector>

#include "platform/linux/tray/PopoverPlacement.h"
#include "platform/linux/tray/StrutProperty.h"
#include "platform/linux/tray/VisibleFrame.h"
#include "tests/fuzz/support/Input.h"

using namespace noctra;
using fuzz::require;

namespace {

/// As the X protocol has rectangles.
PixelRect rectangle(fuzz::Input& input) {
    return {input.number<std::int16_t>(), input.number<std::int16_t>(),
            input.number<std::uint16_t>(), input.number<std::uint16_t>()};
}

std::vector<std::uint32_t> numbers(fuzz::Input& input) {
    std::vector<std::uint32_t> numbers(input.number<std::uint8_t>() % 14);
    for (std::uint32_t& number : numbers)
        number = input.number<std::uint32_t>();
    return numbers;
}

bool isWithin(int start, int length, int from, int room) {
    return start >= from && start + length <= from + room;
}

void checkPlace(const PopoverAnchor& anchor, const PixelRect& visible, std::optional<Edge> bar) {
    constexpr PixelSize size{320, 540};
    const PixelPoint place = popoverPosition(size, anchor, visible, bar);
    require(size.width > visible.width ? place.x == visible.x
                                       : isWithin(place.x, size.width, visible.x, visible.width),
            "the popover is in the frame or begins at its left");
    require(size.height > visible.height
                ? place.y == visible.y
                : isWithin(place.y, size.height, visible.y, visible.height),
            "the popover is in the frame or begins at its top");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const PixelRect screen = rectangle(input);
    const PixelRect monitor = rectangle(input);
    std::vector<Dock> docks;
    while (!input.empty() && docks.size() < 8) {
        Dock& dock = docks.emplace_back();
        dock.frame = rectangle(input);
        const auto partial = numbers(input);
        dock.strut = strutIn(partial, numbers(input));
    }
    const PixelRect visible = visibleFrame(monitor, screen, docks);
    require(isWithin(visible.x, visible.width, monitor.x, monitor.width) &&
                isWithin(visible.y, visible.height, monitor.y, monitor.height),
            "the visible frame is in the monitor");
    require(visible.width >= monitor.width / 4 && visible.height >= monitor.height / 4,
            "a quarter of the monitor is left");
    checkPlace(HabitualCorner{}, visible, std::nullopt);
    for (const Dock& dock : docks) {
        const auto edge = edgeOf(dock, monitor);
        checkPlace(HabitualCorner{}, visible, edge);
        checkPlace(dock.frame, visible, edge);
        checkPlace(dock.frame.middle(), visible, edge);
    }
    return 0;
}
