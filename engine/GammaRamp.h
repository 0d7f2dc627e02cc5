#pragma once

#include "engine/ColorTemperatureCurve.h"
#include "platform/GammaTables.h"

namespace noctra {

/// Writes into `output` the `captured` tables of a display scaled by each channel's gain times
/// `brightness` (0.0 to 1.0). The product of gain and brightness is formed in double precision and
/// rounded to a float once per channel. `captured` is never changed, so applications do not add up,
/// and gains of 1.0 at brightness 1.0 give the captured tables bit for bit.
void scaleGammaTables(const GammaTables& captured, const ChannelGains& gains, double brightness,
                      GammaTables& output);

} // namespace noctra
