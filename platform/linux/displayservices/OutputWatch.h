#pragma once

#include <chrono>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/linux/XConnection.h"
#include "platform/linux/displayservices/Output.h"

namespace noctra::display_services {

class BoundedReplies;

/// The X server's outputs, over a connection of its own. One thread. Once connected, it waits for
/// the server only as long as it is told to.
class OutputWatch {
public:
    /// Connects to the server that DISPLAY names; waits for it without a limit. Where there is
    /// none, nothing is ever read.
    OutputWatch();

    /// Readable when the server has something to say; -1 where there is none, or none any more.
    [[nodiscard]] int descriptor() const;
    /// Takes what the server has said. True when the outputs may have changed since the last call.
    [[nodiscard]] bool takeNews();
    /// The attached displays, in the server's order. Nothing when the server is gone, or did not
    /// answer within `limit`; then takeNews reports a change as soon as it speaks again.
    [[nodiscard]] std::optional<std::vector<Output>> read(std::chrono::milliseconds limit);

private:
    [[nodiscard]] bool isNews(const xcb_generic_event_t& event) const;
    [[nodiscard]] bool usable() const;
    [[nodiscard]] xcb_atom_t atom(std::string_view name) const;
    [[nodiscard]] std::vector<Output> describe(BoundedReplies& replies,
                                               const std::vector<xcb_randr_output_t>& outputs,
                                               const std::vector<bool>& panelNames) const;

    const RandrConnection connection_;
    xcb_atom_t edidAtom_ = XCB_ATOM_NONE;
    xcb_atom_t typeAtom_ = XCB_ATOM_NONE;
    xcb_atom_t panelAtom_ = XCB_ATOM_NONE;
    bool changed_ = true;
    bool answersMissing_ = false; // the last reading was given up
};

} // namespace noctra::display_services
