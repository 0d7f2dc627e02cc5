#pragma once

#include <memory>
#include <string>

#include "tests/desktop/support/XConnection.h"

namespace noctra::desktop {

/// The plugs of an X server with the dummy driver: lights its outputs and turns them dark, as
/// plugging a monitor in and out does. Outputs are named by their number from 0. Throws
/// std::runtime_error when the server refuses.
class OutputPlugs {
public:
    explicit OutputPlugs(const std::string& display);

    /// Lights the output in its place of a grid, on a free CRTC that it can use.
    void plug(int output) const;
    void unplug(int output) const;
    /// Makes the server say that the output is a panel that is part of the machine, or no more.
    void setBuiltIn(int output, bool builtIn) const;
    /// Makes the server tell its clients of a change of the screen without one of an output.
    void announceChange() const;
    /// Lights the first `count` outputs and turns the others dark.
    void plugOnly(int count) const;

private:
    void makeRoom(int millimetres = 1000) const;
    [[nodiscard]] xcb_randr_output_t outputAt(int output) const;
    [[nodiscard]] xcb_randr_mode_t mode() const;
    void configure(xcb_randr_crtc_t crtc, int output, xcb_randr_mode_t mode) const;
    using OutputInfo = XConnection::XReply<xcb_randr_get_output_info_reply_t>;
    [[nodiscard]] OutputInfo info(xcb_randr_output_t output) const;

    std::shared_ptr<XConnection> connection_;
};

} // namespace noctra::desktop
