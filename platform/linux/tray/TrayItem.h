#pragma once

#include <memory>

#include <QtCore/QObject>
#include <QtGui/QColor>
#include <QtWidgets/QMenu>
#include <QtWidgets/QSystemTrayIcon>

#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "platform/StatusItem.h"
#include "platform/linux/tray/ClosingPress.h"
#include "platform/linux/tray/EmbeddedClicks.h"
#include "platform/linux/tray/TrayHosts.h"
#include "platform/linux/tray/TraySurroundings.h"

namespace noctra {

/// What an item in the tray needs; all of it outlives the item.
struct TrayServices {
    Log& log;
    MainQueue& mainQueue;
    /// Knows the press that closed the popover.
    ClosingPress& closingPress;
    /// Null: there is none.
    SessionBusLink* sessionBus;
};

/// The program's item in the desktop's tray: a StatusNotifierItem where a host of these is there,
/// else a window in a tray on the X server. Main thread; needs a QApplication.
///
/// The item appears when a host does, however late, and again when its host, or the session bus, is
/// started again. Which kind it is of is settled by the first host that comes, since Qt asks once.
/// Where there is no host for a while that is said in the log once.
class TrayItem : public QObject, public StatusItem, private StatusItemButton {
    Q_OBJECT
public:
    explicit TrayItem(const TrayServices& services);
    ~TrayItem() override;

    [[nodiscard]] StatusItemButton* button() override { return this; }
    void setMenu(std::optional<Menu> menu) override;
    /// Hosts of notifier items do. In a tray of the other kind an attached menu takes no left click
    /// either; `performClick` opens it there.
    [[nodiscard]] bool desktopOpensMenu() const override { return true; }

    /// Where the item is now.
    [[nodiscard]] TraySurroundings surroundings() const;

signals:
    /// The item may have come to another place, in the time after it or its host has come.
    void placed();

protected:
    /// The menu's keys, which Qt hears only where a menu hangs in a window.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void setImage(const StatusImage& image) override;
    [[nodiscard]] const StatusImage* image() const override { return image_ ? &*image_ : nullptr; }
    void setAction(std::function<void()> action) override { action_ = std::move(action); }
    [[nodiscard]] std::optional<MouseEvent> currentEvent() const override { return event_; }
    void performClick() override;
    [[nodiscard]] std::optional<double> visibleScreenHeight() const override;

    void lookForHosts();
    void embedIfNothingBetterCame();
    void appear(const char* kind);
    void makeIcon();
    void settle();
    void settleIn();
    void sayThatThereIsNoHost();
    void fillMenu();
    void activated(QSystemTrayIcon::ActivationReason reason);
    void clicked(MouseEvent event);
    void lookAtBar();
    void drawIcon();

    const TrayServices services_;
    std::optional<StatusImage> image_;
    std::function<void()> action_;
    std::optional<MouseEvent> event_;
    std::optional<PixelPoint> click_; ///< the last one
    QColor templateColor_;            ///< that suits the bar, when it was last looked at
    struct {
        std::shared_ptr<const Picture> picture;
        QColor color;
    } drawn_; ///< what the icon was made from
    std::optional<Menu> menuItems_;
    QMenu menu_;
    const EmbeddedClicks embeddedClicks_;
    std::unique_ptr<QSystemTrayIcon> icon_; ///< from the first host on
    bool isNotifierItem_ = false;
    bool hostKeepsClicks_ = false; ///< when the menu was last filled
    TrayHosts hosts_;
    WorkItem embedding_;
    WorkItem noHost_;
    WorkItem settling_;
    std::size_t settlingAttempts_ = 0; ///< so far
};

} // namespace noctra
