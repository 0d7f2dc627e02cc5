#include "platform/linux/RandrOnlineDisplays.h"

#include <algorithm>

namespace noctra {

void RandrOnlineDisplays::replace(const std::vector<RandrScreen>& screens) {
    const std::lock_guard lock(mutex_);
    displays_.clear();
    for (const RandrScreen& screen : screens)
        displays_.push_back({screen.output, screen.builtIn});
}

std::int32_t RandrOnlineDisplays::list(std::span<DisplayId> ids, std::uint32_t& count) const {
    const std::lock_guard lock(mutex_);
    const std::size_t filled = std::min(ids.size(), displays_.size());
    for (std::size_t i = 0; i < filled; ++i)
        ids[i] = displays_[i].id;
    count = static_cast<std::uint32_t>(filled);
    return 0;
}

bool RandrOnlineDisplays::isBuiltIn(DisplayId display) const {
    const std::lock_guard lock(mutex_);
    return std::any_of(displays_.begin(), displays_.end(),
                       [&](const Display& known) { return known.id == display && known.builtIn; });
}

} // namespace noctra
