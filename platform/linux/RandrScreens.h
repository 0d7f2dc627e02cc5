#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <xcb/randr.h>

#include "platform/DisplayIdentity.h"
#include "platform/linux/NativeTables.h"
#include "platform/linux/RandrOutputProperties.h"
#include "platform/linux/XConnection.h"

namespace noctra {

/// One attached display: an output that shows a mode through a CRTC.
struct RandrScreen {
    AttachedDisplay display; ///< its number is 0 until somebody gives it one
    xcb_randr_output_t output = XCB_NONE;
    std::string name; ///< the output's own, as the driver spells it
    xcb_randr_crtc_t crtc = XCB_NONE;
    std::uint16_t gammaSize = 0; ///< entries per channel of the CRTC; 0: it has no tables
    xcb_randr_mode_t mode = XCB_NONE;
    std::int16_t x = 0; ///< of its top left corner, in pixels
    std::int16_t y = 0;
    std::uint16_t rotation = 0; ///< RandR's set of rotation and reflection bits
};

/// What the X server has at the moment, without probing the hardware. On a broken connection both
/// lists are empty.
struct RandrConfiguration {
    std::vector<RandrScreen> screens;    ///< in the server's order
    std::vector<xcb_randr_crtc_t> crtcs; ///< every CRTC, in use or not
};

/// Four round trips, however many outputs there are. The connection state is not consulted: an
/// output is attached when its CRTC has a mode.
[[nodiscard]] RandrConfiguration readConfiguration(const RandrConnection& connection,
                                                   const RandrOutputProperties& properties);

// Statuses of operations beside the X server's own error codes.
inline constexpr std::int32_t connectionLost = -1;
inline constexpr std::int32_t noTables = -3;

/// The tables that `crtc` carries, in one round trip; nothing, and why in `status`, where they
/// cannot be read.
[[nodiscard]] std::optional<NativeTables>
readCrtcTables(xcb_connection_t* xcb, xcb_randr_crtc_t crtc, std::int32_t& status);

} // namespace noctra
