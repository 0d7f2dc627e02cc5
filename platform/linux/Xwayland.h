#pragma once

#include "platform/linux/XConnection.h"

namespace noctra {

/// The X server is Xwayland, the one inside a Wayland session. It takes tables, says that it has
/// them, and passes none on to a display; what it answers for a display's tables before that is
/// arbitrary.
///
/// Waits for up to three replies. False on a broken connection.
[[nodiscard]] bool isXwayland(const RandrConnection& connection);

} // namespace noctra
