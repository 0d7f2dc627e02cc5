#include "platform/linux/tray/ClosingPress.h"

#include <cstdlib>
#include <utility>

namespace noctra {

namespace {

// A click is rarely held as long; whoever means to open the popover again comes later.
constexpr std::chrono::seconds longestClick{1};
// A hand's tremble on a fine display, and less than an icon is wide.
constexpr int farthestSlip = 16;

} // namespace

void ClosingPress::closedByPress(PixelPoint where, SteadyClock::TimePoint when) {
    press_ = Press{where, when};
}

bool ClosingPress::swallows(PixelPoint activationAt, SteadyClock::TimePoint when) {
    const std::optional<Press> press = std::exchange(press_, std::nullopt);
    return press && when - press->when <= longestClick &&
           std::abs(activationAt.x - press->where.x) <= farthestSlip &&
           std::abs(activationAt.y - press->where.y) <= farthestSlip;
}

} // namespace noctra
