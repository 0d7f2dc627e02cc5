#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace noctra {

/// A CRTC's own gamma tables, in the display server's units: 16-bit levels, as many entries per
/// channel as the CRTC has (the same number in each).
struct NativeTables {
    std::vector<std::uint16_t> red;
    std::vector<std::uint16_t> green;
    std::vector<std::uint16_t> blue;

    [[nodiscard]] std::size_t size() const { return red.size(); }
    void resize(std::size_t entries) {
        red.resize(entries);
        green.resize(entries);
        blue.resize(entries);
    }

    friend bool operator==(const NativeTables&, const NativeTables&) = default;
};

} // namespace noctra
