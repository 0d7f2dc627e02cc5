#pragma once

#include <memory>
#include <string>

#include "foundation/Log.h"
#include "platform/linux/RandrDisplays.h"

namespace noctra {

/// Displays with what the program has to know about them.
struct DisplayService {
    std::unique_ptr<RandrDisplays> displays = nullptr;
    std::string chosen = {};       ///< why this one, for the log
    const char* windowSystem = ""; ///< Qt's name for where windows on these displays are opened
    std::string problem = {}; ///< why it could not be had, or what about it is not as it should be
};

/// The best kind of display service that this desktop has; without `displays` where it has none.
[[nodiscard]] DisplayService chooseDisplays(Log& log);

} // namespace noctra
