#pragma once

#include <chrono>
#include <functional>

namespace noctra::desktop {

using Duration = std::chrono::milliseconds;

/// Long enough for anything that happens at all, also under a sanitizer on a busy machine.
inline constexpr Duration patience{15000};

/// Asks `condition` again and again until it holds or `limit` has passed; asks at least once, and
/// once more at the end. Returns whether it held.
bool pollUntil(Duration limit, const std::function<bool()>& condition);

} // namespace noctra::desktop
