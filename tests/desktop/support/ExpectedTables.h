#pragma once

#include "tests/desktop/support/Tables.h"

namespace noctra::desktop {

/// What a filter setting makes of the light of the three channels: the reference that the program
/// is measured against, written apart from the program.
struct Multipliers {
    double red = 1;
    double green = 1;
    double blue = 1;
};

/// The colour of `warmth` (0 neutral, 1 pure red) relative to the neutral one.
Multipliers multipliersFor(double warmth);

/// The tables that a display must carry while the filter is on, in exact arithmetic.
TablesByCrtc expectedTables(const TablesByCrtc& captured, double warmth, double brightness);

/// Tables that no neutral display has: bent, not starting at zero, different for every channel and
/// CRTC, but rising, as a calibration makes them.
TablesByCrtc calibratedLike(const TablesByCrtc& tables);

} // namespace noctra::desktop
