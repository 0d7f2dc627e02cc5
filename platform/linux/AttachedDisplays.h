#pragma once

#include <functional>
#include <vector>

#include "foundation/ThreadSafety.h"
#include "platform/DisplayIdentity.h"
#include "platform/OnlineDisplays.h"

namespace noctra {

/// The attached displays as last seen by whoever follows them. Any thread.
class AttachedDisplays : public OnlineDisplays {
public:
    /// Takes over the displays, in the desktop's order.
    void replace(std::vector<AttachedDisplay> displays);
    /// Hands the displays to `receiver` now and after each change, the newest last. One receiver.
    void deliverTo(std::function<void(const std::vector<AttachedDisplay>&)> receiver);

    std::int32_t list(std::span<DisplayId> ids, std::uint32_t& count) const override;
    [[nodiscard]] bool isBuiltIn(DisplayId display) const override;

private:
    mutable Mutex mutex_;
    std::vector<AttachedDisplay> displays_ GUARDED_BY(mutex_);
    std::function<void(const std::vector<AttachedDisplay>&)> receiver_ GUARDED_BY(mutex_);
};

} // namespace noctra
