#pragma once

#include <optional>

#include "foundation/Clock.h"
#include "platform/linux/tray/PixelRect.h"

namespace noctra {

/// Tells the end of the press that closed the popover from a click that shall open it again.
///
/// Hosts of status notifier items are other programs: the left press on the item closes the
/// popover, and its release, some time later, activates the item. That one activation is swallowed:
/// the first within 1 s of the press and 16 pixels of it each way. A button held for longer opens
/// the popover again. Main thread.
class ClosingPress {
public:
    /// A press of the left button at `where` closed the popover.
    void closedByPress(PixelPoint where, SteadyClock::TimePoint when);

    /// Whether an activation belongs to that press; asking is the activation. `activationAt` is
    /// where the pointer is, since hosts do not say where the release was.
    [[nodiscard]] bool swallows(PixelPoint activationAt, SteadyClock::TimePoint when);

private:
    struct Press {
        PixelPoint where;
        SteadyClock::TimePoint when;
    };
    std::optional<Press> press_;
};

} // namespace noctra
