#include "tests/engine/EngineFixture.h"

namespace noctra {

using EngineSystem = EngineFixture;
using Level = ColorFilterManager::FlickerWarningLevel;

TEST_F(EngineSystem, WarnsByTheBacklightWhereItIsKnownAndByTheSoftwareBrightnessElsewhere) {
    struct Case {
        bool builtIn;
        std::optional<float> backlight; ///< as the system says
        std::optional<float> library;   ///< as the display-services library says
        double brightness;
        Level expected;
    };
    const std::optional<float> unknown;
    for (const Case& c : std::vector<Case>{{true, 0.75F, unknown, 1.0, Level::severe},
                                           {true, 0.8F, unknown, 1.0, Level::mild},
                                           {true, 0.99F, 0.2F, 0.5, Level::none},
                                           {true, 1.0F, unknown, 0.5, Level::none},
                                           {true, unknown, 0.75F, 1.0, Level::severe},
                                           {true, unknown, 1.0F, 0.5, Level::none},
                                           {true, unknown, unknown, 0.5, Level::mild},
                                           {true, unknown, unknown, 1.0, Level::none},
                                           {false, 0.3F, unknown, 0.5, Level::mild},
                                           {false, unknown, 0.3F, 0.5, Level::mild},
                                           {false, 0.3F, unknown, 0.99, Level::none}}) {
        desktop.online.ids = {4, 7};
        desktop.online.builtIn = c.builtIn ? std::set<DisplayId>{7} : std::set<DisplayId>{};
        desktop.backlight.value = c.backlight;
        desktop.displayServices.displays = {{4, {.brightness = 0.1F}}};
        if (c.library)
            desktop.displayServices.displays[7] = {.brightness = *c.library};
        start();
        engine->brightness = c.brightness;
        EXPECT_EQ(engine->flickerWarningLevel(), c.expected)
            << c.builtIn << " " << c.backlight.value_or(-1.0F) << " " << c.library.value_or(-1.0F)
            << " " << c.brightness;
    }
}

TEST_F(EngineSystem, PollsTheBacklightEveryTwoSecondsAndAnnouncesEveryPoll) {
    desktop.backlight.value = 0.5F;
    startQuietly(); // one second has passed
    int announced = 0;
    const AnyCancellable token = engine->onWillChange([&] { ++announced; });
    desktop.advance(Seconds(0.9));
    EXPECT_EQ(announced, 0);
    desktop.advance(Seconds(0.2));
    EXPECT_EQ(announced, 1) << "availability, though nothing changed";
    desktop.backlight.value.reset();
    desktop.advance(Seconds(2));
    EXPECT_EQ(engine->hardwareBrightness, 1.0F);
    EXPECT_FALSE(engine->hardwareBrightnessAvailable);
}

} // namespace noctra
