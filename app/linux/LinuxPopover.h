#pragma once

#include <QtCore/QObject>
#include <QtCore/QRect>
#include <QtCore/QSize>

#include "foundation/Clock.h"
#include "platform/Popover.h"

class QScreen;

namespace noctra {

class ClosingPress;
class LinuxPanel;
class TrayItem;
class XInputEventMonitors;

/// The panel's window beside the item in the tray. Main thread; needs a QApplication.
class LinuxPopover : public QObject, public Popover {
public:
    struct Parts {
        LinuxPanel& panel;
        TrayItem& item;
        /// Knows the press that closed the popover, if one did.
        const XInputEventMonitors& monitors;
        ClosingPress& closingPress;
        const SteadyClock& steadyClock;
    };

    /// All of `parts` outlive the object.
    explicit LinuxPopover(const Parts& parts);

    void setContentSize(double width, double height) override;
    /// One that the window manager has hidden, or never showed, is not.
    [[nodiscard]] bool isShown() const override;
    void show(const StatusItemButton& button) override;
    void performClose() override;
    void onPlaceChanged(std::function<void()> changed) override;
    void onCloseAsked(std::function<void()> asked) override;

private:
    void lookWhereTheItemIs();
    /// Of the window: the content's and the edge around it.
    [[nodiscard]] QSize sizeOn(const QScreen& screen) const;

    const Parts parts_;
    QSize size_;  ///< of the content
    QRect place_; ///< where it was shown last
    bool isAtClick_ = false;
    SteadyClock::TimePoint dueAt_; ///< by when a window manager has shown it
    std::function<void()> placeChanged_;
};

} // namespace noctra
