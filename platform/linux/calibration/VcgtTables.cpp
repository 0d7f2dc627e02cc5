#include "platform/linux/calibration/VcgtTables.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

#include <lcms2.h>

#include "platform/linux/calibration/IccProfile.h"

namespace noctra {

namespace {

constexpr float leastContrast = 0.05F;

struct DeleteContext {
    void operator()(cmsContext context) const { cmsDeleteContext(context); }
};
using Context = std::unique_ptr<std::remove_pointer_t<cmsContext>, DeleteContext>;

struct CloseProfile {
    void operator()(cmsHPROFILE profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<std::remove_pointer_t<cmsHPROFILE>, CloseProfile>;

void dropMessage(cmsContext, cmsUInt32Number, const char*) {}

/// 0.0 to 1.0, or not-a-number.
float levelAt(const cmsToneCurve& curve, float input) {
    const float level = cmsEvalToneCurveFloat(&curve, input);
    return std::isnan(level) ? level : std::clamp(level, 0.0F, 1.0F);
}

bool hasContrast(const cmsToneCurve& curve) {
    return levelAt(curve, 0.75F) - levelAt(curve, 0.0F) >= leastContrast;
}

/// Puts `entries` levels of `curve` into `channel`; false when the curve has no value somewhere.
bool sample(const cmsToneCurve& curve, std::size_t entries, std::vector<std::uint16_t>& channel) {
    channel.reserve(entries);
    const auto last = static_cast<float>(entries - 1);
    for (std::size_t k = 0; k < entries; ++k) {
        const float level = levelAt(curve, entries == 1 ? 1.0F : static_cast<float>(k) / last);
        if (std::isnan(level))
            return false;
        channel.push_back(static_cast<std::uint16_t>(std::lround(level * 65535.0F)));
    }
    return true;
}

} // namespace

std::optional<NativeTables> vcgtTables(std::span<const std::byte> iccProfile, std::size_t entries) {
    if (entries == 0 || iccProfile.empty() || iccProfile.size() > largestIccProfile)
        return std::nullopt;
    const Context context(cmsCreateContext(nullptr, nullptr));
    if (!context)
        return std::nullopt;
    cmsSetLogErrorHandlerTHR(context.get(), dropMessage);

    const Profile profile(cmsOpenProfileFromMemTHR(
        context.get(), iccProfile.data(), static_cast<cmsUInt32Number>(iccProfile.size())));
    if (!profile)
        return std::nullopt;

    // Three curves, owned by the profile.
    const auto* const curves =
        static_cast<const cmsToneCurve* const*>(cmsReadTag(profile.get(), cmsSigVcgtTag));
    if (curves == nullptr)
        return std::nullopt;
    if (!std::any_of(curves, curves + 3, [](const auto* curve) { return hasContrast(*curve); }))
        return std::nullopt;

    NativeTables tables;
    if (!sample(*curves[0], entries, tables.red) || !sample(*curves[1], entries, tables.green) ||
        !sample(*curves[2], entries, tables.blue))
        return std::nullopt;
    return tables;
}

} // namespace noctra
