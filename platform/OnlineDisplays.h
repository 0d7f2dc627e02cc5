#pragma once

#include <cstdint>
#include <span>

#include "platform/GammaTables.h"

namespace noctra {

/// Which displays are online, and which of them are built in. Any thread; never waits for the
/// desktop.
class OnlineDisplays {
public:
    virtual ~OnlineDisplays() = default;

    /// Fills `ids` as far as it reaches, in the desktop's order, and sets `count` to how many it
    /// filled. 0 is success; on failure neither is touched.
    virtual std::int32_t list(std::span<DisplayId> ids, std::uint32_t& count) const = 0;

    /// True for a built-in panel; false for an identifier that is not online.
    [[nodiscard]] virtual bool isBuiltIn(DisplayId display) const = 0;
};

} // namespace noctra
