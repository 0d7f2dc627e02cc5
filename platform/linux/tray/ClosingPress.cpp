#include "platform/linux/tray/ClosingPress.h"

#include <cstdlib>

namespace noctra {

namespace {

// Pixels: more than a hand moves between press and release, less than an icon is wide.
constexpr int farthestSlip = 16;

} // namespace

void ClosingPress::closedByPress(PixelPoint where) {
    press_ = where;
    nextPress_ = monitors_.addGlobalMonitor([this] { forget(); });
}

bool ClosingPress::swallows(PixelPoint activationAt) {
    const std::optional<PixelPoint> press = press_;
    forget();
    return press && std::abs(activationAt.x - press->x) <= farthestSlip &&
           std::abs(activationAt.y - press->y) <= farthestSlip;
}

void ClosingPress::forget() {
    press_.reset();
    nextPress_.cancel();
}

} // namespace noctra
