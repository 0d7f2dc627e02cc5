#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tests/desktop/support/InputDevices.h"

namespace noctra::desktop {

/// What an X server shows in a part of its screen. Throws std::runtime_error when it gives no
/// answer.
class Screenshot {
public:
    Screenshot(const std::string& display, const Box& part);

    /// How many pixels have exactly this colour, as 0xRRGGBB.
    [[nodiscard]] int countOf(std::uint32_t color) const;

    /// The middle of all pixels that have this colour, on the whole screen; nothing where there are
    /// fewer than `least`.
    [[nodiscard]] std::optional<Point> middleOf(std::uint32_t color, int least) const;

    friend bool operator==(const Screenshot&, const Screenshot&) = default;

private:
    Box part_;
    std::vector<std::uint32_t> pixels_;
};

} // namespace noctra::desktop
