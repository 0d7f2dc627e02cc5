#include <limits>

#include "tests/engine/EngineFixture.h"

namespace noctra {

using EngineState = EngineFixture;

TEST_F(EngineState, LoadsWhatIsStoredClampedAndNeverTurnsTheFilterOn) {
    struct Case {
        double intensity, brightness;
        bool extreme;
        double expectedIntensity, expectedBrightness;
    };
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    for (const Case& c : std::vector<Case>{{0.35, 0.6, false, 0.35, 0.6},
                                           {1.7, 0.05, false, 1.0, 0.1},
                                           {-0.2, 0.05, true, 0.0, 0.05},
                                           {infinity, -infinity, true, 1.0, 0.0},
                                           {nan, nan, false, 0.0, 1.0}}) {
        desktop.preferences.store("filterEnabled", true);
        desktop.preferences.store("filterIntensity", c.intensity);
        desktop.preferences.store("filterBrightness", c.brightness);
        desktop.preferences.store("allowExtremeDim", c.extreme);
        start();
        EXPECT_FALSE(engine->isEnabled);
        EXPECT_EQ(engine->intensity, c.expectedIntensity);
        EXPECT_EQ(engine->brightness, c.expectedBrightness);

        desktop.advance(Seconds(0.6)); // the save that construction leaves pending
        EXPECT_FALSE(desktop.preferences.boolForKey("filterEnabled"));
        EXPECT_EQ(desktop.preferences.doubleForKey("filterBrightness"), c.expectedBrightness);
    }
}

TEST_F(EngineState, RefusesNotANumberAndKeepsTheOldValue) {
    startQuietly();
    engine->intensity = 0.4;
    engine->brightness = 0.5;
    desktop.displays.forgetCalls();
    engine->intensity = std::numeric_limits<double>::quiet_NaN();
    engine->brightness = -std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(engine->intensity, 0.4);
    EXPECT_EQ(engine->brightness, 0.5);
    EXPECT_EQ(desktop.log.count("ERROR: Refused a value for intensity that is not a number"), 1U);
    EXPECT_EQ(writes(), 0U);
}

TEST_F(EngineState, RaisesTheBrightnessWhenExtremeDimIsTakenAway) {
    startQuietly();
    engine->allowExtremeDim = true;
    engine->brightness = 0.03;
    EXPECT_EQ(engine->brightness, 0.03);
    engine->isEnabled = true;
    engine->allowExtremeDim = false;
    EXPECT_EQ(engine->brightness, 0.1);
    EXPECT_EQ(desktop.displays.tablesOf(2), filtered(calibratedTables(0.8F), 0.0, 0.1));
}

TEST_F(EngineState, SavesOnceHalfASecondAfterTheLastOfABurst) {
    startQuietly();
    engine->isEnabled = true;
    for (int step = 1; step <= 10; ++step) {
        desktop.advance(Seconds(0.04));
        engine->intensity = step / 10.0;
    }
    EXPECT_EQ(writes(), 22U) << "every step is on both displays at once";
    desktop.advance(Seconds(0.49));
    EXPECT_TRUE(desktop.preferences.writtenKeys().empty());
    desktop.advance(Seconds(10));
    EXPECT_EQ(desktop.preferences.writtenKeys(),
              (std::vector<std::string>{"filterEnabled", "filterIntensity", "filterBrightness",
                                        "allowExtremeDim"}));
    EXPECT_EQ(desktop.preferences.doubleForKey("filterIntensity"), 1.0);
}

TEST_F(EngineState, TouchesNothingWhilePicturesOfThePanelAreRendered) {
    desktop.preferences.store("filterIntensity", 0.4);
    desktop.backlight.value = 0.5F;
    for (const std::string rendering : {"1", "0"}) {
        desktop.process.setEnvironment("NOCTRA_SCREENSHOT_RENDER", rendering);
        start();
        engine->isEnabled = true;
        engine->removeFilter();
        desktop.advance(Seconds(5));
        EXPECT_EQ(desktop.displays.calls().empty(), rendering == "1");
        EXPECT_EQ(desktop.preferences.writtenKeys().empty(), rendering == "1");
        EXPECT_EQ(desktop.loginItem.calls.empty(), rendering == "1");
        EXPECT_EQ(engine->intensity, 0.4) << "the panel shows the real values";
        EXPECT_EQ(engine->hardwareBrightness, 0.5F);
    }
}

} // namespace noctra
