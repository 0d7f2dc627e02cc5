#pragma once

#include <cstdint>
#include <span>

#include "platform/linux/tray/Dock.h"

namespace noctra {

/// What a window reserves, from the numbers of its properties _NET_WM_STRUT_PARTIAL and
/// _NET_WM_STRUT (EWMH 1.5), which another program wrote and which may be any in any number:
/// `partial` where it is whole, else `plain`, which reserves along the whole edge, else nothing.
/// Every number of the result lies between 0 and the X screen's largest coordinate.
[[nodiscard]] Strut strutIn(std::span<const std::uint32_t> partial,
                            std::span<const std::uint32_t> plain);

} // namespace noctra
