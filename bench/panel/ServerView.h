#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench/support/XConnection.h"

namespace noctra::bench {

/// What a person sees and does on an X server, over two connections that the program under test
/// knows nothing of. Throws std::runtime_error when the server gives no answer.
class ServerView {
public:
    /// `display` as in the DISPLAY variable.
    explicit ServerView(const std::string& display);

    [[nodiscard]] std::size_t displays() const { return crtcs_.size(); }

    /// The green table of the display that the program writes last.
    [[nodiscard]] std::vector<std::uint16_t> lastTable() const;
    /// Reads that table again and again until it is another one than `before`; microseconds from
    /// the call until then, negative when a second has passed.
    [[nodiscard]] double awaitOtherTable(const std::vector<std::uint16_t>& before) const;

    /// A pixel of the screen without its alpha.
    [[nodiscard]] std::uint32_t pixel(int x, int y) const;

    /// The left button goes down or up, or the pointer to a place on the screen; on its way to the
    /// server when the call returns.
    void press() const;
    void release() const;
    void move(int x, int y) const;

private:
    void fake(std::uint8_t type, std::uint8_t detail, int x, int y) const;

    desktop::XConnection eyes_;
    desktop::XConnection hand_;
    std::vector<xcb_randr_crtc_t> crtcs_; ///< those that show something
};

} // namespace noctra::bench
