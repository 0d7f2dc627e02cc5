#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/Images.h"

namespace noctra {

enum class MouseEvent { leftMouseUp, rightMouseUp };

struct MenuItem {
    std::string title;
    std::function<void()> action;
    std::string keyEquivalent = {}; ///< a letter, with the desktop's usual modifier
    /// It does what a left click does; there only where the desktop keeps left clicks for the menu.
    bool standsForClick = false;
};
using Menu = std::vector<MenuItem>;

/// What of a status item can be seen and clicked. Main thread.
class StatusItemButton {
public:
    virtual ~StatusItemButton() = default;

    /// Scaled down, never up, to fit.
    virtual void setImage(const StatusImage& image) = 0;
    /// The image set last; null before the first.
    [[nodiscard]] virtual const StatusImage* image() const = 0;

    /// What a click does: `action` runs when the left or right button comes up.
    virtual void setAction(std::function<void()> action) = 0;
    /// The event that the action is running for; nothing at other times.
    [[nodiscard]] virtual std::optional<MouseEvent> currentEvent() const = 0;
    /// Opens the item's menu where it has one; else does nothing.
    virtual void performClick() = 0;

    /// The height of the screen that the button is on, without what the desktop's own bars take, in
    /// points. Nothing where the screen is not known.
    [[nodiscard]] virtual std::optional<double> visibleScreenHeight() const = 0;
};

/// The program's item among those of the desktop's status bar, as long as the object lives. Where
/// the desktop shows no such items at the moment, it comes up once the desktop does. Main thread.
class StatusItem {
public:
    virtual ~StatusItem() = default;

    /// Null where the item cannot be shown or clicked; else lives as long as the item.
    [[nodiscard]] virtual StatusItemButton* button() = 0;

    virtual void setMenu(std::optional<Menu> menu) = 0;

    /// Whether the desktop, and not the button, opens the menu, at a right click only: then the
    /// menu has to be there before the click, and does not get in the way of left clicks.
    [[nodiscard]] virtual bool desktopOpensMenu() const = 0;
};

class StatusBar {
public:
    virtual ~StatusBar() = default;

    /// Null where there can be no items.
    [[nodiscard]] virtual std::unique_ptr<StatusItem> makeItem() = 0;
    /// Of the screen that has the user's attention; in points, without what the desktop's bars
    /// take. Nothing where there is no screen.
    [[nodiscard]] virtual std::optional<double> mainVisibleScreenHeight() const = 0;
};

} // namespace noctra
