#pragma once

#include "platform/GammaTables.h"
#include "platform/linux/NativeTables.h"

namespace noctra {

/// A CRTC's tables as they were captured: in its own size, and as the program saw them.
struct CapturedTables {
    NativeTables native;
    GammaTables sampled;
};

/// `native` (at least one entry) in the program's form: levels as fractions of 65535, resampled to
/// 256 entries by linear interpolation where the CRTC has another size.
void sampleNativeTables(const NativeTables& native, GammaTables& sampled);

/// `tables` in the form of a CRTC with `output.size()` entries (at least one), rounded to 16 bits;
/// levels outside 0.0 to 1.0 count as the nearer end, not-a-number as one of the ends. Allocates
/// nothing.
///
/// With `captured` (of that size, or null) the result keeps the detail that 256 entries cannot
/// hold: each of the CRTC's own levels is scaled as the resampled level next to it is. So tables
/// equal to the captured ones give back the CRTC's own bit for bit, whatever its size.
void tablesToNative(const GammaTables& tables, const CapturedTables* captured,
                    NativeTables& output);

} // namespace noctra
