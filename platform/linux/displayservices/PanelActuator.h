#pragma once

#include "foundation/ThreadSafety.h"
#include "platform/linux/displayservices/BacklightWriter.h"
#include "platform/linux/displayservices/DisplayRegistry.h"

namespace noctra::display_services {

/// Does what the registry wants done to the panel's backlight. Any thread; they take turns.
class PanelActuator {
public:
    PanelActuator(DisplayRegistry& registry, OwnLevels& ownLevels)
        : registry_(registry), ownLevels_(ownLevels) {}

    /// Does one step. May take half a second where the system bus hangs.
    void advance();
    /// Does all steps that are due, unless another thread is at it. Takes a little longer than
    /// `limit` at the most.
    void advanceUnlessBusy(std::chrono::milliseconds limit);

private:
    void step(std::chrono::milliseconds busLimit) REQUIRES(turn_);

    DisplayRegistry& registry_;
    OwnLevels& ownLevels_;
    Mutex turn_;
    BacklightWriter writer_ GUARDED_BY(turn_);
};

} // namespace noctra::display_services
