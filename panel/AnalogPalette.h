#pragma once

#include "foundation/Color.h"

namespace noctra {

/// The panel's own colours: those of a piece of studio hardware.
struct AnalogPalette {
    static constexpr Color bgDeep{0.05, 0.05, 0.05};
    static constexpr Color panelGrey{0.1, 0.1, 0.1};
    static constexpr Color redSignal{1.0, 0.0, 0.0};
};

} // namespace noctra
