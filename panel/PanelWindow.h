#pragma once

namespace noctra {

struct PanelServices;

/// The window that holds the control panel. Main thread.
///
/// While it is not shown it has no scene; what draws it stays loaded once it has been.
class PanelWindow {
public:
    virtual ~PanelWindow() = default;

    /// Shows the panel, or brings it to the front where it is shown already. Where it cannot be
    /// drawn that is logged, and nothing is shown.
    virtual void show() = 0;

    /// Takes it off the screen and frees the scene, at the latest on a later turn of the main
    /// thread.
    virtual void close() = 0;

    [[nodiscard]] virtual bool isShown() const = 0;
};

/// What a library that can draw the panel exports under `makePanelWindowSymbol`. The caller owns
/// the window; `services` outlives it.
using MakePanelWindow = PanelWindow*(const PanelServices& services);
inline constexpr const char* makePanelWindowSymbol = "noctra_make_panel_window";

} // namespace noctra
