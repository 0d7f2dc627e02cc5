#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/linux/calibration/IccProfile.h"

namespace noctra {

/// Where displays' ICC profiles are to be had. One thread at a time.
class ProfileSource {
public:
    struct Output {
        std::string_view name;    ///< "DP-1"
        std::uint32_t number = 0; ///< the window system's own
    };
    struct Found {
        IccProfile profile;
        std::string origin; ///< for a log line: "colord: /path/of/the.icc" or "_ICC_PROFILE"
    };

    virtual ~ProfileSource() = default;

    /// Starts a pass over all displays. What a source asks of other programs takes `budget` at most
    /// until the next pass begins; before the first it asks them nothing.
    virtual void beginPass(std::chrono::milliseconds /*budget*/) {}
    /// The profile of the display on `output`, unchecked; empty where the source knows none.
    [[nodiscard]] virtual Found profileOf(const Output& output) = 0;
};

} // namespace noctra
