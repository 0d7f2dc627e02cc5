#pragma once

#include <optional>
#include <vector>

#include "platform/linux/tray/Dock.h"

namespace noctra {

/// The part of `monitor` that the docks on it leave free. `screen` is the whole X screen, from
/// whose edges struts are counted.
///
/// A dock reserves the whole edge of a monitor that it is on, and nothing of other monitors. Where
/// its strut does not reach the monitor, as with one counted from the monitor's own edge, the dock
/// takes the room up to its inner side. Docks that hide themselves (struts of 0 or 1 pixel) take
/// nothing. At least a quarter of the monitor is left in each direction: a strut that leaves less,
/// or opposite ones that do together, are disregarded.
[[nodiscard]] PixelRect visibleFrame(const PixelRect& monitor, const PixelRect& screen,
                                     const std::vector<Dock>& docks);

/// What stands for the bars where a desktop draws them without windows of their own: one dock along
/// each edge of `screen`, the whole X screen, of which `workArea` leaves out more than a line; as
/// long as `monitor`, which is where bars are by habit, where that lies at the edge.
[[nodiscard]] std::vector<Dock> barsAround(const PixelRect& workArea, const PixelRect& monitor,
                                           const PixelRect& screen);

/// At which edge of `monitor` the bar lies: where it reserves room, else where it is. Nothing where
/// it is not on the monitor or away from the edges.
[[nodiscard]] std::optional<Edge> edgeOf(const Dock& dock, const PixelRect& monitor);

} // namespace noctra
