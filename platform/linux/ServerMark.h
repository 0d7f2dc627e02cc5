#pragma once

#include "platform/linux/XConnection.h"

namespace noctra {

/// Leaves a mark on the X server, a property of its root window that goes with the server, and says
/// whether an earlier run had left one. So what that run wrote down about its displays can be told
/// from what was written down about those of a server that has ended. Waits for two replies; false
/// on a broken connection.
[[nodiscard]] bool markServer(const RandrConnection& connection);

} // namespace noctra
