#pragma once

#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/desktop/displayservices/MonitorBench.h"

namespace noctra::desktop {

/// Two monitors on a desk, and a process that has the library open. Whatever happens, no call of
/// the five functions takes long.
struct MonitorsFixture : testing::Test {
    void SetUp() override {
        if (!canPutFoldersElsewhere())
            GTEST_SKIP() << "no mount namespace can be made here (root is needed)";
        bench = std::make_unique<MonitorBench>(2);
        first = bench->display(0);
        second = bench->display(1);
    }
    void TearDown() override {
        if (!driver)
            return;
        EXPECT_EQ(driver->end(), "");
        EXPECT_LT(driver->longestCall(), Driver::callLimit);
        const std::chrono::duration<double, std::milli> longest = driver->longestCall();
        RecordProperty("longestCallInMilliseconds", std::to_string(longest.count()));
    }

    void start() { driver = std::make_unique<Driver>(bench->surroundings()); }
    [[nodiscard]] test::StandInMonitor& monitor(int number = 0) const {
        return bench->monitor(number);
    }

    // Ask again and again, as the program does, only faster:
    [[nodiscard]] bool becomesChangeable(DisplayId display, bool changeable = true) const {
        return pollUntil(patience, [&] { return driver->canChange(display) == changeable; });
    }
    [[nodiscard]] bool reaches(DisplayId display, std::optional<float> brightness) const {
        return pollUntil(patience, [&] { return driver->get(display) == brightness; });
    }
    [[nodiscard]] static bool counts(const std::atomic<int>& count, int least) {
        return pollUntil(patience, [&] { return count >= least; });
    }

    std::unique_ptr<MonitorBench> bench;
    DisplayId first = 0;
    DisplayId second = 0;
    std::unique_ptr<Driver> driver;
};

} // namespace noctra::desktop
