#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace noctra::test {

using Bytes = std::vector<std::byte>;

/// The contents of a video-card-gamma tag, written out byte by byte: a table of `channels` times
/// `entries` values, each of `width` bytes.
[[nodiscard]] Bytes vcgtTable(std::uint16_t channels, std::uint16_t entries, std::uint16_t width,
                              const std::vector<std::uint16_t>& values);

/// One channel of the other form of the tag: level = minimum + (maximum - minimum) * input^gamma.
struct VcgtFormula {
    double gamma = 1.0;
    double minimum = 0.0;
    double maximum = 1.0;
};
[[nodiscard]] Bytes vcgtFormula(const std::array<VcgtFormula, 3>& channels);

/// An sRGB display profile, with this tag where there is one.
[[nodiscard]] Bytes profileWith(const std::optional<Bytes>& vcgtTag);

/// A profile whose calibration is the formula with `gamma` in every channel.
[[nodiscard]] Bytes profileWithGamma(double gamma);

} // namespace noctra::test
