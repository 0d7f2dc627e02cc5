// External monitors: the real library, told by the calls that the program makes, on monitors in
// shared memory.

#include "platform/linux/displayservices/HostFunctions.h"
#include "tests/desktop/displayservices/MonitorsFixture.h"

namespace noctra::desktop {

namespace {

using namespace std::chrono_literals;
using Monitors = MonitorsFixture;

TEST_F(Monitors, AreReadInTheBackgroundWhenSomebodyAsks) {
    monitor().readMilliseconds = 300;
    start();
    EXPECT_FALSE(driver->canChange(first));
    EXPECT_EQ(driver->get(first), std::nullopt);
    EXPECT_TRUE(becomesChangeable(first));
    EXPECT_NE(driver->takeNews() & display_services::controllabilityChanged, 0U);
    EXPECT_EQ(driver->get(first), 0.4F);
    EXPECT_EQ(monitor(1).reads, 0) << "nobody asked about it";
}

TEST_F(Monitors, CostNothingWhileNobodyAsks) {
    start();
    ASSERT_TRUE(becomesChangeable(first));
    EXPECT_TRUE(driver->set(first, 1));
    EXPECT_TRUE(reaches(first, 1.0F));
    EXPECT_TRUE(pollUntil(patience, [&] { return driver->isIdle(); }));
}

TEST_F(Monitors, AreFoundWhenTheyArePluggedInLater) {
    start();
    ASSERT_TRUE(becomesChangeable(first));
    driver->takeNews();
    const OutputPlugs plugs(sharedServer().display());
    setEdid(sharedServer(), 2, 2);
    plugs.plug(2);
    monitor(2).present = true;
    monitor(2).maximum = 100;
    bench->all().monitors[2].edid = monitor(0).edid;
    bench->mark(2, 2);
    EXPECT_TRUE(becomesChangeable(bench->display(2)));
    EXPECT_NE(driver->takeNews() & display_services::controllabilityChanged, 0U);
    EXPECT_GE(bench->all().redetections, 1);
    EXPECT_EQ(driver->get(first), 0.4F);

    plugs.unplug(2);
    EXPECT_TRUE(becomesChangeable(bench->display(2), false));
    EXPECT_EQ(driver->get(bench->display(2)), std::nullopt);
}

TEST_F(Monitors, AreSetBackAlsoWhileTheirOutputIsDark) {
    start();
    ASSERT_TRUE(becomesChangeable(first));
    driver->set(first, 1);
    EXPECT_TRUE(reaches(first, 1.0F));
    OutputPlugs(sharedServer().display()).unplug(0);
    EXPECT_TRUE(becomesChangeable(first, false));
    EXPECT_TRUE(driver->set(first, 0.4F));
    EXPECT_TRUE(driver->finish(2000ms));
    EXPECT_EQ(monitor().value, 40);
}

TEST_F(Monitors, AreLeftAloneWithoutAnEdidAndWhereTheEnvironmentSaysSo) {
    setEdid(sharedServer(), 0, std::nullopt);
    start();
    EXPECT_TRUE(becomesChangeable(second));
    EXPECT_FALSE(driver->canChange(first));
    EXPECT_EQ(driver->get(first), std::nullopt);
    EXPECT_EQ(bench->all().loads, 1);

    auto surroundings = bench->surroundings();
    surroundings.environment["NOCTRA_NO_DDC"] = "1";
    Driver without(surroundings);
    EXPECT_FALSE(without.canChange(second));
    EXPECT_TRUE(pollUntil(patience, [&] { return !without.set(second, 1); }));
    EXPECT_EQ(bench->all().loads, 1);
    EXPECT_EQ(monitor(1).writes, 0);
}

TEST_F(Monitors, RefuseWhatIsNoBrightnessAndWhoIsNoDisplay) {
    start();
    ASSERT_TRUE(becomesChangeable(first));
    for (const char* wrong : {"nan", "inf", "-inf", "-0.01", "1.01"})
        EXPECT_FALSE(driver->setText(first, wrong)) << wrong;
    constexpr DisplayId nobody = 4711;
    EXPECT_FALSE(driver->set(nobody, 0.5F));
    EXPECT_FALSE(driver->canChange(nobody));
    EXPECT_FALSE(driver->enableAmbientLight(nobody, false));
    EXPECT_EQ(driver->get(nobody), std::nullopt);
    EXPECT_EQ(driver->get(first), 0.4F);
    EXPECT_TRUE(driver->finish(1000ms));
    EXPECT_EQ(monitor().writes, 0);
}

TEST_F(Monitors, AreWrittenToWithoutFurtherQuestionsAtTheEnd) {
    monitor().readMilliseconds = 500;
    start();
    ASSERT_TRUE(becomesChangeable(first));
    driver->set(first, 1);
    ASSERT_TRUE(pollUntil(patience, [&] { return monitor().value == 100; }));
    monitor().writeMilliseconds = 300;
    driver->set(first, 0.4F);
    EXPECT_FALSE(driver->finish(50ms)) << "the time was too short";
    EXPECT_TRUE(driver->finish(3000ms));
    EXPECT_EQ(monitor().value, 40);
    const int reads = monitor().reads;
    driver->get(first);
    EXPECT_TRUE(driver->finish(1000ms));
    EXPECT_EQ(monitor().reads, reads);
}

} // namespace

} // namespace noctra::desktop
