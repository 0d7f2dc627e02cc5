#pragma once

#include <vector>

#include "platform/linux/LinuxDisplayChanges.h"
#include "platform/linux/RandrScreens.h"

namespace noctra {

// What can happen to a display besides coming and going; the program only logs these.
inline constexpr DisplayChangeFlags displayMoved = 2;
inline constexpr DisplayChangeFlags displayModeSet = 8;

/// What happened to which display between two configurations of an X server: removals first, then
/// the others in the order of `after`. A display that shows the same as before is not in it.
[[nodiscard]] std::vector<DisplayChange> changesBetween(const std::vector<RandrScreen>& before,
                                                        const std::vector<RandrScreen>& after);

} // namespace noctra
