#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "platform/linux/NativeTables.h"

namespace noctra {

/// The calibration that a display's ICC profile carries in its video-card-gamma tag (VCGT), as
/// tables of `entries` entries per channel: entry k is the level for the input k/(entries-1); a
/// single entry is the level for full input.
///
/// Gives nothing when `entries` is 0, when the bytes are no ICC profile (damaged, cut short, larger
/// than `largestIccProfile`), when there is no such tag or it has no value somewhere, and when the
/// tables would leave the screen unreadable: in every channel three-quarter grey is less than a
/// twentieth of full output above black. Writes no message anywhere. Any thread.
[[nodiscard]] std::optional<NativeTables> vcgtTables(std::span<const std::byte> iccProfile,
                                                     std::size_t entries);

} // namespace noctra
