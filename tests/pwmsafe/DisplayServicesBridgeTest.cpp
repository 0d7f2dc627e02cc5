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

} // namespace

} // namespace noctra
