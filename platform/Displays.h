#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "foundation/FunctionRef.h"
#include "platform/GammaTables.h"

namespace noctra {

/// A desktop's displays and their transfer tables.
///
/// Everything but `screenCount` is called from inside work on the engine's gamma queue, hence from
/// one thread at a time but not always from the same one. No operation throws; a display that fails
/// never affects another. Identifiers that name no attached display are answered with a failure.
class Displays {
public:
    /// 0 is success; any other value is the desktop's own error code.
    using Status = std::int32_t;

    virtual ~Displays() = default;

    /// Replaces the contents of `ids` by the attached screens' displays, in screen order. Two
    /// screens may name the same display. Allocates only while `ids` is too small.
    virtual void attachedScreens(std::vector<DisplayId>& ids) = 0;

    /// Reads the display's own tables: those that it carries now, or while it carries what was last
    /// written to it here, those that it carried before that. On success fills the first
    /// `sampleCount` entries of each channel (at most 256; the rest stays as it was); on failure
    /// changes nothing.
    virtual Status readTables(DisplayId display, GammaTables& tables,
                              std::uint32_t& sampleCount) = 0;

    /// Asks for `tables` to be put on the display. The request may wait until `settle`.
    virtual void writeTables(DisplayId display, const GammaTables& tables) = 0;

    /// As writeTables, for the display's own `tables`: with them the filter is off it, until the
    /// next writeTables.
    virtual void giveBackTables(DisplayId display, const GammaTables& tables) {
        writeTables(display, tables);
    }

    /// Returns when every write asked for since the last call is on its display or has failed, and
    /// calls `failed` for each one that has. Costs one wait however many displays were written.
    virtual void settle(FunctionRef<void(DisplayId, Status)> failed) = 0;

    /// Puts every display back to its calibrated tables: those of its profile where it has one,
    /// else those it carried before an earlier run of the program left a filter on it. A display
    /// that has neither keeps the tables it has. May ask other services and so take some time
    /// (bounded, about half a second).
    virtual void restoreCalibratedTables() = 0;

    /// The number of screens. Any thread.
    [[nodiscard]] virtual std::size_t screenCount() const = 0;
};

} // namespace noctra
