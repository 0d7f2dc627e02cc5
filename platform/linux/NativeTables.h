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

/// Both are the same calibration: they differ by at most 256, as the work of two loaders of one
/// profile does.
[[nodiscard]] bool isSameCalibration(const NativeTables& a, const NativeTables& b);

/// What drivers load by themselves: in each channel a straight line from 0 to what a driver takes
/// for the end of the scale (0xFF00 or more), rounded to 8 bits or better.
[[nodiscard]] bool isPlainRamp(const NativeTables& tables);

} // namespace noctra
