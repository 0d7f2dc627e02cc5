#include "pwmsafe/DisplayServicesBridge.h"

#include <algorithm>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDisplayServices.h"

namespace noctra {

namespace {

using namespace display_services;

/// Reads every member twice, each time from another one on.
std::size_t readAll(const DisplayServicesBridge& bridge, std::size_t first) {
    const std::vector<std::function<bool()>> members{
        [&] { return bridge.getBrightness() != nullptr; },
        [&] { return bridge.setBrightness() != nullptr; },
        [&] { return bridge.setBrightnessSmooth() != nullptr; },
        [&] { return bridge.canChangeBrightness() != nullptr; },
        [&] { return bridge.enableALC() != nullptr; },
    };
    std::size_t present = 0;
    for (std::size_t i = 0; i < 2 * members.size(); ++i)
        present += members[(first + i) % members.size()]() ? 1 : 0;
    return present / 2;
}

TEST(DisplayServicesBridgeTest, OpensTheLibraryLazilyOnceAndLooksEachFunctionUpOnce) {
    for (std::size_t first = 0; first < 5; ++first) {
        SimulatedDisplayServices library;
        const DisplayServicesBridge bridge(library);
        EXPECT_TRUE(library.opened.empty());
        EXPECT_EQ(readAll(bridge, first), 5U);
        EXPECT_EQ(library.opened, std::vector<std::string>{"/simulated/library"});
        EXPECT_EQ(library.openFlags, std::vector<int>{1});
        EXPECT_EQ(library.lookedUp.size(), 5U);
    }
}

TEST(DisplayServicesBridgeTest, LacksWhatTheSystemLacksAndNeverAsksAgain) {
    SimulatedDisplayServices library;
    library.missing = {setBrightnessSmoothSymbol};
    const DisplayServicesBridge bridge(library);
    EXPECT_EQ(readAll(bridge, 0), 4U);
    EXPECT_EQ(bridge.setBrightnessSmooth(), nullptr);
    library.missing.clear();
    EXPECT_EQ(bridge.setBrightnessSmooth(), nullptr);
    EXPECT_EQ(
        std::count(library.lookedUp.begin(), library.lookedUp.end(), setBrightnessSmoothSymbol), 1);

    library.present = false;
    library.lookedUp.clear();
    const DisplayServicesBridge without(library);
    EXPECT_EQ(readAll(without, 0), 0U);
    library.present = true;
    EXPECT_EQ(readAll(without, 0), 0U);
    EXPECT_EQ(library.opened.size(), 2U) << "one for each bridge";
    EXPECT_TRUE(library.lookedUp.empty());
}

TEST(DisplayServicesBridgeTest, OpensOnceWhenThreadsReadItForTheFirstTimeTogether) {
    SimulatedDisplayServices library;
    const DisplayServicesBridge bridge(library);
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i)
        threads.emplace_back([&] { EXPECT_NE(bridge.getBrightness(), nullptr); });
    threads.clear();
    EXPECT_EQ(library.opened.size(), 1U);
    EXPECT_EQ(library.lookedUp.size(), 1U);
}

} // namespace

} // namespace noctra
