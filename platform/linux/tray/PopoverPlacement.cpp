#include "platform/linux/tray/PopoverPlacement.h"

#include <algorithm>

namespace noctra {

namespace {

/// `start`, moved so that `length` from there lies between `from` and `to`; `from` where it cannot.
int fitted(int start, int length, int from, int to) {
    return std::max(std::min(start, to - length), from);
}

PixelRect cornerOf(const PixelRect& visible, std::optional<Edge> bar) {
    const bool atTop = !bar || bar == Edge::top;
    const int x = bar == Edge::left ? visible.x : visible.x + visible.width;
    return {x, atTop ? visible.y : visible.y + visible.height, 0, 0};
}

/// Under the anchor or on it, as the bar has it and there is room.
int verticalPosition(int height, const PixelRect& anchor, const PixelRect& visible, bool barBelow) {
    const int below = anchor.y + anchor.height;
    const int above = anchor.y - height;
    const bool fitsBelow = below + height <= visible.y + visible.height;
    const bool fitsAbove = above >= visible.y;
    const bool goesAbove = barBelow ? fitsAbove || !fitsBelow : fitsAbove && !fitsBelow;
    return goesAbove ? above : below;
}

struct AnchorRect {
    const PixelRect& visible;
    std::optional<Edge> bar;

    PixelRect operator()(HabitualCorner) const { return cornerOf(visible, bar); }
    PixelRect operator()(PixelPoint point) const { return {point.x, point.y, 0, 0}; }
    PixelRect operator()(const PixelRect& rect) const { return rect; }
};

} // namespace

PixelPoint popoverPosition(PixelSize size, const PopoverAnchor& anchor, const PixelRect& visible,
                           std::optional<Edge> bar) {
    const PixelRect at = std::visit(AnchorRect{visible, bar}, anchor);
    PixelPoint position;
    if (bar == Edge::left || bar == Edge::right) {
        position.x = bar == Edge::left ? at.x + at.width : at.x - size.width;
        position.y = at.middle().y - size.height / 2;
    } else {
        position.x = at.middle().x - size.width / 2;
        position.y = verticalPosition(size.height, at, visible, bar == Edge::bottom);
    }
    return {fitted(position.x, size.width, visible.x, visible.x + visible.width),
            fitted(position.y, size.height, visible.y, visible.y + visible.height)};
}

} // namespace noctra
