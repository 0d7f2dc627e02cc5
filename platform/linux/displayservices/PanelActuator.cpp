#include "platform/linux/displayservices/PanelActuator.h"

#include <algorithm>

namespace noctra::display_services {

using Clock = std::chrono::steady_clock;

void PanelActuator::advance() {
    const MutexLock turn(turn_);
    step(BacklightWriter::usualLimit);
}

void PanelActuator::advanceUnlessBusy(std::chrono::milliseconds limit) {
    if (!turn_.tryLock())
        return;
    const auto end = Clock::now() + limit;
    while (Clock::now() < end && registry_.isPanelDue(Clock::now()))
        step(std::min(BacklightWriter::usualLimit, limit / 2));
    turn_.unlock();
}

void PanelActuator::step(std::chrono::milliseconds busLimit) {
    const auto device = registry_.backlight();
    if (!device)
        return;
    const auto value = registry_.panelStep(readBacklight(*device), Clock::now());
    ownLevels_.save([this] { return registry_.levelsToKeep(); });
    if (!value)
        return;
    const bool succeeded = writer_.write(*device, *value, busLimit);
    registry_.panelWritten(*value, succeeded, Clock::now());
}

} // namespace noctra::display_services
