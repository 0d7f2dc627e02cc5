#include "platform/linux/tray/TraySurroundings.h"

#include <algorithm>
#include <cmath>

#include <QtGui/QGuiApplication>
#include <QtGui/QScreen>

#include "platform/linux/tray/BarColour.h"
#include "platform/linux/tray/DockWindows.h"
#include "platform/linux/tray/QtX11.h"
#include "platform/linux/tray/VisibleFrame.h"

namespace noctra {

namespace {

// Contrast of 3.4 to white and 6.1 to black, by WCAG's formula.
constexpr int unknownBarGrey = 0x8a;

int area(const Dock& dock) {
    return dock.frame.width * dock.frame.height;
}

} // namespace

TraySurroundings::TraySurroundings(const TrayKnowledge& knowledge) {
    if (xcb_connection_t* const connection = qtXConnection()) {
        docks_ = findDocks(connection, rootWindow(connection));
        const QScreen* const primary = QGuiApplication::primaryScreen();
        if (docks_.empty() && primary != nullptr)
            if (const PixelRect area = findWorkArea(connection, rootWindow(connection));
                !area.isEmpty())
                docks_ = barsAround(area, pixelsOf(*primary), wholeScreen(connection));
    }
    find(knowledge);
    if (screen_ == nullptr)
        screen_ = screenUnderPointer();
}

void TraySurroundings::find(const TrayKnowledge& knowledge) {
    if (!knowledge.hasHost)
        return;
    if (!knowledge.geometry.isEmpty()) {
        // How many pixels its points are depends on the screen that it lies on.
        for (QScreen* const screen : QGuiApplication::screens()) {
            const PixelRect pixels = toPixels(knowledge.geometry, *screen);
            if (pixelsOf(*screen).contains(pixels.middle())) {
                settleOn(pixels.middle());
                anchor_ = pixels;
                return;
            }
        }
    }
    // Where the item was clicked counts during that click, later only where a bar still lies.
    if (knowledge.click && screenAt(*knowledge.click) != nullptr &&
        (knowledge.clickIsNow || dockAt(*knowledge.click) != nullptr)) {
        settleOn(*knowledge.click);
        anchor_ = *knowledge.click;
        return;
    }
    if (const Dock* const dock = hostsDock(knowledge.hostProcess))
        settleOn(dock->frame.middle());
}

void TraySurroundings::settleOn(PixelPoint point) {
    screen_ = screenAt(point);
    bar_ = dockAt(point);
}

const Dock* TraySurroundings::dockAt(PixelPoint point) const {
    // The topmost, where docks lie on each other.
    const auto found = std::find_if(docks_.rbegin(), docks_.rend(),
                                    [&](const Dock& dock) { return dock.frame.contains(point); });
    return found == docks_.rend() ? nullptr : &*found;
}

/// The largest bar of that process, or of all where none is its.
const Dock* TraySurroundings::hostsDock(std::uint32_t process) const {
    const auto better = [&](const Dock& left, const Dock& right) {
        const auto rank = [&](const Dock& dock) {
            return std::pair(process != 0 && dock.processId == process, area(dock));
        };
        return rank(left) < rank(right);
    };
    const auto best = std::max_element(docks_.begin(), docks_.end(), better);
    return best == docks_.end() ? nullptr : &*best;
}

std::optional<double> TraySurroundings::visibleHeight() const {
    if (screen_ == nullptr || isMadeUp(*screen_))
        return std::nullopt;
    const PixelRect visible =
        visibleFrame(pixelsOf(*screen_), wholeScreen(qtXConnection()), docks_);
    return visible.height / screen_->devicePixelRatio();
}

QRect TraySurroundings::popoverPlace(const QSize& size) const {
    return {toPoints(popoverCorner(size), *screen_), size};
}

PixelPoint TraySurroundings::popoverCorner(const QSize& size) const {
    const PixelRect monitor = pixelsOf(*screen_);
    const PixelRect visible = visibleFrame(monitor, wholeScreen(qtXConnection()), docks_);
    const double factor = screen_->devicePixelRatio();
    const PixelSize pixels{static_cast<int>(std::lround(size.width() * factor)),
                           static_cast<int>(std::lround(size.height() * factor))};
    const std::optional<Edge> edge = bar_ != nullptr ? edgeOf(*bar_, monitor) : std::nullopt;
    return popoverPosition(pixels, anchor_, visible, edge);
}

QColor TraySurroundings::templateColor() const {
    if (bar_ != nullptr) {
        const auto* const item = std::get_if<PixelRect>(&anchor_);
        xcb_connection_t* const connection = qtXConnection();
        if (const auto luminance = barLuminance(connection, rootWindow(connection), bar_->frame,
                                                item != nullptr ? *item : PixelRect{}))
            return isDark(*luminance) ? Qt::white : Qt::black;
    }
    return {unknownBarGrey, unknownBarGrey, unknownBarGrey};
}

} // namespace noctra
