#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "foundation/Clock.h"
#include "foundation/Color.h"
#include "panel/Layer.h"
#include "panel/LayerView.h"

namespace noctra {

/// What a fader needs to know of a mouse event.
struct PointerEvent {
    /// The pointer's height in points, growing upwards, in coordinates that stay put while the view
    /// is dragged; nothing where the view is in no window.
    std::optional<double> screenY;
};

/// `value` within `minimum`..1.0. The lower bound is applied first.
[[nodiscard]] double clampedFaderValue(double value, double minimum);

/// A fader in the manner of a mixing desk: a slot with marks, a fill, and a cap to drag. It edits
/// one number in minimumValue..1.0. Main thread; a step of a drag allocates nothing.
class FaderNSView : public LayerView {
public:
    /// The caller then switches layer backing on and calls `setupLayers`.
    FaderNSView(double value, double minimumValue, const Color& accentColor, bool isEnabled,
                double trackHeight, const SteadyClock& clock);

    double currentValue; ///< what is shown, within minimumValue..1.0
    bool isDragging = false;
    std::function<void(double)> onDragEnded;      ///< with the final value
    std::function<void(double)> onValueChanged;   ///< on each step of a drag
    std::function<void(bool)> onDragStateChanged; ///< true at its begin, false at its end
    /// The value where it is kept, as it is once all reports have arrived there. A render may
    /// show an earlier one in between.
    std::function<double()> keptValue;
    double minimumValue;
    Color accentColor;
    bool isEnabled;     ///< selects the colours; input is taken all the same
    double trackHeight; ///< of the slot from value 0 to value 1, in points
    double dragStartY = 0.0;
    double dragStartValue = 0.0;
    const std::shared_ptr<Layer> trackLayer = std::make_shared<Layer>();
    const std::shared_ptr<Layer> trackInnerLayer = std::make_shared<Layer>();
    const std::shared_ptr<Layer> fillLayer = std::make_shared<Layer>();
    const std::shared_ptr<Layer> capLayer = std::make_shared<Layer>();
    const std::shared_ptr<Layer> gripLayer = std::make_shared<Layer>();
    /// Mark i, from the top, has its left layer at 2 i and its right one at 2 i + 1.
    std::vector<std::shared_ptr<Layer>> tickLayers;
    const double trackWidth = 14.0;
    const double innerTrackWidth = 8.0;
    const double capWidth = 52.0;
    const double capHeight = 28.0;
    const double bottomPadding = 20.0; ///< from the view's bottom edge to the level of value 0

    /// Builds the tree of layers; once. Does nothing without a backing layer.
    void setupLayers();
    void layout() override;
    void layoutLayers();
    void updateFaderPosition(bool animated);
    void updateColors(const Color& accentColor, bool isEnabled);

    void mouseDown(const PointerEvent& event);
    void mouseDragged(const PointerEvent& event);
    void mouseUp();

    /// Ends a drag whose end will not be seen, as if the button had been released.
    void cancelDrag();
    /// What a step of a key or a wheel goes on from.
    [[nodiscard]] double latestValue() const;
    /// A key or a wheel: takes the clamped `newValue` and reports it as a drag's last step, without
    /// a drag. Ignored while dragging.
    void setValueByUser(double newValue, bool animated);

private:
    void handleDrag(const PointerEvent& event);
};

} // namespace noctra
