#include "panel/FilterControlView.h"

#include <memory>
#include <string>
#include <vector>

#include "platform/simulated/SimulatedFonts.h"
#include "platform/simulated/SimulatedResources.h"
#include "tests/panel/SimulatedPanelServices.h"

namespace noctra {

namespace {

struct ControlPanel : PanelControllers {
    SimulatedFonts fonts;
    SimulatedResources resources;
    PanelServices services = panelServices(
        *this,
        [this] {
            std::string all = "header";
            for (const std::string& line : desktop.log.messages)
                all += "|" + line;
            return all;
        },
        resources, fonts);
    int renders = 0;
    std::unique_ptr<FilterControlView> view =
        std::make_unique<FilterControlView>(services, [this] { ++renders; });

    std::string activePresets() {
        std::string active;
        for (std::size_t i = 0; i < FilterControlView::presets.size(); ++i)
            if (view->presetButton(i).isActive)
                active += std::string(view->presetButton(i).label) + " ";
        return active;
    }
    void dragWarmth(bool dragging) { view->warmthFader().onDragStateChanged(dragging); }
};

} // namespace

TEST_F(ControlPanel, TheReadoutsShowWarmthInKelvinAndBrightnessCutOffToWholePercents) {
    struct Warmth {
        double intensity;
        std::string text;
    };
    for (const auto& [intensity, text] : std::vector<Warmth>{{0.0, "6,500K"},
                                                             {0.5, "3,250K"},
                                                             {1.0, "0K"},
                                                             {0.3846153846153846, "4,000K"},
                                                             {0.5846153846153845, "2,700K"},
                                                             {0.9999, "1K"},
                                                             {-0.5, "6,500K"}}) {
        engine.intensity = intensity;
        EXPECT_EQ(view->warmthReadout().text, text);
    }
    engine.allowExtremeDim = true;
    struct Brightness {
        double brightness;
        std::string text;
    };
    for (const auto& [brightness, text] : std::vector<Brightness>{
             {1.0, "100%"}, {0.1, "10%"}, {0.29, "28%"}, {0.999, "99%"}, {0.0, "0%"}}) {
        engine.brightness = brightness;
        EXPECT_EQ(view->brightnessReadout().text, text);
    }
    engine.intensity = 0.0;
    desktop.numbers.fails = true;
    EXPECT_EQ(view->warmthReadout().text, "6500K");
}

TEST_F(ControlPanel, APresetSetsBothValuesSwitchesTheFilterOnAndShowsAsActive) {
    struct Case {
        std::size_t index;
        double intensity;
        double brightness;
        std::string active;
        std::string kelvin;
    };
    for (const Case& expected : std::vector<Case>{
             {0, 0.3846153846153846, 1.0, "DAY ", "4,000K"},
             {1, 0.5846153846153845, 0.85, "EVENING ", "2,700K"},
             {2, 1.0, 0.7, "NIGHT ", "0K"},
         }) {
        engine.isEnabled = false;
        view->presetButton(expected.index).action();
        EXPECT_EQ(engine.intensity, expected.intensity);
        EXPECT_EQ(engine.brightness, expected.brightness);
        EXPECT_TRUE(engine.isEnabled);
        EXPECT_EQ(activePresets(), expected.active);
        EXPECT_EQ(view->warmthReadout().text, expected.kelvin);
        EXPECT_EQ(view->transaction.take(), PresetButton::pressSpring);
    }
    EXPECT_EQ(view->transaction.take(), std::nullopt) << "later changes do not move with it";
}

TEST_F(ControlPanel, APresetIsActiveNearItsWarmthAloneAndNeverWhileWarmthIsHeld) {
    for (const auto& [intensity, active] : std::vector<std::pair<double, std::string>>{
             {0.40, "DAY "}, {0.41, ""}, {0.37, "DAY "}, {0.98, ""}, {0.9801, "NIGHT "}}) {
        engine.intensity = intensity;
        EXPECT_EQ(activePresets(), active) << intensity;
    }
    engine.brightness = 0.2;
    EXPECT_EQ(activePresets(), "NIGHT ");
    dragWarmth(true);
    EXPECT_EQ(activePresets(), "");
    dragWarmth(false);
    EXPECT_EQ(activePresets(), "NIGHT ");
}

TEST_F(ControlPanel, TheBrightnessFaderStopsAtATenthUnlessExtremeDimmingIsAllowed) {
    EXPECT_EQ(view->brightnessFader().minimumValue, 0.1);
    EXPECT_EQ(view->warmthFader().minimumValue, 0.0);
    const ToggleRow allow = SettingsPanel(services, {}, [] {}).allowExtremeDim();
    allow.isOn.set(true);
    EXPECT_EQ(view->brightnessFader().minimumValue, 0.0);
    view->brightnessFader().value.set(0.03);
    EXPECT_EQ(engine.brightness, 0.03);
    allow.isOn.set(false);
    EXPECT_EQ(engine.brightness, 0.1);
    EXPECT_EQ(view->brightnessFader().minimumValue, 0.1);
}

TEST_F(ControlPanel, TheSheetComesFreshEachTimeAndOutlivesItsClosingUntilItHasLeft) {
    EXPECT_EQ(view->settings(), nullptr);
    view->toggleSettings();
    ASSERT_NE(view->settings(), nullptr);
    view->settings()->copyDiagnostics();
    view->settings()->close();
    view->settings()->close();
    EXPECT_FALSE(view->showingSettings());
    ASSERT_NE(view->settings(), nullptr) << "it is still gliding away";
    view->toggleSettings();
    EXPECT_FALSE(view->settings()->logCopied());
    view->settingsLeft(); // of the first glide, which the second press turned round
    EXPECT_NE(view->settings(), nullptr);
    view->toggleSettings();
    view->settingsLeft();
    EXPECT_EQ(view->settings(), nullptr);
}

TEST_F(ControlPanel, ACopyHoldsTheLogAsItWasAndEachConfirmationEndsAtItsOwnTime) {
    desktop.log.log("before");
    view->toggleSettings();
    SettingsPanel& sheet = *view->settings();
    EXPECT_EQ(sheet.copyTitle(), "COPY DIAGNOSTICS");
    sheet.copyDiagnostics();
    EXPECT_EQ(desktop.clipboard.text, "header|before");
    EXPECT_EQ(desktop.clipboard.calls, (std::vector<std::string>{"clear", "set"}));
    EXPECT_EQ(desktop.log.messages.back(), "Debug log copied to clipboard");
    EXPECT_EQ(sheet.copyTitle(), "COPIED DIAGNOSTICS");
    EXPECT_EQ(sheet.copyTitleColor(), colors::systemGreen);
    desktop.advance(Seconds(1));
    sheet.copyDiagnostics();
    EXPECT_EQ(desktop.clipboard.text, "header|before|Debug log copied to clipboard");
    desktop.advance(Seconds(0.49));
    EXPECT_TRUE(sheet.logCopied());
    desktop.advance(Seconds(0.02));
    EXPECT_FALSE(sheet.logCopied()) << "the first copy's time is up";
    view.reset();
    desktop.advance(Seconds(2)); // the second copy's
}

} // namespace noctra
