#include "panel/quick/StatusRowModel.h"

#include "panel/quick/Conversions.h"

namespace noctra {

StatusRowModel::StatusRowModel(PwmSafeStatusRow& row, const PwmSafeManager& pwmSafeManager)
    : row_(row), pwmSafeManager_(pwmSafeManager), shown_(now()) {}

StatusRowModel::Shown StatusRowModel::now() const {
    return {
        .showsToggleRow = row_.showsToggleRow(),
        .showsWarning = row_.showsWarning(),
        .dotColor = toQt(row_.dotColor(PwmSafeStatusRow::dotOffOpacity)),
        .glowColor = toQt(row_.dotGlowColor()),
        .statusColor = toQt(row_.dotColor(PwmSafeStatusRow::statusOffOpacity)),
        .borderColor = toQt(row_.borderColor()),
        .labelColor = toQt(row_.labelColor()),
        .statusWord = toQt(row_.statusWord()),
        .isOn = pwmSafeManager_.isEnabled,
        .warningColor = toQt(row_.warningColor()),
        .warningText = toQt(row_.warningText()),
        .tooltipShown = row_.isTooltipShown(),
        .tooltipLift = row_.tooltipLift(),
    };
}

void StatusRowModel::render() {
    Shown current = now();
    if (current == shown_)
        return;
    shown_ = std::move(current);
    emit changed();
}

QString StatusRowModel::label() {
    return toQt(PwmSafeStatusRow::label);
}

QString StatusRowModel::tooltipText() {
    return toQt(PwmSafeStatusRow::tooltipText());
}

QColor StatusRowModel::tooltipBorderColor() {
    return toQt(PwmSafeStatusRow::tooltipBorderColor());
}

void StatusRowModel::tooltipMeasured(qreal height) {
    row_.setTooltipMeasuredHeight(height);
    render();
}

} // namespace noctra
