#pragma once

#include <optional>

#include "foundation/AnyCancellable.h"
#include "platform/EventMonitors.h"
#include "platform/linux/tray/PixelRect.h"

namespace noctra {

/// Tells the end of the press that closed the popover from a click that shall open it again.
///
/// Hosts of status notifier items are other programs: the left press on the item closes the
/// popover, and its release, however much later, activates the item. That one activation is
/// swallowed: the first within 16 pixels of the press each way, unless something has been pressed
/// since. Main thread.
class ClosingPress {
public:
    /// `monitors` outlives the object.
    explicit ClosingPress(EventMonitors& monitors) : monitors_(monitors) {}

    /// A press of the left button at `where` closed the popover.
    void closedByPress(PixelPoint where);

    /// Whether an activation belongs to that press; asking is the activation. `activationAt` is
    /// where the pointer is, since hosts do not say where the release was.
    [[nodiscard]] bool swallows(PixelPoint activationAt);

private:
    void forget();

    EventMonitors& monitors_;
    std::optional<PixelPoint> press_;
    AnyCancellable nextPress_; ///< while there is one to forget
};

} // namespace noctra
