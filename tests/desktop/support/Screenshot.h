#pragma once

#include <cstdint>
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

    friend bool operator==(const Screenshot&, const Screenshot&) = default;

private:
    std::vector<std::uint32_t> pixels_;
};

} // namespace noctra::desktop
