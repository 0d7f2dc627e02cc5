#include "panel/FilterControlView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "engine/ColorFilterManager.h"
#include "panel/AnalogPalette.h"
#include "platform/NumberFormat.h"
#include "pwmsafe/PwmSafeManager.h"

namespace noctra {

namespace {

// The colour temperature of no warmth at all, in kelvin. The readout counts from here down to 0 in
// a straight line, also where the displays' colours no longer follow it.
constexpr double neutralKelvin = 6500.0;
// How near the warmth must be to a preset's for the preset to show as active.
constexpr double presetTolerance = 0.02;

} // namespace

FilterControlView::FilterControlView(const PanelServices& services, std::function<void()> render)
    : services_(services), filterManager_(services.filterManager),
      render_(services.mainQueue, std::move(render)),
      statusRow_(services.filterManager, services.pwmSafeManager, services.mainQueue,
                 services.cursor, [this] { scheduleRender(); }) {
    services.pwmSafeManager.refreshControllableDisplays();
    filterChanges_ = filterManager_.onWillChange([this] { scheduleRender(); });
    pwmSafeChanges_ = services.pwmSafeManager.onWillChange([this] { scheduleRender(); });
}

FilterControlView::~FilterControlView() = default;

/// On a later turn: the signal comes before the change, and one render does for many.
void FilterControlView::scheduleRender() {
    if (!render_.isPending())
        render_.schedule(Seconds(0));
}

StudioFader FilterControlView::warmthFader() {
    return {.value = bindingTo(filterManager_.intensity),
            .color = AnalogPalette::redSignal,
            .isEnabled = filterManager_.isEnabled,
            .minimumValue = 0.0,
            .onDragStateChanged = [this, alive = std::weak_ptr(alive_)](bool dragging) {
                if (alive.expired())
                    return; // told after the panel has gone
                isWarmthDragging_ = dragging;
                scheduleRender();
            }};
}

StudioFader FilterControlView::brightnessFader() {
    return {.value = bindingTo(filterManager_.brightness),
            .color = colors::white,
            .isEnabled = filterManager_.isEnabled,
            .minimumValue = filterManager_.allowExtremeDim ? 0.0 : 0.1,
            .onDragStateChanged = {}};
}

FaderReadout FilterControlView::warmthReadout() const {
    return {kelvinText(), AnalogPalette::redSignal, AnalogPalette::redSignal.withAlpha(0.6), 84.0};
}

FaderReadout FilterControlView::brightnessReadout() const {
    return {percentText(), colors::white, colors::white.withAlpha(0.4), 64.0};
}

std::string FilterControlView::kelvinText() const {
    const double warmth = filterManager_.intensity;
    const double kelvin =
        warmth <= 0.0 ? neutralKelvin : (1.0 - std::min(warmth, 1.0)) * neutralKelvin;
    const long long rounded = std::llround(kelvin);
    return services_.numbers.decimal(rounded).value_or(std::to_string(rounded)) + "K";
}

/// Cut off, not rounded: 0.29 times 100 is just below 29.
std::string FilterControlView::percentText() const {
    return std::to_string(static_cast<int>(filterManager_.brightness * 100.0)) + "%";
}

bool FilterControlView::isActive(const Preset& preset) const {
    // A preset does not light up while the fader is dragged past it.
    return !isWarmthDragging_ &&
           std::abs(filterManager_.intensity - preset.intensity) < presetTolerance;
}

PresetButton FilterControlView::presetButton(std::size_t index) {
    const Preset& preset = presets.at(index);
    return {.label = preset.label, .isActive = isActive(preset), .action = [this, &preset] {
                transaction.with(PresetButton::pressSpring, [&] { apply(preset); });
            }};
}

void FilterControlView::apply(const Preset& preset) {
    filterManager_.intensity = preset.intensity;
    filterManager_.brightness = preset.brightness;
    filterManager_.isEnabled = true;
}

NoctraSwitch FilterControlView::powerSwitch() const {
    return {bindingTo(filterManager_.isEnabled)};
}

void FilterControlView::setShowingSettings(bool showing) {
    showingSettings_ = showing;
    if (showing)
        settings_ = std::make_shared<SettingsPanel>(
            services_,
            Binding<bool>{.get = [this] { return showingSettings_; },
                          .set =
                              [this](bool value) {
                                  setShowingSettings(value);
                              }},
            [this] { scheduleRender(); });
    scheduleRender();
}

void FilterControlView::settingsLeft() {
    if (!showingSettings_)
        settings_.reset();
}

} // namespace noctra
