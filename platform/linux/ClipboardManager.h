#pragma once

#include <xcb/xcb.h>

#include "foundation/Clock.h"

namespace noctra {

/// Has the desktop's clipboard manager take over what the program has put on the clipboard, so that
/// it stays when the program has ended (freedesktop.org's clipboard manager protocol,
/// SAVE_TARGETS).
///
/// Handles events meanwhile, except the user's input, since the manager asks the clipboard's owner.
/// Returns when the manager has answered, or after `patience`; at once where there is no manager.
/// `connection` is Qt's own. Main thread.
void saveClipboard(xcb_connection_t* connection, Seconds patience);

} // namespace noctra
