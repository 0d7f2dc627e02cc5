#include "platform/linux/tray/VisibleFrame.h"

#include <algorithm>
#include <array>

namespace noctra {

namespace {

constexpr std::array edges{Edge::left, Edge::top, Edge::right, Edge::bottom};
// A hidden bar reserves no more than the line that calls it up.
constexpr int hiddenStrut = 1;

constexpr bool isVertical(Edge edge) { // runs from top to bottom
    return edge == Edge::left || edge == Edge::right;
}

constexpr int lengthAcross(const PixelRect& rect, Edge edge) {
    return isVertical(edge) ? rect.width : rect.height;
}

bool overlap(const PixelRect& a, const PixelRect& b) {
    return a.x < b.x + b.width && b.x < a.x + a.width && a.y < b.y + b.height &&
           b.y < a.y + a.height;
}

/// How far `edge` of `inner` lies inside that of `outer`; negative: outside.
int distanceInside(const PixelRect& inner, const PixelRect& outer, Edge edge) {
    switch (edge) {
    case Edge::left:
        return inner.x - outer.x;
    case Edge::top:
        return inner.y - outer.y;
    case Edge::right:
        return outer.x + outer.width - inner.x - inner.width;
    default:
        return outer.y + outer.height - inner.y - inner.height;
    }
}

bool reserves(const Dock& dock, Edge edge) {
    return dock.strut.at(edge).size > hiddenStrut;
}

/// Whether the reserved part of the edge runs along `monitor`. Ranges that are empty say nothing.
bool runsAlong(const StrutSide& side, const PixelRect& monitor, Edge edge) {
    const int from = isVertical(edge) ? monitor.y : monitor.x;
    const int to = from + (isVertical(edge) ? monitor.height : monitor.width);
    return side.end <= side.start || (side.start < to && side.end >= from);
}

/// How much of `monitor` the dock, which is on it, takes at `edge`.
int takenBy(const Dock& dock, const PixelRect& monitor, const PixelRect& screen, Edge edge) {
    const StrutSide& side = dock.strut.at(edge);
    if (!reserves(dock, edge) || !runsAlong(side, monitor, edge))
        return 0;
    int taken = side.size - distanceInside(monitor, screen, edge);
    if (taken <= 0)
        taken = distanceInside(dock.frame, monitor, edge) + lengthAcross(dock.frame, edge);
    return taken > 0 && taken <= lengthAcross(monitor, edge) * 3 / 4 ? taken : 0;
}

/// The edge that `dock` lies at, by its place. What is much higher than wide lies at a side; a tray
/// in a corner with a single item, which is about a square, does not.
std::optional<Edge> edgeByPlace(const Dock& dock, const PixelRect& monitor) {
    const PixelRect& frame = dock.frame;
    const PixelPoint middle = frame.middle();
    Edge edge = middle.y < monitor.middle().y ? Edge::top : Edge::bottom;
    if (frame.height > 2 * frame.width)
        edge = middle.x < monitor.middle().x ? Edge::left : Edge::right;
    const int away = distanceInside({middle.x, middle.y, 0, 0}, monitor, edge);
    return away <= lengthAcross(monitor, edge) / 4 ? std::optional(edge) : std::nullopt;
}

} // namespace

PixelRect visibleFrame(const PixelRect& monitor, const PixelRect& screen,
                       const std::vector<Dock>& docks) {
    std::array<int, 4> insets{};
    for (const Dock& dock : docks)
        if (overlap(dock.frame, monitor))
            for (std::size_t i = 0; i < edges.size(); ++i)
                insets[i] = std::max(insets[i], takenBy(dock, monitor, screen, edges[i]));
    auto [left, top, right, bottom] = insets;
    if (left + right > monitor.width * 3 / 4)
        left = right = 0;
    if (top + bottom > monitor.height * 3 / 4)
        top = bottom = 0;
    return {monitor.x + left, monitor.y + top, monitor.width - left - right,
            monitor.height - top - bottom};
}

std::vector<Dock> barsAround(const PixelRect& workArea, const PixelRect& monitor,
                             const PixelRect& screen) {
    std::vector<Dock> docks;
    if (std::any_of(edges.begin(), edges.end(),
                    [&](Edge edge) { return distanceInside(workArea, screen, edge) < 0; }))
        return docks; // the work area is that of a screen of another size
    for (const Edge edge : edges) {
        const int size = distanceInside(workArea, screen, edge);
        if (size <= hiddenStrut || size > lengthAcross(screen, edge) / 4)
            continue;
        const PixelRect& along = distanceInside(monitor, screen, edge) == 0 ? monitor : screen;
        const bool isFar = edge == Edge::right || edge == Edge::bottom;
        const int shift = isFar ? lengthAcross(along, edge) - size : 0;
        Dock dock{.frame = along};
        if (isVertical(edge))
            dock.frame = {along.x + shift, along.y, size, along.height};
        else
            dock.frame = {along.x, along.y + shift, along.width, size};
        const StrutSide side{size, isVertical(edge) ? along.y : along.x,
                             isVertical(edge) ? along.y + along.height - 1
                                              : along.x + along.width - 1};
        (edge == Edge::left    ? dock.strut.left
         : edge == Edge::top   ? dock.strut.top
         : edge == Edge::right ? dock.strut.right
                               : dock.strut.bottom) = side;
        docks.push_back(dock);
    }
    return docks;
}

std::optional<Edge> edgeOf(const Dock& dock, const PixelRect& monitor) {
    if (!overlap(dock.frame, monitor))
        return std::nullopt;
    for (const Edge edge : edges)
        if (reserves(dock, edge))
            return edge;
    return edgeByPlace(dock, monitor);
}

} // namespace noctra
