#pragma once

#include <array>
#include <optional>
#include <vector>

#include "platform/GammaTables.h"
#include "tests/desktop/support/MountNamespace.h"
#include "tests/desktop/support/XServer.h"

namespace noctra::desktop {

/// The X server of all tests of an executable that does not harm it, with three outputs.
[[nodiscard]] XServer& sharedServer();
/// The identifiers of a server's outputs.
[[nodiscard]] std::vector<DisplayId> outputIds(const XServer& server);
/// Makes the server say that what is plugged into the output has this EDID; nothing: that it does
/// not know. `mark` tells monitors apart; two with the same mark are twins.
void setEdid(const XServer& server, int output, std::optional<std::uint8_t> mark);
/// The EDID with that mark.
[[nodiscard]] std::array<std::uint8_t, 128> edidWith(std::uint8_t mark);

} // namespace noctra::desktop
