#include <algorithm>
#include <future>
#include <thread>

#include "tests/engine/EngineFixture.h"

namespace noctra {

using EngineGamma = EngineFixture;

TEST_F(EngineGamma, FiltersFromTheCapturedTablesAndPutsThemBackBitForBit) {
    startQuietly();
    engine->isEnabled = true;
    for (const double intensity : {0.2, 0.9, 0.5}) { // applications do not add up
        engine->intensity = intensity;
        engine->brightness = 1.0 - intensity / 2;
        EXPECT_EQ(desktop.displays.tablesOf(1),
                  filtered(calibratedTables(0.9F), intensity, 1.0 - intensity / 2));
    }
    desktop.displays.forgetCalls();
    engine->isEnabled = false;
    EXPECT_EQ(desktop.displays.count(Call::Kind::settle), 1U) << "for both displays together";
    EXPECT_EQ(desktop.displays.tablesOf(1), calibratedTables(0.9F));
    EXPECT_EQ(desktop.displays.tablesOf(2), calibratedTables(0.8F));
}

TEST_F(EngineGamma, GoesOnWithoutADisplayThatCannotBeReadAndTriesItAgainEachTime) {
    desktop.displays.failReads(1, 1004);
    startQuietly();
    engine->isEnabled = true;
    engine->intensity = 0.5;
    EXPECT_EQ(desktop.log.messages,
              (std::vector<std::string>(2, "ERROR: Failed to capture gamma for display 1")));
    EXPECT_EQ(desktop.displays.tablesOf(2), filtered(calibratedTables(0.8F), 0.5, 1.0));

    desktop.displays.failReads(1, 0);
    engine->intensity = 0.6;
    EXPECT_EQ(desktop.displays.tablesOf(1), filtered(calibratedTables(0.9F), 0.6, 1.0));
}

TEST_F(EngineGamma, LogsADisplayThatRefusesItsTablesOnceUntilItTakesThemAgain) {
    startQuietly();
    desktop.displays.failWrites(1, 8);
    engine->isEnabled = true;
    engine->brightness = 0.5;
    engine->isEnabled = false;
    const std::string line = "ERROR: Failed to set gamma for display 1";
    EXPECT_EQ(desktop.log.count(line), 1U);
    EXPECT_EQ(desktop.displays.tablesOf(2), calibratedTables(0.8F));

    desktop.displays.failWrites(1, 0);
    engine->isEnabled = true;
    desktop.displays.failWrites(1, 8);
    engine->isEnabled = true;
    EXPECT_EQ(desktop.log.count(line), 2U);
}

TEST_F(EngineGamma, RestoresFromAnotherThreadAfterTheWriteThatIsUnderWayAndWritesNothingAfter) {
    startQuietly();
    engine->isEnabled = true;

    std::promise<void> writing;
    std::promise<void> sealed;
    bool first = true;
    desktop.displays.setWriteHook([&] {
        if (!std::exchange(first, false))
            return;
        writing.set_value();
        sealed.get_future().wait();
    });
    std::thread signalThread([&] {
        writing.get_future().wait();
        engine->sealForExit();
        sealed.set_value();
        engine->removeFilter();
    });
    engine->brightness = 0.2; // the drag that the signal falls into
    signalThread.join();
    engine->brightness = 0.3; // it goes on
    desktop.displayChanges.screenParametersChanged();
    desktop.advance(Seconds(3));
    EXPECT_EQ(desktop.displays.tablesOf(1), calibratedTables(0.9F));
    EXPECT_EQ(desktop.displays.tablesOf(2), calibratedTables(0.8F));
}

} // namespace noctra
