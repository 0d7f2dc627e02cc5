#include "panel/NativeSliderView.h"

#include <cmath>

#include "panel/FaderCallbacks.h"

namespace noctra {

namespace {

/// Changes from outside up to this, such as the echo of the user's own drag, are shown at once;
/// greater ones glide.
constexpr double greatestSnap = 0.01;

} // namespace

std::unique_ptr<FaderNSView> NativeSliderView::makeNSView(MainQueue& mainQueue,
                                                          const SteadyClock& clock) const {
    auto fader = std::make_unique<FaderNSView>(value.get(), minimumValue, accentColor, isEnabled,
                                               trackHeight, clock);
    fader->setWantsLayer(true);
    fader->setupLayers();
    const auto callbacks = std::make_shared<FaderCallbacks>(mainQueue, value, onDragStateChanged);
    fader->onValueChanged = [callbacks](double x) {
        callbacks->noteValue(x);
    };
    fader->onDragEnded = [callbacks](double x) {
        callbacks->noteValue(x);
    };
    fader->onDragStateChanged = [callbacks](bool b) {
        callbacks->noteDragState(b);
    };
    fader->keptValue = [callbacks] {
        return callbacks->latestValue();
    };
    return fader;
}

void NativeSliderView::updateNSView(FaderNSView& fader) const {
    fader.minimumValue = minimumValue;
    if (!fader.isDragging) {
        const double shown = clampedFaderValue(value.get(), minimumValue);
        const double distance = std::abs(shown - fader.currentValue);
        fader.currentValue = shown;
        fader.updateFaderPosition(distance > greatestSnap);
    }
    fader.updateColors(accentColor, isEnabled);
}

} // namespace noctra
