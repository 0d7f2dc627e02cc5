#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>
#include <lcms2.h>

#include "platform/linux/calibration/IccProfile.h"

namespace noctra::test {

/// The levels of a channel: minimum + (maximum - minimum) * input^gamma.
struct Curve {
    double gamma = 1.0;
    double minimum = 0.0;
    double maximum = 1.0;

    [[nodiscard]] double at(double input) const {
        return minimum + (maximum - minimum) * std::pow(input, gamma);
    }
};

/// How a profile carries its calibration: not at all, as 256 entries of 16 bits for each channel,
/// or as the numbers of a Curve.
enum class Vcgt { none, table, formula };

inline cmsToneCurve* toneCurve(Vcgt form, const Curve& curve) {
    if (form == Vcgt::formula) {
        const double scale = std::pow(curve.maximum - curve.minimum, 1.0 / curve.gamma);
        const std::array numbers{curve.gamma, scale, 0.0, 0.0, 0.0, curve.minimum, 0.0};
        return cmsBuildParametricToneCurve(nullptr, 5, numbers.data());
    }
    std::array<std::uint16_t, 256> table{};
    for (std::size_t k = 0; k < table.size(); ++k)
        table[k] = static_cast<std::uint16_t>(std::lround(curve.at(double(k) / 255.0) * 65535.0));
    return cmsBuildTabulatedToneCurve16(nullptr, table.size(), table.data());
}

/// An sRGB profile with that calibration.
[[nodiscard]] inline IccProfile profileWith(Vcgt form, const std::array<Curve, 3>& channels = {}) {
    cmsHPROFILE profile = cmsCreate_sRGBProfile();
    if (form != Vcgt::none) {
        std::array<cmsToneCurve*, 3> curves{};
        std::transform(channels.begin(), channels.end(), curves.begin(),
                       [form](const Curve& curve) { return toneCurve(form, curve); });
        EXPECT_TRUE(cmsWriteTag(profile, cmsSigVcgtTag, curves.data()));
        cmsFreeToneCurveTriple(curves.data());
    }
    cmsUInt32Number size = 0;
    EXPECT_TRUE(cmsSaveProfileToMem(profile, nullptr, &size));
    IccProfile bytes(size);
    EXPECT_TRUE(cmsSaveProfileToMem(profile, bytes.data(), &size));
    cmsCloseProfile(profile);
    return bytes;
}

/// The same with one curve for every channel.
[[nodiscard]] inline IccProfile profileWith(Vcgt form, const Curve& curve) {
    return profileWith(form, {curve, curve, curve});
}

[[nodiscard]] inline std::string asText(const IccProfile& profile) {
    return {reinterpret_cast<const char*>(profile.data()), profile.size()};
}

} // namespace noctra::test
