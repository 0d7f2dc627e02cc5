#pragma once

#include <functional>

#include "foundation/AnyCancellable.h"

namespace noctra {

/// Says what the user does with the mouse in other programs. Main thread.
class EventMonitors {
public:
    virtual ~EventMonitors() = default;

    /// Calls `pressed` after each press of the left or right button that went to another program,
    /// until the token is dropped, which `pressed` itself may do. The other program gets its
    /// press all the same. An inactive token where the desktop does not tell.
    [[nodiscard]] virtual AnyCancellable addGlobalMonitor(std::function<void()> pressed) = 0;
};

} // namespace noctra
