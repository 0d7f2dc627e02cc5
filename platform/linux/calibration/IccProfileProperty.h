#pragma once

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include "platform/linux/calibration/IccProfile.h"

namespace noctra {

/// The profile that X clients find for `output`: the output's own property `_ICC_PROFILE`, else the
/// property of `root` that names its monitor: `_ICC_PROFILE` for the first one in the server's
/// list,
/// `_ICC_PROFILE_<n>` for the one with index n.
///
/// Empty when there is none, when it does not consist of 8-bit units or is larger than
/// `largestIccProfile`, when it changes while it is read, and when the server does not answer (a
/// server without the needed requests, a connection that broke). Waits for the server several
/// times; on the thread that uses `connection`.
[[nodiscard]] IccProfile iccProfileOf(xcb_connection_t* connection, xcb_window_t root,
                                      xcb_randr_output_t output);

} // namespace noctra
