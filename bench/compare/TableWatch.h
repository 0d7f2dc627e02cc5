#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "bench/support/XConnection.h"

namespace noctra::bench {

/// Sees when the displays become warm or neutral, over a connection of its own. A display is warm
/// when the top of its blue table is below 80 % of full; the programs compared are set to warmths
/// far below that, and neutral tables and the benchmark's calibration are far above. Throws
/// std::runtime_error when the X server gives no answer.
class TableWatch {
public:
    using Clock = std::chrono::steady_clock;

    /// `display` as in the DISPLAY variable.
    explicit TableWatch(const std::string& display);

    [[nodiscard]] std::size_t displays() const { return crtcs_.size(); }
    /// True when every display is as asked for.
    [[nodiscard]] bool allAre(bool warm) const;

    /// Reads in a tight loop until every display is as asked for; when that was seen, nothing where
    /// it was not within `patience`. Watches the display that is listed last, which all programs
    /// here write last; where others were later than it, the time is that of the last of them.
    [[nodiscard]] std::optional<Clock::time_point> await(bool warm, Clock::duration patience) const;

private:
    [[nodiscard]] bool lastIs(bool warm) const;

    desktop::XConnection connection_;
    std::vector<xcb_randr_crtc_t> crtcs_; ///< those that show something
};

} // namespace noctra::bench
