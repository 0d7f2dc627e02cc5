// The library beside the real libddcutil, on a machine without a monitor that could answer.

#include <filesystem>

#include <gtest/gtest.h>

#include "tests/desktop/displayservices/Driver.h"
#include "tests/desktop/displayservices/Surroundings.h"
#include "tests/desktop/support/OutputPlugs.h"

namespace noctra::desktop {

namespace {

using namespace std::chrono_literals;

struct RealDdcutil : testing::Test {
    void SetUp() override {
        if (!canPutFoldersElsewhere())
            GTEST_SKIP() << "no mount namespace can be made here (root is needed)";
        OutputPlugs(sharedServer().display()).plugOnly(1);
        setEdid(sharedServer(), 0, 1);
        writeFile(folder / "null", "");
    }
    void start() {
        driver =
            std::make_unique<Driver>(Driver::Surroundings{{{"DISPLAY", sharedServer().display()},
                                                           {"HOME", folder.path()},
                                                           {"XDG_STATE_HOME", folder.path()}},
                                                          withFolderAt(folder.path(), "/dev")});
    }
    TemporaryFolder folder;
    DisplayId display = outputIds(sharedServer()).front();
    std::unique_ptr<Driver> driver;
};

TEST_F(RealDdcutil, IsNotEvenLoadedWithoutABus) {
    start();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_FALSE(driver->canChange(display));
    EXPECT_LT(std::chrono::steady_clock::now(), begin + 50ms);
    EXPECT_TRUE(pollUntil(patience, [&] { return !driver->set(display, 1); }));
    EXPECT_FALSE(driver->canChange(display));
    EXPECT_FALSE(driver->hasMapped("libddcutil"));
    EXPECT_LT(driver->longestCall(), Driver::callLimit);
}

TEST_F(RealDdcutil, LeavesTheStandardOutputCleanAndNoDisplayChangeable) {
    writeFile(folder / "i2c-99", "");
    start();
    ASSERT_TRUE(pollUntil(patience, [&] { return driver->set(display, 1); }));
    EXPECT_TRUE(driver->finish(10s)) << "it has looked for the monitor, and there is none";
    EXPECT_TRUE(driver->hasMapped("libddcutil"));
    EXPECT_FALSE(driver->canChange(display));
    EXPECT_EQ(driver->end(), "");
    EXPECT_LT(driver->longestCall(), Driver::callLimit);
}

} // namespace

} // namespace noctra::desktop
