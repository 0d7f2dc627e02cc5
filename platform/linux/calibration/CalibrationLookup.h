#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include "platform/linux/NativeTables.h"
#include "platform/linux/calibration/ColordProfiles.h"

namespace noctra {

/// The tables that the displays' profiles call for. On the thread that uses the connection.
class CalibrationLookup {
public:
    struct Found {
        NativeTables tables;
        /// Where they come from, for a log line: "colord: /path/of/the.icc" or "_ICC_PROFILE".
        std::string source;
    };

    /// `connection` must outlive the object.
    CalibrationLookup(xcb_connection_t* connection, xcb_window_t root)
        : connection_(connection), root_(root) {}

    /// Starts a pass over the displays; see ColordProfiles for what `budget` bounds. Without it
    /// colord is not asked.
    void beginPass(std::chrono::milliseconds budget = ColordProfiles::defaultBudget) {
        colord_.beginPass(budget);
    }

    /// The calibration of `output`, whose name is `name`, in tables of `entries` entries: that of
    /// colord's profile, else of the profile in the X property. Nothing when neither has one.
    [[nodiscard]] std::optional<Found> tablesFor(xcb_randr_output_t output, std::string_view name,
                                                 std::size_t entries);

private:
    xcb_connection_t* const connection_;
    const xcb_window_t root_;
    ColordProfiles colord_;
};

} // namespace noctra
