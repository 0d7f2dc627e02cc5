#include "panel/quick/SettingsModel.h"

#include <utility>

#include "panel/quick/Conversions.h"

namespace noctra {

SettingsModel::SettingsModel(std::shared_ptr<SettingsPanel> panel)
    : panel_(std::move(panel)), shown_(now()) {}

SettingsModel::Shown SettingsModel::now() const {
    return {.launchAtLogin = panel_->launchAtLogin().isOn.get(),
            .allowExtremeDim = panel_->allowExtremeDim().isOn.get(),
            .logCopied = panel_->logCopied()};
}

void SettingsModel::render() {
    const Shown current = now();
    if (current == shown_)
        return;
    shown_ = current;
    emit changed();
}

QString SettingsModel::title() const {
    return toQt(SettingsPanel::title);
}

QString SettingsModel::closeTitle() const {
    return toQt(SettingsPanel::closeTitle);
}

QString SettingsModel::stopTitle() const {
    return toQt(SettingsPanel::stopTitle);
}

QString SettingsModel::launchAtLoginTitle() const {
    return toQt(panel_->launchAtLogin().title);
}

QString SettingsModel::allowExtremeDimTitle() const {
    return toQt(panel_->allowExtremeDim().title);
}

QString SettingsModel::copyTitle() const {
    return toQt(panel_->copyTitle());
}

QColor SettingsModel::copyTitleColor() const {
    return toQt(panel_->copyTitleColor());
}

QString SettingsModel::copySymbol() const {
    return toQt(panel_->copySymbol());
}

QColor SettingsModel::copySymbolColor() const {
    return toQt(panel_->copySymbolColor());
}

} // namespace noctra
