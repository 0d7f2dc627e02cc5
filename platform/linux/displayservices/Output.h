#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "platform/GammaTables.h"

namespace noctra::display_services {

/// What a monitor says about itself: the first block, which tells one monitor from another unless
/// they are twins without serial numbers.
using Edid = std::array<std::uint8_t, 128>;

/// One attached display: an output that shows a mode through a CRTC.
struct Output {
    DisplayId id = 0;
    bool builtIn = false;
    std::optional<Edid> edid;
};

} // namespace noctra::display_services
