#pragma once

#include <optional>
#include <variant>

#include "platform/linux/tray/Dock.h"

namespace noctra {

struct PixelSize {
    int width = 0;
    int height = 0;
};

/// No item can be pointed to: the corner of the visible frame where items are by habit. Next to the
/// right end of a bar at the top or bottom, the lower end of one at a side; without a bar, the top
/// right.
struct HabitualCorner {};

/// What a popover points to: the item, the place where it was clicked, or neither is known.
using PopoverAnchor = std::variant<HabitualCorner, PixelPoint, PixelRect>;

/// Where the top left corner of a popover of `size` belongs. `visible` is the visible frame of the
/// monitor that the anchor is on, `bar` the edge at which the bar with the item lies.
///
/// The popover hangs centred below the anchor, or stands on it where the bar is at the bottom;
/// where there is no room on that side but on the other, there. Beside a bar at the left or right
/// it is centred on the anchor's height. It touches the anchor without a gap. It is then moved
/// wholly into the visible frame, so that it touches the edge of a bar in which the anchor is.
/// Where the frame is too small, it begins at the frame's left or top.
[[nodiscard]] PixelPoint popoverPosition(PixelSize size, const PopoverAnchor& anchor,
                                         const PixelRect& visible, std::optional<Edge> bar);

} // namespace noctra
