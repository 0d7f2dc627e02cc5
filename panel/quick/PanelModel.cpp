#include "panel/quick/PanelModel.h"

#include "engine/ColorFilterManager.h"
#include "panel/AnalogPalette.h"
#include "platform/MotionPreference.h"
#include "platform/Resources.h"

namespace noctra {

PanelModel::PanelModel(const PanelServices& services, PanelState& state)
    : services_(services), state_(state), reducesMotion_(services.motion.reducesMotion()),
      view_(services_, [this] { render(); }), fonts_(services.fonts),
      warmth_(services_, [this] { return view_.warmthFader(); }),
      brightness_(services_, [this] { return view_.brightnessFader(); }),
      warmthReadout_(view_.warmthReadout()), brightnessReadout_(view_.brightnessReadout()),
      statusRow_(view_.statusRow(), services.pwmSafeManager), isOn_(view_.powerSwitch().isOn.get()),
      powerIcon_(icon(QStringLiteral("active"))), power_(services.steadyClock, isOn_ ? 1.0 : 0.0),
      sheet_(services.steadyClock, 0.0) {
    for (std::size_t i = 0; i < FilterControlView::presets.size(); ++i)
        presets_.push_back(std::make_unique<PresetModel>(view_, i));
    connect(&power_, &SpringFollower::valueChanged, this, &PanelModel::powerStyleChanged);
    connect(&sheet_, &SpringFollower::valueChanged, this, &PanelModel::sheetLevelChanged);
    connect(&sheet_, &SpringFollower::settled, this, [this] {
        if (showingSettings_ || !settings_)
            return;
        // The items go first, then what they show.
        const std::unique_ptr<SettingsModel> leaving = std::move(settings_);
        emit settingsChanged();
        view_.settingsLeft();
    });
    if (state_.showingSettings) {
        view_.toggleSettings();
        settings_ = std::make_unique<SettingsModel>(view_.settings());
        showingSettings_ = true;
        sheet_.moveTo(1.0, std::nullopt);
    }
}

PanelModel::~PanelModel() {
    state_.showingSettings = view_.showingSettings();
}

QColor PanelModel::bgDeep() {
    return toQt(AnalogPalette::bgDeep);
}

QColor PanelModel::panelGrey() {
    return toQt(AnalogPalette::panelGrey);
}

QColor PanelModel::redSignal() {
    return toQt(AnalogPalette::redSignal);
}

QColor PanelModel::systemRed() {
    return toQt(colors::systemRed);
}

void PanelModel::setShowsFocus(bool shows) {
    if (shows == showsFocus_)
        return;
    showsFocus_ = shows;
    emit showsFocusChanged();
}

void PanelModel::setTouched(bool touched) {
    if (touched == isTouched_)
        return;
    isTouched_ = touched;
    emit isTouchedChanged();
}

QList<PresetModel*> PanelModel::presets() const {
    QList<PresetModel*> list;
    for (const auto& preset : presets_)
        list.append(preset.get());
    return list;
}

ButtonStyleValue PanelModel::powerStyle() const {
    return ButtonStyleValue(
        mixed(NoctraSwitch::style(false), NoctraSwitch::style(true), power_.value()));
}

void PanelModel::escape() {
    if (showingSettings_)
        view_.toggleSettings();
    else
        emit closeRequested();
}

QString PanelModel::icon(const QString& name) const {
    return toQt(services_.resources.path(name.toStdString(), "pdf").value_or(std::string()));
}

void PanelModel::render() {
    renderReadouts();
    for (const auto& preset : presets_)
        preset->render();
    statusRow_.render();
    renderPower();
    renderSettings();
    emit warmth_.rendered();
    emit brightness_.rendered();
}

void PanelModel::renderReadouts() {
    const auto renderOne = [this](ReadoutValue& shown, const FaderReadout& readout,
                                  void (PanelModel::*changed)()) {
        ReadoutValue now(readout);
        if (now == shown)
            return;
        shown = std::move(now);
        emit(this->*changed)();
    };
    renderOne(warmthReadout_, view_.warmthReadout(), &PanelModel::warmthReadoutChanged);
    renderOne(brightnessReadout_, view_.brightnessReadout(), &PanelModel::brightnessReadoutChanged);
}

void PanelModel::renderPower() {
    if (const QString path = icon(QStringLiteral("active")); path != powerIcon_) {
        powerIcon_ = path;
        emit powerIconChanged();
    }
    const std::optional<SpringSpec> spring = view_.transaction.take();
    const bool isOn = view_.powerSwitch().isOn.get();
    if (isOn == isOn_)
        return;
    isOn_ = isOn;
    emit isOnChanged();
    power_.moveTo(isOn ? 1.0 : 0.0, unlessReduced(spring));
}

void PanelModel::renderSettings() {
    const std::shared_ptr<SettingsPanel> panel = view_.settings();
    // Opened and closed again within one turn, there is nothing to show.
    if (panel && view_.showingSettings() && (!settings_ || !settings_->shows(*panel))) {
        const auto previous = std::exchange(settings_, std::make_unique<SettingsModel>(panel));
        emit settingsChanged();
    } else if (settings_) {
        settings_->render();
    }
    if (showingSettings_ == view_.showingSettings())
        return;
    showingSettings_ = view_.showingSettings();
    emit showingSettingsChanged();
    sheet_.moveTo(showingSettings_ ? 1.0 : 0.0, unlessReduced(FilterControlView::settingsSpring));
}

std::optional<SpringSpec> PanelModel::unlessReduced(std::optional<SpringSpec> spring) const {
    return reducesMotion_ ? std::nullopt : spring;
}

} // namespace noctra
