#include "tests/engine/EngineFixture.h"

namespace noctra {

namespace {

struct EngineDisplayChanges : EngineFixture {
    SimulatedDisplayChanges& changes() { return desktop.displayChanges; }
    void startOn(double intensity, double brightness) {
        startQuietly();
        engine->intensity = intensity;
        engine->brightness = brightness;
        engine->isEnabled = true;
    }
    void change() {
        changes().screenParametersChanged();
        desktop.advance(Seconds(0.5));
    }
};

const std::string settlePass = "Display settle pass reapply";

} // namespace

TEST_F(EngineDisplayChanges, AnswersABurstOfChangesWithOneRefreshAndOneSettlePass) {
    startOn(0.5, 1.0);
    for (int i = 0; i < 10; ++i) {
        changes().reconfigured(2, 8);
        desktop.advance(Seconds(0.03));
    }
    const std::vector<std::string> heard(10, "Display 2 reconfigured (flags: 8)");
    desktop.advance(Seconds(0.41)); // 0.44 s after the last
    EXPECT_EQ(desktop.log.messages, heard);
    desktop.advance(Seconds(0.02));
    EXPECT_EQ(desktop.log.messages[10], "Refreshing displays (CGDisplay callback flags=8)");
    desktop.advance(Seconds(0.68));
    EXPECT_EQ(desktop.log.count(settlePass), 0U);
    desktop.displays.forgetCalls();
    desktop.advance(Seconds(5));
    EXPECT_EQ(desktop.log.count(settlePass), 1U);
    EXPECT_EQ(writes(), 2U) << "once more each";
    EXPECT_EQ(desktop.log.count("Refreshing displays (CGDisplay callback flags=8)"), 1U);
    EXPECT_EQ(desktop.mainQueue.pendingCount(), 1U) << "only the backlight poll is left";
}

TEST_F(EngineDisplayChanges, TakesWhatTheDisplaysCarryNowAsTheNewBase) {
    desktop.displays.attach(4, calibratedTables(0.9F));
    startOn(0.5, 1.0);
    desktop.displays.setCalibrated(1, calibratedTables(0.6F)); // the user chose another profile
    desktop.displays.attach(3, calibratedTables(0.7F));
    desktop.displays.detach(2);
    desktop.displays.failReads(4, 1004);
    change();
    EXPECT_EQ(desktop.displays.tablesOf(1), filtered(calibratedTables(0.6F), 0.5, 1.0));
    EXPECT_EQ(desktop.displays.tablesOf(3), filtered(calibratedTables(0.7F), 0.5, 1.0));
    EXPECT_EQ(desktop.displays.tablesOf(4), filtered(calibratedTables(0.9F), 0.5, 1.0))
        << "nothing newer is known";
    desktop.displays.attach(2);
    engine->isEnabled = false;
    EXPECT_EQ(desktop.displays.tablesOf(1), calibratedTables(0.6F));
    EXPECT_EQ(desktop.displays.tablesOf(2), filtered(calibratedTables(0.8F), 0.5, 1.0))
        << "its tables were forgotten with it";
}

TEST_F(EngineDisplayChanges, KeepsTheTablesOfADisplayThatIsBackBeforeItsGoingIsHeardOf) {
    startOn(0.0, 0.5);
    changes().reconfigured(2, displayRemoved);
    desktop.settle();
    engine->removeFilter(); // the program is about to end
    EXPECT_EQ(desktop.displays.tablesOf(2), calibratedTables(0.8F));
}

TEST_F(EngineDisplayChanges, DropsASettlePassThatTurningOffOrANewerRequestHasOvertaken) {
    startOn(0.5, 1.0);
    change();
    engine->isEnabled = false;
    desktop.advance(Seconds(2));
    EXPECT_EQ(desktop.log.count(settlePass), 0U);

    engine->isEnabled = true;
    change();
    change();
    desktop.advance(Seconds(0.3)); // past the first settle pass, before the second
    EXPECT_EQ(desktop.log.count(settlePass), 0U);
    desktop.advance(Seconds(2));
    EXPECT_EQ(desktop.log.count(settlePass), 1U);
}

} // namespace noctra
