#pragma once

#include <string_view>

#include "panel/Font.h"
#include "platform/Fonts.h"

namespace noctra {

/// The face of the panel's labels.
struct BrandFont {
    /// The registered font "Anybody-" followed by `weight`, at `size` points. Where there is none,
    /// the system's font in that size: heavy (900) for exactly "ExtraBold", else bold (700).
    [[nodiscard]] static Font anybody(const Fonts& fonts, double size, std::string_view weight);
};

} // namespace noctra
