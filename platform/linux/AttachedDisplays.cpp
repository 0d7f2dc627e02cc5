#include "platform/linux/AttachedDisplays.h"

#include <algorithm>
#include <utility>

namespace noctra {

void AttachedDisplays::replace(std::vector<AttachedDisplay> displays) {
    const MutexLock lock(mutex_);
    if (displays == displays_)
        return;
    displays_ = std::move(displays);
    if (receiver_)
        receiver_(displays_);
}

void AttachedDisplays::deliverTo(
    std::function<void(const std::vector<AttachedDisplay>&)> receiver) {
    const MutexLock lock(mutex_);
    receiver_ = std::move(receiver);
    receiver_(displays_);
}

std::int32_t AttachedDisplays::list(std::span<DisplayId> ids, std::uint32_t& count) const {
    const MutexLock lock(mutex_);
    const std::size_t filled = std::min(ids.size(), displays_.size());
    for (std::size_t i = 0; i < filled; ++i)
        ids[i] = displays_[i].id;
    count = static_cast<std::uint32_t>(filled);
    return 0;
}

bool AttachedDisplays::isBuiltIn(DisplayId display) const {
    const MutexLock lock(mutex_);
    return std::ranges::any_of(displays_, [&](const AttachedDisplay& known) {
        return known.id == display && known.builtIn;
    });
}

} // namespace noctra
