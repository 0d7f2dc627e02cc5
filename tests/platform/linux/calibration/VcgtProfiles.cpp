#include "tests/platform/linux/calibration/VcgtProfiles.h"

#include <cmath>

#include <gtest/gtest.h>
#include <lcms2.h>

namespace noctra::test {

namespace {

void append(Bytes& bytes, std::uint32_t value, int width) {
    for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::byte>(value >> shift));
}

Bytes tagOfType(std::uint32_t type) {
    Bytes tag;
    append(tag, cmsSigVcgtType, 4);
    append(tag, 0, 4);
    append(tag, type, 4);
    return tag;
}

} // namespace

Bytes vcgtTable(std::uint16_t channels, std::uint16_t entries, std::uint16_t width,
                const std::vector<std::uint16_t>& values) {
    Bytes tag = tagOfType(0);
    for (const std::uint16_t number : {channels, entries, width})
        append(tag, number, 2);
    for (const std::uint16_t value : values)
        append(tag, value, width);
    return tag;
}

Bytes vcgtFormula(const std::array<VcgtFormula, 3>& channels) {
    Bytes tag = tagOfType(1);
    for (const auto& [gamma, minimum, maximum] : channels)
        for (const double value : {gamma, minimum, maximum})
            append(tag, static_cast<std::uint32_t>(std::lround(value * 65536.0)), 4);
    return tag;
}

Bytes profileWith(const std::optional<Bytes>& vcgtTag) {
    cmsHPROFILE profile = cmsCreate_sRGBProfile();
    if (vcgtTag) {
        EXPECT_TRUE(cmsWriteRawTag(profile, cmsSigVcgtTag, vcgtTag->data(),
                                   static_cast<cmsUInt32Number>(vcgtTag->size())));
    }
    cmsUInt32Number size = 0;
    EXPECT_TRUE(cmsSaveProfileToMem(profile, nullptr, &size));
    Bytes bytes(size);
    EXPECT_TRUE(cmsSaveProfileToMem(profile, bytes.data(), &size));
    cmsCloseProfile(profile);
    return bytes;
}

Bytes profileWithGamma(double gamma) {
    return profileWith(vcgtFormula({{{gamma}, {gamma}, {gamma}}}));
}

} // namespace noctra::test
