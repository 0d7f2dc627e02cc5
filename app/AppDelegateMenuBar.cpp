// The delegate's item in the menu bar, and the popover that hangs off it.

#include <algorithm>

#include "app/AppDelegate.h"
#include "engine/ColorFilterManager.h"
#include "platform/Application.h"
#include "platform/EventMonitors.h"
#include "platform/Resources.h"

namespace noctra {

namespace {

// In points.
constexpr double popoverWidth = 320.0;
constexpr double popoverIdealHeight = 540.0;
constexpr double popoverMinHeight = 360.0;
constexpr double popoverMargin = 24.0;
constexpr double iconSize = 18.0;
constexpr double symbolSize = 13.0;

// Long enough for the desktop to have arranged itself around the other displays.
constexpr Seconds reopenDelay{0.12};

} // namespace

void AppDelegate::setupStatusItem() {
    statusItem_ = services_.statusBar.makeItem();
    StatusItemButton* const itsButton = button();
    if (itsButton == nullptr)
        return;
    updateMenuBarIcon(engine().isEnabled);
    itsButton->setAction([this] { handleClick(); });
    if (statusItem_->desktopOpensMenu())
        statusItem_->setMenu(quitMenu());
}

void AppDelegate::setupPopover() {
    popover_ = services_.makePopover();
    if (!popover_)
        return;
    popover_->setContentSize(popoverWidth, popoverIdealHeight);
    popover_->onCloseAsked([this] { closePopover(); });
    popover_->onPlaceChanged([this] { followButton(); });
}

StatusItemButton* AppDelegate::button() const {
    return statusItem_ ? statusItem_->button() : nullptr;
}

void AppDelegate::updateMenuBarIcon(bool enabled) {
    StatusItemButton* const itsButton = button();
    if (itsButton == nullptr)
        return;
    StatusImage image = loadMenuBarPDF(enabled ? "active" : "off", !enabled);
    if (!image.picture) {
        const std::optional<Color> color =
            enabled ? std::optional(colors::systemRed) : std::nullopt;
        image.picture = services_.images.symbol(
            {.name = "bolt.fill", .pointSize = symbolSize, .bold = true, .color = color});
        if (!image.picture)
            return;
        image.width = image.height = symbolSize;
    }
    image.isTemplate = !enabled;
    image.description = enabled ? "Noctra On" : "Noctra Off";
    itsButton->setImage(image);
}

/// Without a picture where the file is missing or cannot be drawn.
StatusImage AppDelegate::loadMenuBarPDF(const std::string& name, bool isTemplate) {
    const std::string file = name + ".pdf";
    const std::optional<std::string> path = services_.resources.path(name, "pdf");
    if (!path) {
        services_.log.log("Menu bar PDF missing: " + file);
        return {};
    }
    StatusImage image{.picture = services_.images.loadPdf(*path),
                      .width = iconSize,
                      .height = iconSize,
                      .isTemplate = isTemplate};
    if (image.picture)
        services_.log.log("Menu bar PDF loaded: " + file +
                          " template=" + (isTemplate ? "true" : "false"));
    else
        services_.log.log("Menu bar PDF failed to load: " + file);
    return image;
}

void AppDelegate::handleClick() {
    StatusItemButton* const itsButton = button();
    const auto event = itsButton != nullptr ? itsButton->currentEvent() : std::nullopt;
    if (!event)
        return;
    if (*event == MouseEvent::rightMouseUp)
        showRightClickMenu();
    else
        togglePopover();
}

Menu AppDelegate::quitMenu() {
    return {
        {.title = "Show Noctra",
         .action =
             [this] {
                 if (!popoverIsShown())
                     showPopoverIfThereIsAButton();
             },
         .standsForClick = true},
        {.title = "Quit Noctra", .action = [this] { quitApp(); }, .keyEquivalent = "q"},
    };
}

void AppDelegate::showRightClickMenu() {
    statusItem_->setMenu(quitMenu());
    button()->performClick();
    // Desktops on which the button opens the menu give an attached menu the left clicks, too.
    if (!statusItem_->desktopOpensMenu())
        menuDetachment_.schedule(Seconds(0.0));
}

void AppDelegate::detachMenu() {
    statusItem_->setMenu(std::nullopt);
}

void AppDelegate::togglePopover() {
    if (popoverIsShown())
        closePopover();
    else
        showPopoverIfThereIsAButton();
}

void AppDelegate::showPopoverIfThereIsAButton() {
    if (StatusItemButton* const itsButton = button())
        showPopover(*itsButton);
}

void AppDelegate::showPopover(StatusItemButton& itsButton) {
    updatePopoverSize(itsButton);
    if (popover_)
        popover_->show(itsButton);
    services_.application.activate();
    if (popoverIsShown())
        eventMonitor_ = services_.eventMonitors.addGlobalMonitor([this] { closePopover(); });
}

void AppDelegate::followButton() {
    StatusItemButton* const itsButton = button();
    if (itsButton == nullptr || !popoverIsShown())
        return;
    updatePopoverSize(*itsButton);
    popover_->show(*itsButton);
}

void AppDelegate::closePopover() {
    if (popover_)
        popover_->performClose();
    eventMonitor_.cancel();
}

void AppDelegate::updatePopoverSize(const StatusItemButton& itsButton) {
    std::optional<double> visible = itsButton.visibleScreenHeight();
    if (!visible)
        visible = services_.statusBar.mainVisibleScreenHeight();
    const double height =
        visible ? std::clamp(*visible - popoverMargin, popoverMinHeight, popoverIdealHeight)
                : popoverIdealHeight - popoverMargin;
    if (popover_)
        popover_->setContentSize(popoverWidth, height);
}

void AppDelegate::handleScreenParameterChange() {
    if (!popoverIsShown() || button() == nullptr)
        return;
    closePopover();
    reopening_.schedule(reopenDelay);
}

} // namespace noctra
