#include "tests/engine/EngineFixture.h"

namespace noctra {

namespace {

struct EngineDisplayChanges : EngineFixture {
    SimulatedDisplayChanges& changes() { return desktop.displayChanges; }
    std::size_t refreshes() const {
        std::size_t count = 0;
        for (const std::string& message : desktop.log.messages)
            count += message.starts_with("Refreshing displays (") ? 1 : 0;
        return count;
    }
};

const std::string settlePass = "Display settle pass reapply";

} // namespace

TEST_F(EngineDisplayChanges, AnswersABurstOfChangesWithOneRefreshAndOneSettlePass) {
    startQuietly();
    engine->isEnabled = true;
    for (int i = 0; i < 10; ++i) {
        changes().reconfigured(2, 8);
        desktop.advance(Seconds(0.03));
    }
    EXPECT_EQ(desktop.log.count("Display 2 reconfigured (flags: 8)"), 10U);
    desktop.advance(Seconds(0.41)); // 0.44 s after the last
    EXPECT_EQ(refreshes(), 0U);
    desktop.advance(Seconds(0.02));
    EXPECT_EQ(desktop.log.messages[10], "Refreshing displays (CGDisplay callback flags=8)");
    desktop.advance(Seconds(0.68));
    EXPECT_EQ(desktop.log.count(settlePass), 0U);
    desktop.displays.forgetCalls();
    desktop.advance(Seconds(5));
    EXPECT_EQ(desktop.log.count(settlePass), 1U);
    EXPECT_EQ(desktop.displays.count(SimulatedDisplays::Call::Kind::write), 2U) << "once more each";
    EXPECT_EQ(refreshes(), 1U);
    EXPECT_EQ(desktop.mainQueue.pendingCount(), 1U) << "only the backlight poll is left";
}

TEST_F(EngineDisplayChanges, TakesWhatTheDisplaysCarryNowAsTheNewBase) {
    startQuietly();
    engine->intensity = 0.5;
    engine->isEnabled = true;
    desktop.displays.setCalibrated(1, calibratedTables(0.6F)); // the user chose another profile
    desktop.displays.attach(3, calibratedTables(0.7F));
    desktop.displays.detach(2);
    changes().screenParametersChanged();
    desktop.advance(Seconds(0.5));
    EXPECT_EQ(desktop.displays.tablesOf(1), filtered(calibratedTables(0.6F), 0.5, 1.0));
    EXPECT_EQ(desktop.displays.tablesOf(3), filtered(calibratedTables(0.7F), 0.5, 1.0));
    desktop.displays.attach(2);
    engine->isEnabled = false;
    EXPECT_EQ(desktop.displays.tablesOf(1), calibratedTables(0.6F));
    EXPECT_EQ(desktop.displays.tablesOf(2), filtered(calibratedTables(0.8F), 0.5, 1.0))
        << "its tables were forgotten with it";
}

TEST_F(EngineDisplayChanges, KeepsTheOlderTablesOfADisplayWhoseFreshCaptureFails) {
    startQuietly();
    engine->brightness = 0.5;
    engine->isEnabled = true;
    desktop.displays.failReads(1, 1004);
    changes().screenParametersChanged();
    desktop.advance(Seconds(0.5));
    EXPECT_EQ(desktop.displays.tablesOf(1), filtered(calibratedTables(0.9F), 0.0, 0.5));
}

TEST_F(EngineDisplayChanges, KeepsTheTablesOfADisplayThatIsBackBeforeItsGoingIsHeardOf) {
    startQuietly();
    engine->brightness = 0.5;
    engine->isEnabled = true;
    changes().reconfigured(2, displayRemoved);
    desktop.settle();
    engine->removeFilter(); // the program is about to end
    EXPECT_EQ(desktop.displays.tablesOf(2), calibratedTables(0.8F));
}

TEST_F(EngineDisplayChanges, DropsASettlePassThatTurningOffOrANewerRequestHasOvertaken) {
    startQuietly();
    engine->isEnabled = true;
    changes().screenParametersChanged();
    desktop.advance(Seconds(0.5));
    engine->isEnabled = false;
    desktop.advance(Seconds(2));
    EXPECT_EQ(desktop.log.count(settlePass), 0U);

    engine->isEnabled = true;
    changes().screenParametersChanged();
    desktop.advance(Seconds(0.5));
    changes().screenParametersChanged();
    desktop.advance(Seconds(0.8)); // past the first settle pass, before the second
    EXPECT_EQ(desktop.log.count(settlePass), 0U);
    desktop.advance(Seconds(2));
    EXPECT_EQ(desktop.log.count(settlePass), 1U);
}

} // namespace noctra
