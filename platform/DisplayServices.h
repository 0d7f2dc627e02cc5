#pragma once

#include <cstdint>

#include "platform/GammaTables.h"

namespace noctra {

/// The functions of a display-services library, which reads and sets the hardware brightness of
/// displays. Brightness is a 32-bit float from 0.0 (darkest) to 1.0 (full). A status of 0 is
/// success; with any other, what a pointer refers to is not to be trusted.
///
/// Main thread, and the thread that answers signals when the process is about to end.
namespace display_services {

using GetBrightness = std::int32_t(DisplayId display, float* brightness);
using SetBrightness = std::int32_t(DisplayId display, float brightness);
/// True when the display's brightness can be set through the library.
using CanChangeBrightness = bool(DisplayId display);
/// Switches the display's automatic brightness.
using EnableAmbientLightCompensation = std::int32_t(DisplayId display, bool enable);

inline constexpr const char* getBrightnessSymbol = "DisplayServicesGetBrightness";
inline constexpr const char* setBrightnessSymbol = "DisplayServicesSetBrightness";
/// A SetBrightness that takes the display there smoothly.
inline constexpr const char* setBrightnessSmoothSymbol = "DisplayServicesSetBrightnessSmooth";
inline constexpr const char* canChangeBrightnessSymbol = "DisplayServicesCanChangeBrightness";
inline constexpr const char* enableALCSymbol = "DisplayServicesEnableAmbientLightCompensation";

} // namespace display_services

} // namespace noctra
