#pragma once

#include <functional>

namespace noctra {

class StatusItemButton;

/// A dark window without a frame at the item that it belongs to. Main thread.
class Popover {
public:
    virtual ~Popover() = default;

    /// In points; also while it is shown.
    virtual void setContentSize(double width, double height) = 0;
    [[nodiscard]] virtual bool isShown() const = 0;

    /// Shows it below `button`, or where that leaves it on the screen, above all other windows and
    /// with the keyboard's focus; where it is shown already, only moves it. Where it cannot be
    /// shown that is logged.
    virtual void show(const StatusItemButton& button) = 0;
    virtual void performClose() = 0;

    /// Runs `changed` where the popover is shown and the button turns out to be somewhere else, for
    /// example because the desktop has only now given it its place.
    virtual void onPlaceChanged(std::function<void()> changed) = 0;

    /// Runs `asked` where the user asks from inside for it to be closed, as with the Escape key;
    /// that alone does not close it.
    virtual void onCloseAsked(std::function<void()> asked) = 0;
};

} // namespace noctra
