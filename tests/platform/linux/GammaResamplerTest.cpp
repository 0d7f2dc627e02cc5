#include "platform/linux/GammaResampler.h"

#include <cmath>
#include <limits>
#include <random>

#include <gtest/gtest.h>

namespace noctra {

namespace {

NativeTables randomTables(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    NativeTables tables;
    tables.resize(size);
    for (auto* channel : {&tables.red, &tables.green, &tables.blue})
        for (auto& level : *channel)
            level = random() % 5 == 0 ? 0 : static_cast<std::uint16_t>(random());
    return tables;
}

NativeTables powerTables(std::size_t size) {
    NativeTables tables;
    tables.resize(size);
    for (std::size_t k = 0; k < size; ++k) {
        const double x = size > 1 ? static_cast<double>(k) / static_cast<double>(size - 1) : 1.0;
        tables.red[k] = static_cast<std::uint16_t>(std::lround(65535 * std::pow(x, 1.1)));
        tables.green[k] = static_cast<std::uint16_t>(std::lround(65280 * x));
        tables.blue[k] = static_cast<std::uint16_t>(std::lround(60000 * std::pow(x, 0.8)));
    }
    return tables;
}

const auto sizes = {1, 2, 3, 16, 64, 255, 256, 257, 1024, 4096};

} // namespace

TEST(GammaResampler, GivesACrtcOfAnySizeItsOwnTablesBackByteForByte) {
    for (const int size : sizes)
        for (unsigned seed = 0; seed < 20; ++seed) {
            CapturedTables captured{randomTables(static_cast<std::size_t>(size), seed), {}};
            sampleNativeTables(captured.native, captured.sampled);
            NativeTables written;
            written.resize(captured.native.size());
            tablesToNative(captured.sampled, &captured, written);
            EXPECT_EQ(written, captured.native) << size << " entries, seed " << seed;
        }
}

TEST(GammaResampler, ScalesTheCrtcsOwnLevelsToWithinOneStep) {
    for (const int size : sizes) {
        CapturedTables captured{powerTables(static_cast<std::size_t>(size)), {}};
        sampleNativeTables(captured.native, captured.sampled);
        GammaTables scaled = captured.sampled;
        for (std::size_t k = 0; k < gammaTableSize; ++k) {
            scaled.red[k] *= 0.6F;
            scaled.green[k] *= 0.25F;
            scaled.blue[k] = 0.0F;
        }
        NativeTables written;
        written.resize(captured.native.size());
        tablesToNative(scaled, &captured, written);
        const double error = size == 256 ? 0.51 : 1.0; // nothing but the rounding
        for (std::size_t j = 0; j < written.size(); ++j) {
            EXPECT_NEAR(written.red[j], captured.native.red[j] * 0.6, error) << size << " " << j;
            EXPECT_NEAR(written.green[j], captured.native.green[j] * 0.25, error)
                << size << " " << j;
            EXPECT_EQ(written.blue[j], 0) << size << " " << j;
        }
    }
}

TEST(GammaResampler, KeepsLevelsInsideTheirRange) {
    GammaTables wild;
    wild.red.fill(-1.0F);
    wild.green.fill(std::numeric_limits<float>::quiet_NaN());
    wild.blue.fill(2.5F);
    NativeTables written;
    written.resize(1024);
    tablesToNative(wild, nullptr, written);
    EXPECT_EQ(written.red[512], 0);
    EXPECT_TRUE(written.green[512] == 0 || written.green[512] == 65535);
    EXPECT_EQ(written.blue[512], 65535);
}

TEST(NativeTables, APlainRampIsToldFromACalibrationHoweverADriverRounds) {
    for (const int entries : {2, 16, 256, 1024, 4096}) {
        const auto size = static_cast<std::size_t>(entries);
        const auto filled = [&](auto level) {
            std::vector<std::uint16_t> channel(size);
            for (int k = 0; k < entries; ++k)
                channel[static_cast<std::size_t>(k)] = static_cast<std::uint16_t>(level(k));
            return NativeTables{channel, channel, channel};
        };
        const NativeTables full = filled([&](int k) { return k * 65535L / (entries - 1); });
        EXPECT_TRUE(isPlainRamp(full)) << size;
        EXPECT_TRUE(isPlainRamp(filled([&](int k) { return 65280L * k / (entries - 1); }))) << size;
        EXPECT_TRUE(isPlainRamp(filled([&](int k) { return 255L * k / (entries - 1) * 257; })))
            << size << ", in steps of 8 bits";
        EXPECT_FALSE(isPlainRamp(filled([&](int k) { return 64000L * k / (entries - 1); })))
            << size;
        EXPECT_FALSE(isPlainRamp(filled([&](int k) { return 65535L - k; }))) << size;
        NativeTables bent = full;
        bent.blue[size / 2 - 1] = static_cast<std::uint16_t>(bent.blue[size / 2 - 1] + 300);
        EXPECT_FALSE(isPlainRamp(bent)) << size;
    }
}

} // namespace noctra
