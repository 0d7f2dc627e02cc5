#pragma once

#include <optional>
#include <string>

#include "bench/support/Box.h"
#include "bench/support/XConnection.h"

namespace noctra::desktop {

/// What a window manager does for its person; most tests' servers have none.
class WindowManagement {
public:
    /// `display` as in the DISPLAY variable.
    explicit WindowManagement(const std::string& display) : connection_(display) {}

    /// Whether a window with this title is on the screen.
    [[nodiscard]] bool shows(const std::string& title) const { return find(title).has_value(); }
    /// Where the window with this title is, if it is on the screen.
    [[nodiscard]] std::optional<Box> placeOf(const std::string& title) const;
    /// Asks the window to close, as the button of its frame does. Throws std::runtime_error where
    /// there is none.
    void askToClose(const std::string& title) const;

private:
    [[nodiscard]] std::optional<xcb_window_t> find(const std::string& title) const;
    [[nodiscard]] std::optional<xcb_window_t> findBelow(xcb_window_t parent,
                                                        const std::string& title) const;
    [[nodiscard]] bool isShown(xcb_window_t window) const;
    [[nodiscard]] std::string titleOf(xcb_window_t window) const;

    XConnection connection_;
};

} // namespace noctra::desktop
