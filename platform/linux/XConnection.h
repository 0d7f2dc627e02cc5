#pragma once

#include <cstdint>
#include <string>

#include <xcb/randr.h>

#include "platform/linux/Xcb.h"

namespace noctra {

/// A connection to an X server that has RandR 1.3 or later.
struct RandrConnection {
    XcbConnection xcb;
    xcb_window_t root = XCB_NONE;
    std::uint8_t firstEvent = 0; ///< RandR's event numbers start here
    std::string description;     ///< for the log: the server's name and RandR's version
};

/// Connects to `displayName` (nullptr: the one that DISPLAY names). On failure `xcb` is null and
/// `description` says why.
[[nodiscard]] RandrConnection connectToRandr(const char* displayName);

/// Why `connection` is unusable; empty while it is usable.
[[nodiscard]] std::string connectionError(xcb_connection_t* connection);
/// The server has gone, or has closed `connection`, whether or not anybody has noticed. Any thread;
/// never waits.
[[nodiscard]] bool isBroken(xcb_connection_t* connection);

} // namespace noctra
