#include "platform/linux/calibration/VcgtTables.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <filesystem>

#include <gtest/gtest.h>
#include <lcms2.h>
#include <sys/stat.h>

#include "platform/linux/calibration/IccProfile.h"
#include "platform/linux/calibration/ProfileFile.h"
#include "tests/support/TemporaryFolder.h"

namespace noctra::test {
namespace {

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

cmsToneCurve* toneCurve(Vcgt form, const Curve& curve) {
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
IccProfile profileWith(Vcgt form, const std::array<Curve, 3>& channels = {}) {
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
IccProfile profileWith(Vcgt form, const Curve& curve) {
    return profileWith(form, {curve, curve, curve});
}

TEST(VcgtTables, TheTagOfAProfileIsEvaluatedAtEveryEntryOfTheCrtc) {
    const std::array<Curve, 3> curves{{{2.0, 0.03125, 0.9375}, {1.0}, {1.5, 0.0, 0.875}}};
    for (const Vcgt form : {Vcgt::table, Vcgt::formula})
        for (const std::size_t entries : {256, 1024, 16, 2, 1}) {
            SCOPED_TRACE(testing::Message() << (form == Vcgt::table ? "table" : "formula")
                                            << ", asked for " << entries);
            const auto tables = vcgtTables(profileWith(form, curves), entries);
            ASSERT_TRUE(tables);
            const std::array channels{tables->red, tables->green, tables->blue};
            double worst = 0.0;
            for (std::size_t c = 0; c < 3; ++c) {
                ASSERT_EQ(channels.at(c).size(), entries);
                for (std::size_t k = 0; k < entries; ++k) {
                    const double input = entries == 1 ? 1.0 : double(k) / double(entries - 1);
                    const double level = curves.at(c).at(input) * 65535.0;
                    worst = std::max(worst, std::abs(channels.at(c)[k] - level));
                }
            }
            EXPECT_LE(worst, 3.0) << "of 65535"; // a table's lines run beside its curve
        }
}

TEST(VcgtTables, AProfileWithoutUsableTablesGivesNone) {
    const IccProfile straight = profileWith(Vcgt::table);
    IccProfile tooLarge = straight;
    tooLarge.resize(largestIccProfile + 1);
    const struct {
        const char* situation;
        IccProfile profile;
        bool usable = false;
        std::size_t entries = 256;
    } cases[] = {
        {"straight lines", straight, true},
        {"only blue", profileWith(Vcgt::table, {{{1.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {}}}), true},
        {"a CRTC without tables", straight, false, 0},
        {"no bytes", {}},
        {"no profile", IccProfile(4096, std::byte{'x'})},
        {"too large", tooLarge},
        {"no tag", profileWith(Vcgt::none)},
        {"a black screen", profileWith(Vcgt::table, Curve{1.0, 0.0, 0.0})},
        {"a white screen", profileWith(Vcgt::table, Curve{1.0, 1.0, 1.0})},
        {"an inverted screen", profileWith(Vcgt::table, Curve{1.0, 1.0, 0.0})},
        {"black up to the last level", profileWith(Vcgt::formula, Curve{1000.0})},
    };
    for (const auto& [situation, profile, usable, entries] : cases)
        EXPECT_EQ(vcgtTables(profile, entries).has_value(), usable) << situation;
}

TEST(ProfileFile, OnlyRegularFilesOfASensibleSizeAreRead) {
    const TemporaryFolder folder;
    const std::string contents("\1\0\377", 3);
    writeFile(folder / "some.icc", contents);
    std::filesystem::create_symlink(folder / "some.icc", folder / "link.icc");
    ASSERT_EQ(::mkfifo((folder / "pipe.icc").c_str(), 0600), 0);
    for (const char* name : {"empty.icc", "large.icc", "too-large.icc"})
        writeFile(folder / name, "");
    std::filesystem::resize_file(folder / "large.icc", largestIccProfile);
    std::filesystem::resize_file(folder / "too-large.icc", largestIccProfile + 1);

    const struct {
        std::string path;
        std::string expected;
    } cases[] = {
        {folder / "some.icc", contents},
        {folder / "link.icc", contents},
        {folder / "large.icc", std::string(largestIccProfile, '\0')},
        {folder / "too-large.icc", ""},
        {folder / "empty.icc", ""},
        {folder / "missing.icc", ""},
        {folder.path(), ""},
        {folder / "pipe.icc", ""},
        {"/dev/zero", ""},
    };
    for (const auto& [path, expected] : cases) {
        const IccProfile read = readProfileFile(path);
        EXPECT_TRUE(std::equal(read.begin(), read.end(), expected.begin(), expected.end(),
                               [](std::byte byte, char c) { return byte == std::byte(c); }))
            << path;
    }
}

} // namespace
} // namespace noctra::test
