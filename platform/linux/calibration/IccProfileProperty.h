#pragma once

#include <memory>
#include <vector>

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include "platform/linux/calibration/ProfileSource.h"

namespace noctra {

/// The profile that X clients find for an output: the output's own property `_ICC_PROFILE`, else
/// the property of the root window that names its monitor: `_ICC_PROFILE` for the first one in the
/// server's list, `_ICC_PROFILE_<n>` for the one with index n.
///
/// Empty when there is none, when it does not consist of 8-bit units or is larger than
/// `largestIccProfile`, when it changes while it is read, and when the server does not answer (a
/// server without the needed requests, a connection that broke). Waits for the server several
/// times; on the thread that uses the connection.
class IccProfileProperty : public ProfileSource {
public:
    /// `connection` must outlive the object.
    IccProfileProperty(xcb_connection_t* connection, xcb_window_t root)
        : connection_(connection), root_(root) {}

    [[nodiscard]] Found profileOf(const Output& output) override;

private:
    [[nodiscard]] IccProfile read(xcb_randr_output_t output) const;

    xcb_connection_t* const connection_;
    const xcb_window_t root_;
};

/// The sources of profiles where displays are an X server's, in the order in which they are asked:
/// colord's, then IccProfileProperty. `connection` must outlive them.
[[nodiscard]] std::vector<std::unique_ptr<ProfileSource>>
profileSources(xcb_connection_t* connection, xcb_window_t root);

} // namespace noctra
