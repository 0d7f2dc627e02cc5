#include "platform/linux/tray/TrayItem.h"

#include <array>

#include <QtGui/QAction>
#include <QtGui/QGuiApplication>
#include <QtGui/QKeyEvent>
#include <QtGui/QScreen>

#include "platform/linux/tray/QtX11.h"
#include "platform/qt/pdf/QtImages.h"

namespace noctra {

namespace {

// Bars that have both kinds of tray do not bring them up in the same moment.
constexpr Seconds embeddingPatience{0.5};
// How long the bar may take to come up at the start of a session.
constexpr Seconds hostPatience{5.0};
// When to look where the item lies, after the item or its host has come.
constexpr std::array settlingDelays{Seconds(0.1), Seconds(0.4), Seconds(1.5)};
// Desktops turn dark in the evening, and no event tells that a bar has.
constexpr Seconds barColorInterval{60.0};

} // namespace

TrayItem::TrayItem(const TrayServices& services)
    : services_(services), embeddedClicks_([this](Qt::MouseButton button) {
          if (button == Qt::LeftButton)
              clicked(MouseEvent::leftMouseUp);
          else if (button == Qt::RightButton)
              clicked(MouseEvent::rightMouseUp);
      }),
      hosts_(services.sessionBus, [this] { lookForHosts(); }),
      embedding_(services.mainQueue, [this] { embedIfNothingBetterCame(); }),
      noHost_(services.mainQueue, [this] { sayThatThereIsNoHost(); }),
      settling_(services.mainQueue, [this] { settleIn(); }) {
    noHost_.schedule(hostPatience);
    menu_.installEventFilter(this);
    for (const auto changed : {&QGuiApplication::screenAdded, &QGuiApplication::screenRemoved})
        connect(qGuiApp, changed, this, [this] { settle(); });
}

TrayItem::~TrayItem() = default;

void TrayItem::lookForHosts() {
    if (icon_) {
        // Qt registers the item with a new watcher only on the same bus, after a time without one.
        if (isNotifierItem_ && hosts_.hasNotifierHost() && hosts_.takeReplacement())
            makeIcon();
        else if (hosts_.keepsLeftClicks() != hostKeepsClicks_)
            fillMenu();
        settle();
        return;
    }
    if (hosts_.notifiersAreSilent())
        return; // Qt would ask the watcher and wait; this runs again when it has answered
    // Not before a host is there: Qt asks for one when the first icon is made, and never again.
    if (hosts_.hasNotifierHost()) {
        isNotifierItem_ = true;
        appear("StatusNotifierItem");
    } else if (hosts_.hasEmbeddingHost()) {
        embedding_.schedule(embeddingPatience);
    }
}

void TrayItem::embedIfNothingBetterCame() {
    if (!icon_ && !hosts_.notifiersAreSilent() && hosts_.hasEmbeddingHost())
        appear("system tray of the X server");
}

void TrayItem::appear(const char* kind) {
    noHost_.cancel();
    embedding_.cancel();
    services_.log.log("Tray: " + std::string(kind));
    static_cast<void>(hosts_.takeReplacement()); // from before there was an item
    makeIcon();
    settle();
}

void TrayItem::makeIcon() {
    drawn_ = {};
    icon_.reset(); // before the next is made, or hosts would show two
    icon_ = std::make_unique<QSystemTrayIcon>();
    fillMenu();
    if (isNotifierItem_)
        icon_->setContextMenu(&menu_);
    connect(icon_.get(), &QSystemTrayIcon::activated, this, &TrayItem::activated);
    lookAtBar();
    icon_->show();
}

/// Looks at the bar, and where the item lies, at short intervals from now on.
void TrayItem::settle() {
    if (!icon_)
        return;
    settlingAttempts_ = 0;
    settling_.schedule(settlingDelays.front());
}

/// Bars are drawn, and items given their place, some time after they are there.
void TrayItem::settleIn() {
    lookAtBar();
    if (settlingAttempts_ < settlingDelays.size())
        emit placed();
    if (++settlingAttempts_ < settlingDelays.size())
        settling_.schedule(settlingDelays[settlingAttempts_]);
    else if (image_ && image_->isTemplate)
        settling_.schedule(barColorInterval);
}

void TrayItem::sayThatThereIsNoHost() {
    services_.log.log("Tray: none on this desktop; noctra://show, or starting noctra again, opens "
                      "the panel");
}

void TrayItem::setMenu(std::optional<Menu> menu) {
    menuItems_ = std::move(menu);
    fillMenu();
}

void TrayItem::fillMenu() {
    menu_.clear();
    hostKeepsClicks_ = isNotifierItem_ && hosts_.keepsLeftClicks();
    for (const MenuItem& item : menuItems_.value_or(Menu())) {
        if (item.standsForClick && !hostKeepsClicks_)
            continue;
        QAction* const action = menu_.addAction(QString::fromStdString(item.title));
        // Hosts of notifier items draw the menu, and would show a key that they do not listen for.
        if (!item.keyEquivalent.empty() && !isNotifierItem_)
            action->setShortcut(
                QKeySequence("Ctrl+" + QString::fromStdString(item.keyEquivalent).toUpper()));
        connect(action, &QAction::triggered, this, [run = item.action] { run(); });
    }
}

bool TrayItem::eventFilter(QObject* watched, QEvent* event) {
    if (watched != &menu_ || event->type() != QEvent::KeyPress)
        return QObject::eventFilter(watched, event);
    const QKeySequence pressed(static_cast<QKeyEvent*>(event)->keyCombination());
    for (QAction* const action : menu_.actions())
        if (action->shortcut() == pressed) {
            menu_.hide();
            action->trigger();
            return true;
        }
    return false;
}

void TrayItem::setImage(const StatusImage& image) {
    image_ = image;
    if (!icon_)
        return;
    drawIcon();
    // A look takes round trips to the X server; several switches of the filter share one.
    if (settlingAttempts_ >= settlingDelays.size())
        settling_.schedule(settlingDelays.front());
}

/// Finds the colour in which a template can be seen on the bar.
void TrayItem::lookAtBar() {
    templateColor_ = surroundings().templateColor();
    drawIcon();
}

void TrayItem::drawIcon() {
    const QColor color = image_ && image_->isTemplate ? templateColor_ : QColor();
    if (!image_ || (drawn_.picture == image_->picture && drawn_.color == color))
        return;
    drawn_ = {image_->picture, color};
    icon_->setIcon(QtImages::icon(*image_, color));
    icon_->setToolTip(QString::fromStdString(image_->description));
}

void TrayItem::activated(QSystemTrayIcon::ActivationReason reason) {
    switch (reason) {
    case QSystemTrayIcon::Trigger:
    case QSystemTrayIcon::DoubleClick: // the second of two clicks
        if (!services_.closingPress.swallows(pointer()))
            clicked(MouseEvent::leftMouseUp);
        break;
    case QSystemTrayIcon::MiddleClick:
        if (hosts_.keepsLeftClicks())
            clicked(MouseEvent::leftMouseUp);
        break;
    case QSystemTrayIcon::Context:
        clicked(MouseEvent::rightMouseUp);
        break;
    default:
        break;
    }
}

void TrayItem::clicked(MouseEvent event) {
    click_ = pointer();
    event_ = event;
    if (action_)
        action_();
    event_.reset();
    settle(); // after the action, so that the panel does not wait for the look
}

void TrayItem::performClick() {
    if (menu_.isEmpty() || menu_.isVisible())
        return;
    // Not under the pointer, where a second click would choose a row of the menu.
    const TraySurroundings around = surroundings();
    menu_.popup(around.screen() != nullptr ? around.popoverPlace(menu_.sizeHint()).topLeft()
                                           : QCursor::pos());
}

TraySurroundings TrayItem::surroundings() const {
    const bool hasHost =
        icon_ && (isNotifierItem_ ? hosts_.hasNotifierHost() : hosts_.hasEmbeddingHost());
    return TraySurroundings({
        .hasHost = hasHost,
        .geometry = hasHost ? icon_->geometry() : QRect(),
        .click = click_,
        .clickIsNow = event_.has_value(),
        .hostProcess = hosts_.notifierProcess(),
    });
}

std::optional<double> TrayItem::visibleScreenHeight() const {
    return surroundings().visibleHeight();
}

} // namespace noctra
