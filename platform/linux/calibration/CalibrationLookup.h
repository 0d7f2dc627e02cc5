#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/NativeTables.h"
#include "platform/linux/calibration/ProfileSource.h"

namespace noctra {

/// The tables that the displays' profiles call for. On the sources' thread.
class CalibrationLookup {
public:
    /// As long as the start of the program may wait for a colord that hangs.
    static constexpr std::chrono::milliseconds defaultBudget{400};

    struct Found {
        NativeTables tables;
        std::string source; ///< as ProfileSource::Found::origin
    };

    /// `sources` in the order in which they are asked.
    explicit CalibrationLookup(std::vector<std::unique_ptr<ProfileSource>> sources);

    /// Starts a pass over the displays; see ProfileSource.
    void beginPass(std::chrono::milliseconds budget = defaultBudget);

    /// The calibration of `output` in tables of `entries` entries, by the first profile that has
    /// one. Nothing when none has.
    [[nodiscard]] std::optional<Found> tablesFor(const ProfileSource::Output& output,
                                                 std::size_t entries);

private:
    const std::vector<std::unique_ptr<ProfileSource>> sources_;
};

} // namespace noctra
