#pragma once

#include <mutex>
#include <vector>

#include "platform/OnlineDisplays.h"
#include "platform/linux/RandrScreens.h"

namespace noctra {

/// The X server's displays as last seen by whoever follows them. Any thread.
class RandrOnlineDisplays : public OnlineDisplays {
public:
    void replace(const std::vector<RandrScreen>& screens);

    std::int32_t list(std::span<DisplayId> ids, std::uint32_t& count) const override;
    [[nodiscard]] bool isBuiltIn(DisplayId display) const override;

private:
    struct Display {
        DisplayId id;
        bool builtIn;
    };
    mutable std::mutex mutex_;
    std::vector<Display> displays_; // guarded by mutex_
};

} // namespace noctra
