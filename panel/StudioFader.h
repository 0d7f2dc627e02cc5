#pragma once

#include <functional>

#include "foundation/Color.h"
#include "panel/Binding.h"
#include "panel/NativeSliderView.h"
#include "panel/Rect.h"

namespace noctra {

/// The panel's fader: a NativeSliderView whose slot fits the space that it gets.
struct StudioFader {
    Binding<double> value;
    Color color;
    bool isEnabled = true;
    double minimumValue = 0.0;
    std::function<void(bool)> onDragStateChanged = {}; ///< optional

    struct Body {
        Rect frame;
        NativeSliderView slider;
    };
    /// What there is to be shown in a space of `width` times `height` points.
    [[nodiscard]] Body body(double width, double height) const;
};

} // namespace noctra
