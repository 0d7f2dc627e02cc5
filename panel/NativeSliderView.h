#pragma once

#include <functional>
#include <memory>

#include "foundation/Clock.h"
#include "foundation/Color.h"
#include "foundation/MainQueue.h"
#include "panel/Binding.h"
#include "panel/FaderNSView.h"

namespace noctra {

/// Links a FaderNSView to a two-way binding. Main thread.
struct NativeSliderView {
    Binding<double> value;
    Color accentColor;
    bool isEnabled = true;
    double trackHeight = 0.0; ///< in points; taken when the view is made, and kept by it
    double minimumValue = 0.0;
    std::function<void(bool)> onDragStateChanged = {}; ///< optional

    /// A view that shows the binding's value. Its reports reach the binding on a later turn of
    /// `mainQueue`, the last ones after the view has gone. Both arguments must outlive the view.
    [[nodiscard]] std::unique_ptr<FaderNSView> makeNSView(MainQueue& mainQueue,
                                                          const SteadyClock& clock) const;
    /// To be called whenever the panel renders this element again. The binding is not followed
    /// while the user drags.
    void updateNSView(FaderNSView& fader) const;
};

} // namespace noctra
