#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace noctra {

/// Names one display for as long as the display server runs; written in decimal in log lines.
using DisplayId = std::uint32_t;

/// Entries per channel of every table that crosses the platform interface.
inline constexpr std::uint32_t gammaTableSize = 256;

using GammaChannel = std::array<float, gammaTableSize>;

/// A display's transfer tables: entry k of a channel is the output level, 0.0 to 1.0, for the input
/// level k/255.
struct GammaTables {
    GammaChannel red{};
    GammaChannel green{};
    GammaChannel blue{};

    friend bool operator==(const GammaTables&, const GammaTables&) = default;
};

} // namespace noctra
