#pragma once

#include <optional>
#include <string>

#include <xcb/randr.h>
#include <xcb/xcb.h>

#include "tests/platform/linux/calibration/ChildProcess.h"

namespace noctra::test {

/// A real X server on a free display number without hardware, and a connection to it; ends with the
/// object. Two of its outputs are on, the first one is primary.
class DummyXServer {
public:
    DummyXServer();
    ~DummyXServer();

    [[nodiscard]] static bool isInstalled();

    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
    [[nodiscard]] xcb_window_t root() const { return root_; }
    [[nodiscard]] xcb_randr_output_t firstOutput() const { return outputs_[0]; }
    [[nodiscard]] xcb_randr_output_t secondOutput() const { return outputs_[1]; }

    /// Kills the server; the connection stays, broken.
    void end() { server_.reset(); }

    [[nodiscard]] xcb_atom_t atom(const std::string& name) const;
    void makePrimary(xcb_randr_output_t output) const;

private:
    void switchOutputsOn();

    std::optional<ChildProcess> server_;
    xcb_connection_t* connection_ = nullptr;
    xcb_window_t root_ = XCB_WINDOW_NONE;
    xcb_randr_output_t outputs_[2]{};
};

} // namespace noctra::test
