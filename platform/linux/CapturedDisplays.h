#pragma once

#include <map>
#include <optional>

#include "platform/linux/GammaResampler.h"

namespace noctra {

/// What each display was last captured with, also while it is unplugged: its calibration goes with
/// it to whatever CRTC it comes to. One thread at a time.
class CapturedDisplays {
public:
    /// Whether it is filtered stays as it is.
    void capture(DisplayId display, CapturedTables tables);

    /// Null for a display that was never captured, or was on a CRTC of another size.
    [[nodiscard]] const CapturedTables* withSize(DisplayId display, std::size_t entries) const;
    /// In the form of a CRTC with `entries` entries; nothing for a display that was never captured.
    [[nodiscard]] std::optional<NativeTables> tablesFor(DisplayId display,
                                                        std::size_t entries) const;

    /// The program has written a filter to the display, or the display's own tables. Also tables
    /// equal to its own can be a filter, as long as it is on. Allocates nothing.
    void setFiltered(DisplayId display, bool isFiltered);
    /// Whatever the display carries now came over the filter, or is the filter.
    [[nodiscard]] bool isFiltered(DisplayId display) const;

private:
    struct Captured {
        CapturedTables tables;
        bool isFiltered = false;
    };
    std::map<DisplayId, Captured> displays_;
};

} // namespace noctra
