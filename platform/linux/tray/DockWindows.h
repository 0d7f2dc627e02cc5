#pragma once

#include <vector>

#include <xcb/xcb.h>

#include "platform/linux/tray/Dock.h"

namespace noctra {

/// The windows that are shown and call themselves docks (_NET_WM_WINDOW_TYPE_DOCK, EWMH 1.5), from
/// the lowest to the topmost, also where a window manager has put them in frames.
///
/// Takes up to eight round trips, however many windows there are. What other programs wrote on
/// their windows may be anything: a property of another type or length counts as missing. Empty on
/// a broken connection.
[[nodiscard]] std::vector<Dock> findDocks(xcb_connection_t* connection, xcb_window_t root);

/// The part of the X screen that is left to windows on the present workspace (_NET_WORKAREA, EWMH
/// 1.5), as a window manager wrote it, which may be anything. Empty where there is none. Two round
/// trips.
[[nodiscard]] PixelRect findWorkArea(xcb_connection_t* connection, xcb_window_t root);

} // namespace noctra
