#include "app/linux/LinuxPopover.h"

#include <cmath>
#include <utility>

#include <QtGui/QScreen>

#include "app/linux/LinuxPanel.h"
#include "panel/PanelWindow.h"
#include "platform/linux/tray/PopoverWindow.h"
#include "platform/linux/tray/TrayItem.h"
#include "platform/linux/tray/XInputEventMonitors.h"

namespace noctra {

namespace {

// How long a window manager may take to show a new window.
constexpr std::chrono::milliseconds mappingPatience{500};

} // namespace

LinuxPopover::LinuxPopover(const Parts& parts) : parts_(parts) {
    connect(&parts_.item, &TrayItem::placed, this, [this] { lookWhereTheItemIs(); });
}

/// The popover may be there before the item has found its place. One that is where it was clicked
/// stays.
void LinuxPopover::lookWhereTheItemIs() {
    if (!isShown() || isAtClick_)
        return;
    const TraySurroundings around = parts_.item.surroundings();
    if (around.screen() != nullptr && placeChanged_ &&
        around.popoverPlace(sizeOn(*around.screen())) != place_)
        placeChanged_();
}

QSize LinuxPopover::sizeOn(const QScreen& screen) const {
    const int edges = PanelEdge::across(screen.devicePixelRatio());
    return size_ + QSize(edges, edges);
}

void LinuxPopover::setContentSize(double width, double height) {
    size_ = {static_cast<int>(std::lround(width)), static_cast<int>(std::lround(height))};
}

bool LinuxPopover::isShown() const {
    return parts_.panel.isShown() &&
           (parts_.steadyClock.now() < dueAt_ || isBeforeTheEyes(parts_.panel.window()));
}

void LinuxPopover::show(const StatusItemButton&) {
    const TraySurroundings around = parts_.item.surroundings();
    if (around.screen() == nullptr)
        return; // there is no screen to show it on
    if (!isShown())
        parts_.panel.close(); // a window that a window manager has hidden is made anew
    const bool wasShown = parts_.panel.isShown();
    const QSize size = sizeOn(*around.screen());
    place_ = around.popoverPlace(size);
    isAtClick_ = around.isAtClick();
    parts_.panel.show({place_.x(), place_.y(), place_.width(), place_.height()});
    if (!parts_.panel.isShown())
        return;
    if (wasShown) {
        movePopover(parts_.panel.window(), around.popoverCorner(size));
        return;
    }
    bringPopover(parts_.panel.window(), around.popoverCorner(size));
    dueAt_ = parts_.steadyClock.now() + mappingPatience;
}

void LinuxPopover::performClose() {
    if (!parts_.panel.isShown())
        return;
    if (const auto& press = parts_.monitors.lastPress(); press && press->left)
        parts_.closingPress.closedByPress(press->where);
    parts_.panel.close();
}

void LinuxPopover::onPlaceChanged(std::function<void()> changed) {
    placeChanged_ = std::move(changed);
}

void LinuxPopover::onCloseAsked(std::function<void()> asked) {
    parts_.panel.onCloseAsked(std::move(asked));
}

} // namespace noctra
