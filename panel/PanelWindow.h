#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <functional>

namespace noctra {

struct PanelServices;

/// The line around the panel, which desktops give no frame. It lies outside the panel's own size.
struct PanelEdge {
    static constexpr int width = 1; ///< device pixels, on each side

    /// What the lines at two opposite sides add to the window, in device-independent pixels, where
    /// one is `scale` device pixels. Whole, as a window's size is: what is left over is the second
    /// line's.
    [[nodiscard]] static int across(double scale) {
        return std::max(1, static_cast<int>(std::lround(2 * width / scale)));
    }
};

/// Where a panel's window is, its edge included: device-independent pixels of the desktop, y
/// growing downwards.
struct PanelPlace {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    friend constexpr bool operator==(const PanelPlace&, const PanelPlace&) = default;
};

/// The window that holds the control panel: without a frame, above all others. Main thread.
///
/// While it is not shown it has no scene; what draws it stays loaded once it has been.
class PanelWindow {
public:
    virtual ~PanelWindow() = default;

    /// Shows the panel at `place` with the keyboard's focus; where it is shown already, only moves
    /// it there. Where it cannot be drawn that is logged, and nothing is shown.
    virtual void show(const PanelPlace& place) = 0;

    /// Takes it off the screen and frees the scene, at the latest on a later turn of the main
    /// thread.
    virtual void close() = 0;

    /// From `show` to `close`, whatever a window manager does with it meanwhile.
    [[nodiscard]] virtual bool isShown() const = 0;
    /// The window system's number for it while it is shown; else 0.
    [[nodiscard]] virtual std::uintptr_t window() const = 0;

    /// Runs `asked` where the user asks for it to be closed from inside (the Escape key, a window
    /// manager), which does not close it yet.
    virtual void onCloseAsked(std::function<void()> asked) = 0;
};

/// What a library that can draw the panel exports under `makePanelWindowSymbol`. The caller owns
/// the window; `services` outlives it.
using MakePanelWindow = PanelWindow*(const PanelServices& services);
inline constexpr const char* makePanelWindowSymbol = "noctra_make_panel_window";

} // namespace noctra
