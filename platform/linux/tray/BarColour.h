#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include <xcb/xcb.h>

#include "platform/linux/tray/PixelRect.h"

namespace noctra {

/// The relative luminance, 0 to 1, of what the X screen shows in `area` without `exclude`: of the
/// colour that prevails there, since bars carry icons and text. Gamma tables have no part in it.
///
/// Reads at most 65536 pixels, those nearest to the middle of `exclude`, or of `area` where that is
/// empty. Takes two round trips. Nothing where nothing of the area is on the screen, the screen has
/// no 32 bits per pixel (depths of 24 and more), or the connection is broken.
[[nodiscard]] std::optional<double> barLuminance(xcb_connection_t* connection, xcb_window_t root,
                                                 const PixelRect& area, const PixelRect& exclude);

/// The relative luminance of the colour that most of `pixels` (0xRRGGBB, sRGB) are near to; 0 for
/// no pixels. https://www.w3.org/TR/WCAG21/#dfn-relative-luminance
[[nodiscard]] double prevailingLuminance(std::span<const std::uint32_t> pixels);

/// Whether white stands out from the luminance more than black does. By WCAG's contrast ratio,
/// (lighter + 0.05) / (darker + 0.05), both do alike at sqrt(1.05 * 0.05) - 0.05.
[[nodiscard]] constexpr bool isDark(double luminance) {
    return luminance < 0.1791;
}

} // namespace noctra
