#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <random>

#include <gtest/gtest.h>

#include "platform/linux/calibration/IccProfile.h"
#include "platform/linux/calibration/VcgtTables.h"
#include "tests/platform/linux/calibration/VcgtProfiles.h"

namespace noctra::test {
namespace {

/// Three smooth curves, far enough apart that channels cannot be mistaken for one another.
double curve(int channel, double input) {
    return std::pow(input, 1.0 + 0.2 * channel) * 0.9 + 0.01;
}

Bytes tableTag(std::uint16_t entries, std::uint16_t width) {
    std::vector<std::uint16_t> values;
    for (int channel = 0; channel < 3; ++channel)
        for (int k = 0; k < entries; ++k)
            values.push_back(static_cast<std::uint16_t>(
                std::lround(curve(channel, k / (entries - 1.0)) * (width == 1 ? 255.0 : 65535.0))));
    return vcgtTable(3, entries, width, values);
}

/// What a table of `tagEntries` such values says for `input`: straight lines between its entries.
double tableLevel(int channel, double input, int tagEntries, int steps) {
    const auto entry = [&](double k) {
        return std::round(curve(channel, k / (tagEntries - 1)) * steps) / steps;
    };
    const double position = input * (tagEntries - 1);
    const double below = std::min(std::floor(position), tagEntries - 2.0);
    return std::lerp(entry(below), entry(below + 1), position - below);
}

TEST(VcgtTables, theTagOfAProfileIsEvaluatedAtEveryEntryOfTheCrtc) {
    // Numbers that the tag can hold exactly.
    const std::array<VcgtFormula, 3> formulas{{{0.75, 0.03125, 0.9375}, {1.0}, {1.25, 0.0, 0.875}}};
    const struct {
        const char* situation;
        Bytes tag;
        std::function<double(int channel, double input)> expected;
    } cases[] = {
        {"256 entries of 16 bits", tableTag(256, 2),
         [](int c, double x) {
             return tableLevel(c, x, 256, 65535);
         }},
        {"256 entries of 8 bits", tableTag(256, 1),
         [](int c, double x) {
             return tableLevel(c, x, 256, 255);
         }},
        {"17 entries", tableTag(17, 2),
         [](int c, double x) {
             return tableLevel(c, x, 17, 65535);
         }},
        {"1024 entries", tableTag(1024, 2),
         [](int c, double x) {
             return tableLevel(c, x, 1024, 65535);
         }},
        {"a formula", vcgtFormula(formulas),
         [&](int c, double x) {
             const auto& [gamma, minimum, maximum] = formulas.at(static_cast<std::size_t>(c));
             return minimum + (maximum - minimum) * std::pow(x, gamma);
         }},
    };
    for (const auto& [situation, tag, expected] : cases) {
        const Bytes profile = profileWith(tag);
        for (const int entries : {256, 1024, 16, 1}) {
            SCOPED_TRACE(testing::Message() << situation << ", asked for " << entries);
            const auto tables = vcgtTables(profile, static_cast<std::size_t>(entries));
            ASSERT_TRUE(tables);
            const std::array channels{tables->red, tables->green, tables->blue};
            double worst = 0.0;
            for (int c = 0; c < 3; ++c) {
                const auto& channel = channels.at(static_cast<std::size_t>(c));
                ASSERT_EQ(channel.size(), static_cast<std::size_t>(entries));
                for (int k = 0; k < entries; ++k) {
                    const double input = entries == 1 ? 1.0 : k / (entries - 1.0);
                    const double level = std::round(expected(c, input) * 65535.0);
                    worst = std::max(worst, std::abs(channel[static_cast<std::size_t>(k)] - level));
                }
            }
            EXPECT_LE(worst, 1.0);
        }
    }
}

TEST(VcgtTables, aProfileWithoutUsableTablesGivesNone) {
    const std::vector<std::uint16_t> black(3 * 256, 0), white(3 * 256, 65535);
    Bytes tooLarge = profileWithGamma(1.0);
    tooLarge.resize(largestIccProfile + 1);
    const struct {
        const char* situation;
        Bytes profile;
    } cases[] = {
        {"no bytes", {}},
        {"no profile", Bytes(4096, std::byte{'x'})},
        {"too large", tooLarge},
        {"no tag", profileWith(std::nullopt)},
        {"one channel", profileWith(vcgtTable(1, 2, 2, {0, 65535}))},
        {"no entries", profileWith(vcgtTable(3, 0, 2, {}))},
        {"one entry", profileWith(vcgtTable(3, 1, 2, {65535, 65535, 65535}))},
        {"entries of three bytes", profileWith(vcgtTable(3, 2, 3, {0, 65535, 0, 65535, 0, 65535}))},
        {"more entries than there are", profileWith(vcgtTable(3, 256, 2, {0, 65535}))},
        {"a black screen", profileWith(vcgtTable(3, 256, 2, black))},
        {"a white screen", profileWith(vcgtTable(3, 256, 2, white))},
        {"an inverted screen", profileWith(vcgtTable(3, 2, 2, {65535, 0, 65535, 0, 65535, 0}))},
        {"a formula that is black up to the last level", profileWithGamma(1000.0)},
        {"a formula that ends below its start",
         profileWith(vcgtFormula({{{2.2, 1.0, 0.0}, {2.2, 1.0, 0.0}, {2.2, 1.0, 0.0}}}))},
    };
    for (const auto& [situation, profile] : cases)
        EXPECT_FALSE(vcgtTables(profile, 256)) << situation;

    EXPECT_FALSE(vcgtTables(profileWithGamma(1.0), 0)) << "a CRTC without tables";
    EXPECT_TRUE(vcgtTables(profileWithGamma(1.0), 256));
    EXPECT_TRUE(vcgtTables(profileWith(vcgtTable(3, 2, 2, {0, 65535, 0, 0, 0, 0})), 256))
        << "a screen of one colour can be read";
}

TEST(VcgtTables, aProfileThatIsCutShortGivesItsOwnTablesOrNone) {
    for (const Bytes& profile : {profileWith(tableTag(64, 2)), profileWithGamma(1.2)}) {
        const auto whole = vcgtTables(profile, 64);
        ASSERT_TRUE(whole);
        for (std::size_t length = 0; length < profile.size(); ++length) {
            const auto tables = vcgtTables(std::span(profile).first(length), 64);
            EXPECT_TRUE(!tables || *tables == *whole) << length << " of " << profile.size();
        }
    }
}

TEST(VcgtTables, aDamagedProfileGivesTablesOfTheAskedSizeOrNone) {
    const std::array profiles{profileWith(tableTag(64, 2)), profileWithGamma(1.2)};
    std::mt19937 random(20240229);
    int found = 0;
    int refused = 0;
    for (int round = 0; round < 6'000; ++round) {
        Bytes profile = profiles.at(random() % profiles.size());
        for (unsigned change = 0; change <= random() % 4; ++change) {
            // Half of the damage in the header and the tag directory, where it matters most.
            const std::size_t range = random() % 2 == 0 ? 400 : profile.size();
            profile.at(random() % range) = static_cast<std::byte>(random());
        }
        const auto tables = vcgtTables(profile, 16);
        tables ? ++found : ++refused;
        if (!tables)
            continue;
        for (const auto* channel : {&tables->red, &tables->green, &tables->blue})
            ASSERT_EQ(channel->size(), 16U) << "round " << round;
    }
    EXPECT_GT(found, 500) << "the damage leaves nothing to look at";
    EXPECT_GT(refused, 500) << "the damage harms nothing";
}

} // namespace
} // namespace noctra::test
