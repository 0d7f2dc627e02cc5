#pragma once

namespace noctra {

/// Three multipliers, one per colour channel.
struct ChannelGains {
    double r = 1.0;
    double g = 1.0;
    double b = 1.0;

    friend bool operator==(const ChannelGains&, const ChannelGains&) = default;
};

/// From warmth to channel multipliers, over the colour temperature of a black body.
///
/// Pure arithmetic in IEEE double precision, evaluated in a fixed order, so that the same warmth
/// gives the same tables bit for bit on every machine. Any thread.
class ColorTemperatureCurve {
public:
    ColorTemperatureCurve() = delete;

    /// The multipliers for a warmth of `intensity`, 0.0 (neutral, 6500 K) to 1.0 (0 K); values
    /// outside count as the nearer end. Relative to the 6500 K colour: 0.0 gives exactly (1, 1,
    /// 1); 1.0 gives exactly (1, 0, 0). Below 2000 K, where the colour model ends, the colour is
    /// blended towards pure red. Each result is in [0.0, 1.0].
    [[nodiscard]] static ChannelGains normalizedRGB(double intensity);

    /// Linear sRGB of a black body of `kelvin` (used in [2000, 25000]; values outside count as the
    /// nearer end) with luminance Y = 1, each channel clamped to [0.0, 4.0].
    ///
    /// The chromaticity is the cubic spline for the Planckian locus in CIE 1931 xy by Kim et al.
    /// (US patent 7024034), with one coefficient of its own, see the source; the matrix is that of
    /// IEC 61966-2-1.
    [[nodiscard]] static ChannelGains cctRGB(double kelvin);
};

} // namespace noctra
