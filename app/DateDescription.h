#pragma once

#include <string>

#include "foundation/Clock.h"

namespace noctra {

/// A moment in words, in UTC: "2026-11-16 09:44:29 +0000".
[[nodiscard]] std::string describeDate(WallClock::TimePoint moment);

} // namespace noctra
