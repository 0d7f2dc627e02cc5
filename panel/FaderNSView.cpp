#include "panel/FaderNSView.h"

#include <cstddef>

#include "panel/CubicBezier.h"
#include "panel/LayerTransaction.h"

namespace noctra {

namespace {

constexpr int markCount = 11;
constexpr Seconds glideTime{0.18};
/// The cap's centre sits this far above the top of the fill.
constexpr double capLift = 6.0;

constexpr bool isMajorMark(int mark) {
    return mark % 5 == 0;
}

std::shared_ptr<Layer> makeMark(int mark) {
    auto layer = std::make_shared<Layer>();
    layer->setBackgroundColor(colors::white.withAlpha(isMajorMark(mark) ? 0.4 : 0.15));
    return layer;
}

} // namespace

double clampedFaderValue(double value, double minimum) {
    const double raised = minimum <= value ? value : minimum;
    return raised > 1.0 ? 1.0 : raised;
}

FaderNSView::FaderNSView(double value, double minimumValue, const Color& accentColor,
                         bool isEnabled, double trackHeight, const SteadyClock& clock)
    : LayerView(clock), currentValue(clampedFaderValue(value, minimumValue)),
      minimumValue(minimumValue), accentColor(accentColor), isEnabled(isEnabled),
      trackHeight(trackHeight) {}

void FaderNSView::setupLayers() {
    if (layer() == nullptr)
        return;
    trackLayer->setLooks({.backgroundColor = colors::black.withAlpha(0.6),
                          .cornerRadius = 4.0,
                          .borderWidth = 2.0,
                          .borderColor = colors::black.withAlpha(0.8)});
    layer()->addSublayer(trackLayer);

    trackInnerLayer->setLooks({.backgroundColor = Color::grey(0.12), .cornerRadius = 2.0});
    layer()->addSublayer(trackInnerLayer);

    for (int mark = 0; mark < markCount; ++mark)
        for (int side = 0; side < 2; ++side) {
            tickLayers.push_back(makeMark(mark));
            layer()->addSublayer(tickLayers.back());
        }

    fillLayer->setLooks({.cornerRadius = 2.0});
    layer()->addSublayer(fillLayer);

    capLayer->setLooks({.cornerRadius = 5.0,
                        .shadowColor = colors::black,
                        .shadowOffsetX = 0.0,
                        .shadowOffsetY = -4.0,
                        .shadowRadius = 6.0,
                        .shadowOpacity = 0.6});
    layer()->addSublayer(capLayer);

    gripLayer->setLooks({.cornerRadius = 1.5});
    capLayer->addSublayer(gripLayer);

    updateColors(accentColor, isEnabled);
}

void FaderNSView::layout() {
    LayerView::layout();
    layoutLayers();
    updateFaderPosition(false);
}

void FaderNSView::layoutLayers() {
    const double midX = bounds().width / 2.0;
    trackLayer->setFrame({midX - trackWidth / 2.0, 15.0, trackWidth, trackHeight + 10.0});
    trackInnerLayer->setFrame(
        {midX - innerTrackWidth / 2.0, bottomPadding, innerTrackWidth, trackHeight});
    for (std::size_t i = 0; i + 1 < tickLayers.size(); i += 2) {
        const int mark = static_cast<int>(i / 2);
        const double length = isMajorMark(mark) ? 20.0 : 10.0;
        const double thickness = isMajorMark(mark) ? 2.0 : 1.0;
        const double y = trackHeight / 10.0 * (10 - mark) + bottomPadding - thickness / 2.0;
        tickLayers[i]->setFrame({8.0, y, length, thickness});
        tickLayers[i + 1]->setFrame({bounds().width - 8.0 - length, y, length, thickness});
    }
    capLayer->setFrame({midX - capWidth / 2.0, bottomPadding, capWidth, capHeight});
    gripLayer->setFrame({14.0, 12.5, 24.0, 3.0});
}

void FaderNSView::updateFaderPosition(bool animated) {
    if (layer() == nullptr)
        return;
    LayerTransaction transaction(*layer(), clock());
    if (animated) {
        transaction.setAnimationDuration(glideTime);
        transaction.setAnimationTimingFunction(timing::easeOut);
    } else {
        transaction.setDisableActions(true);
    }
    const double midX = bounds().width / 2.0;
    const double height = trackHeight * currentValue;
    fillLayer->setFrame({midX - innerTrackWidth / 2.0, bottomPadding, innerTrackWidth, height});
    capLayer->setFrame({midX - capWidth / 2.0, height + bottomPadding - capHeight / 2.0 + capLift,
                        capWidth, capHeight});
}

void FaderNSView::updateColors(const Color& newAccentColor, bool newIsEnabled) {
    accentColor = newAccentColor;
    isEnabled = newIsEnabled;
    if (layer() == nullptr)
        return;
    LayerTransaction transaction(*layer(), clock());
    transaction.setDisableActions(true);
    fillLayer->setBackgroundColor(isEnabled ? accentColor.withAlpha(0.8)
                                            : colors::white.withAlpha(0.1));

    auto gradient = std::make_shared<Layer>();
    gradient->setFrame(capLayer->bounds());
    gradient->setLooks({.cornerRadius = 5.0,
                        .gradient = LayerGradient{{Color::grey(0.35), Color::grey(0.22),
                                                   Color::grey(0.18), Color::grey(0.25)},
                                                  {0.0, 0.3, 0.7, 1.0}}});
    for (std::size_t i = capLayer->sublayers().size(); i-- > 0;)
        if (capLayer->sublayers()[i]->looks().gradient)
            capLayer->sublayers()[i]->removeFromSuperlayer();
    capLayer->insertSublayer(std::move(gradient), 0);

    gripLayer->setBackgroundColor(accentColor.withAlpha(isEnabled ? 0.9 : 0.3));
}

void FaderNSView::mouseDown(const PointerEvent& event) {
    isDragging = true;
    if (onDragStateChanged)
        onDragStateChanged(true);
    if (!event.screenY)
        return;
    dragStartY = *event.screenY;
    dragStartValue = currentValue;
    handleDrag(event);
}

void FaderNSView::mouseDragged(const PointerEvent& event) {
    handleDrag(event);
}

void FaderNSView::handleDrag(const PointerEvent& event) {
    if (!event.screenY)
        return;
    currentValue = clampedFaderValue(dragStartValue + (*event.screenY - dragStartY) / trackHeight,
                                     minimumValue);
    updateFaderPosition(false);
    if (onValueChanged)
        onValueChanged(currentValue);
}

void FaderNSView::mouseUp() {
    isDragging = false;
    if (onDragStateChanged)
        onDragStateChanged(false);
    if (onDragEnded)
        onDragEnded(currentValue);
}

void FaderNSView::cancelDrag() {
    if (isDragging)
        mouseUp();
}

double FaderNSView::latestValue() const {
    return keptValue ? clampedFaderValue(keptValue(), minimumValue) : currentValue;
}

void FaderNSView::setValueByUser(double newValue, bool animated) {
    if (isDragging)
        return;
    currentValue = clampedFaderValue(newValue, minimumValue);
    updateFaderPosition(animated);
    if (onValueChanged)
        onValueChanged(currentValue);
    if (onDragEnded)
        onDragEnded(currentValue);
}

} // namespace noctra
