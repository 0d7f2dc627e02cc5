#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include <xcb/xcb.h>

#include "platform/linux/Xcb.h"
#include "platform/linux/tray/PixelRect.h"

namespace noctra {

/// Presses of the left and right mouse button as an X server announces them to whoever asks (raw
/// events of XInput 2.1), on a connection of its own. Main thread.
class RawPresses {
public:
    struct Press {
        PixelPoint where;         ///< of the pointer, when the press is read
        bool left = false;        ///< else right; as the person has set the buttons up
        xcb_timestamp_t time = 0; ///< the X server's, in ms
    };

    /// Begins to listen on the X server that DISPLAY names. Nothing on failure, and `reason` says
    /// why.
    [[nodiscard]] static std::optional<RawPresses> listen(std::string& reason);

    /// Can be read when there may be presses, or the connection broke.
    [[nodiscard]] int descriptor() const;
    [[nodiscard]] bool isBroken() const;

    /// The next press that there is, without waiting for one.
    [[nodiscard]] std::optional<Press> next();

private:
    RawPresses(XcbConnection connection, xcb_window_t root, std::uint8_t extension);

    [[nodiscard]] PixelPoint pointer(std::uint16_t device) const;

    XcbConnection connection_;
    xcb_window_t root_;
    std::uint8_t extension_; ///< the major opcode of XInput
};

} // namespace noctra
