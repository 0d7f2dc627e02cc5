#pragma once

#include "panel/FaderKeys.h"
#include "panel/FilterControlView.h"

namespace noctra {

/// What fills the popover: the control panel at its own size, scrolled where the popover is less
/// high than that.
struct PopoverRootView {
    struct Size {
        double width;  ///< points
        double height; ///< points
    };
    static constexpr Size panelSize{FilterControlView::width, FilterControlView::height};

    /// Whether there is more of the panel than `availableHeight` points can show.
    [[nodiscard]] static constexpr bool showsIndicators(double availableHeight) {
        return availableHeight < panelSize.height;
    }

    /// How far down the panel a turn of the wheel goes, in points. `units` are eighths of a degree,
    /// positive away from the user; `points` count where a device reports nothing else, since X
    /// servers give them in units of the driver's own.
    [[nodiscard]] static constexpr double wheelDistance(double points, double units) {
        return units != 0.0 ? -units / fader_keys::wheelNotchUnits * notch : -points;
    }

    static constexpr double notch = 48.0; ///< points, so that a short panel takes a few
};

} // namespace noctra
