// The troubles that external monitors have in the field: what is answered, what is on the monitor
// in the end, and how long a call takes.

#include "tests/desktop/displayservices/MonitorsFixture.h"

namespace noctra::desktop {

namespace {

using namespace std::chrono_literals;
using test::StandInMonitor;

struct Trouble {
    const char* name;
    void (*fromTheStart)(StandInMonitor&);
    void (*afterAReading)(StandInMonitor&);
    std::optional<float> prior; ///< the first reading; nothing: there is never one
    bool staysChangeable;       ///< when it has been set to full
    std::optional<float> after; ///< what is read then, in the end
    int set;                    ///< what is on the monitor then
    int restored;               ///< and when it has been set back
};

void nothing(StandInMonitor& /*monitor*/) {}

const Trouble troubles[] = {
    {"SlowCommands",
     [](StandInMonitor& monitor) {
         monitor.readMilliseconds = 700;
         monitor.writeMilliseconds = 700;
     },
     nothing, 0.4F, true, 1.0F, 100, 40},
    {"MaximumOfTwoBytes",
     [](StandInMonitor& monitor) {
         monitor.maximum = 1023;
         monitor.value = 333;
     },
     nothing, 333.0F / 1023.0F, true, 1.0F, 1023, 333},
    {"ErrorsOnReads", [](StandInMonitor& monitor) { monitor.failsReads = true; }, nothing,
     std::nullopt, false, std::nullopt, 40, 40},
    {"ErrorsOnWrites", [](StandInMonitor& monitor) { monitor.failsWrites = true; }, nothing, 0.4F,
     false, 0.4F, 40, 40},
    {"WritesIgnored", [](StandInMonitor& monitor) { monitor.ignoresWrites = true; }, nothing, 0.4F,
     true, 0.4F, 40, 40},
    {"Disconnected", nothing, [](StandInMonitor& monitor) { monitor.unplugged = true; }, 0.4F,
     false, std::nullopt, 40, 40},
};

struct Troubles : MonitorsFixture, testing::WithParamInterface<Trouble> {};

TEST_P(Troubles, AreAnsweredForAtOnce) {
    const Trouble& trouble = GetParam();
    trouble.fromTheStart(monitor());
    start();
    EXPECT_FALSE(driver->canChange(first) && monitor().reads == 0);
    if (trouble.prior) {
        EXPECT_TRUE(becomesChangeable(first));
        EXPECT_EQ(driver->get(first), trouble.prior);
    } else {
        EXPECT_TRUE(counts(monitor().reads, 3));
    }

    trouble.afterAReading(monitor());
    driver->setSmooth(first, 1);
    const bool failedOnce = !trouble.staysChangeable && becomesChangeable(first, false);
    EXPECT_EQ(failedOnce, !trouble.staysChangeable);
    EXPECT_TRUE(pollUntil(patience, [&] {
        return driver->get(first) == trouble.after && monitor().value == trouble.set;
    }));

    driver->set(first, trouble.prior.value_or(0.0F));
    EXPECT_TRUE(driver->finish(5000ms));
    EXPECT_EQ(monitor().value, trouble.restored);
    EXPECT_EQ(monitor().open, 0);
    EXPECT_GE(std::chrono::nanoseconds(monitor().shortestPause), 50ms);
}

INSTANTIATE_TEST_SUITE_P(InTheField, Troubles, testing::ValuesIn(troubles),
                         [](const auto& row) { return row.param.name; });

} // namespace

} // namespace noctra::desktop
