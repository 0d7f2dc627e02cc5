#pragma once

#include <string>

#include "foundation/Color.h"

namespace noctra {

/// The number under a fader: monospaced and glowing in a black field of fixed size.
struct FaderReadout {
    std::string text;
    Color foregroundColor;
    Color glowColor;
    double width = 0.0; ///< of the field, in points; a longer text is cut off, not given more

    static constexpr Color fieldColor = colors::black;
    static constexpr Color borderColor = colors::white.withAlpha(0.1);
};

} // namespace noctra
