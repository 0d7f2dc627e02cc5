#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QtCore/QRect>
#include <QtGui/QColor>

#include "platform/linux/tray/Dock.h"
#include "platform/linux/tray/PopoverPlacement.h"

class QScreen;

namespace noctra {

/// What is known of where the item is.
struct TrayKnowledge {
    bool hasHost = false;            ///< somebody shows the item
    QRect geometry;                  ///< the item's, in points, where its host tells; else empty
    std::optional<PixelPoint> click; ///< where it was last clicked
    bool clickIsNow = false;         ///< and the click is being answered
    std::uint32_t hostProcess = 0;   ///< 0: unknown
};

/// The item's place on the desktop, and what is there. The best of what is known: the geometry that
/// the host tells, else the place of a click, else the bar that holds the host's items, or where no
/// bar has a window the edge that is kept free for one, else the screen under the pointer. Main
/// thread; needs a QGuiApplication.
class TraySurroundings {
public:
    /// Looks, which takes some round trips to the X server.
    explicit TraySurroundings(const TrayKnowledge& knowledge);

    /// Null where there is no screen.
    [[nodiscard]] const QScreen* screen() const { return screen_; }
    /// Of the screen, without what bars take; in points. Nothing where nobody can see the screen.
    [[nodiscard]] std::optional<double> visibleHeight() const;
    /// Where a popover of this size belongs; in points. Needs a screen.
    [[nodiscard]] QRect popoverPlace(const QSize& size) const;
    /// The top left corner of that place to the pixel, which points do not always reach.
    [[nodiscard]] PixelPoint popoverCorner(const QSize& size) const;
    /// Whether that is where the item was clicked.
    [[nodiscard]] bool isAtClick() const { return std::holds_alternative<PixelPoint>(anchor_); }
    /// What a template is to be coloured in here: white on a dark bar, black on a light one, a grey
    /// that can be seen on both where the bar's colour is unknown.
    [[nodiscard]] QColor templateColor() const;

private:
    void find(const TrayKnowledge& knowledge);
    [[nodiscard]] const Dock* dockAt(PixelPoint point) const;
    [[nodiscard]] const Dock* hostsDock(std::uint32_t process) const;
    void settleOn(PixelPoint point);

    std::vector<Dock> docks_;
    const Dock* bar_ = nullptr; ///< the one with the item
    QScreen* screen_ = nullptr;
    PopoverAnchor anchor_ = HabitualCorner{};
};

} // namespace noctra
