#include "pwmsafe/PwmSafeManager.h"

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDesktop.h"
#include "pwmsafe/DisplayServicesBridge.h"

namespace noctra {

namespace {

using Call = SimulatedDisplayServices::Call;
using Lines = std::vector<std::string>;
using namespace display_services;

/// A simulated desktop with a panel (3) at 0.4 and a monitor (5) at full, both controllable, and
/// one display (9) that is not.
struct PwmSafe : testing::Test {
    SimulatedDesktop desktop;
    std::map<DisplayId, SimulatedDisplayServices::Display>& displays =
        desktop.displayServices.displays;
    std::vector<Call>& calls = desktop.displayServices.calls;
    Lines& log = desktop.log.messages;
    std::unique_ptr<DisplayServicesBridge> bridge;
    std::unique_ptr<PwmSafeManager> manager;

    PwmSafe() {
        desktop.online.ids = {5, 9, 3};
        displays = {{3, {.brightness = 0.4F}}, {5, {}}, {9, {.controllable = false}}};
    }

    PwmSafeManager& start() {
        manager.reset();
        bridge = std::make_unique<DisplayServicesBridge>(desktop.displayServices);
        manager = std::make_unique<PwmSafeManager>(PwmSafeServices{
            .log = desktop.log,
            .mainQueue = desktop.mainQueue,
            .wallClock = desktop.wall,
            .preferences = desktop.preferences,
            .onlineDisplays = desktop.online,
            .displayChanges = desktop.displayChanges,
            .bridge = *bridge,
        });
        return *manager;
    }
    /// Starts, forgets what that left in the records, and switches the mode on.
    void startEnabled() {
        start();
        forget();
        manager->isEnabled = true;
    }
    void startLocked() {
        startEnabled();
        desktop.advance(Seconds(0.8));
        ASSERT_TRUE(manager->verified);
        forget();
    }
    void forget() {
        log.clear();
        calls.clear();
    }
    [[nodiscard]] bool stored() const { return desktop.preferences.boolForKey("pwmSafeMode"); }
};

const Call panelFull{Call::Kind::setSmooth, 3, 1.0F};
const Call monitorFull{Call::Kind::setSmooth, 5, 1.0F};
const Call panelBack{Call::Kind::set, 3, 0.4F};
const Call monitorBack{Call::Kind::set, 5, 1.0F};
const std::vector<Call> ambientLightOff{{Call::Kind::ambientLight, 5, 0.0F},
                                        {Call::Kind::ambientLight, 3, 0.0F}};

} // namespace

TEST_F(PwmSafe, StaysInertForGoodWithoutAUsableLibrary) {
    const std::vector<std::pair<std::set<std::string>, bool>> cases{
        {{getBrightnessSymbol}, false},       {{setBrightnessSymbol}, false},
        {{canChangeBrightnessSymbol}, false}, {{setBrightnessSmoothSymbol, enableALCSymbol}, true},
        {{"the library itself"}, false},
    };
    for (const auto& [missing, available] : cases) {
        desktop.displayServices.present = !missing.contains("the library itself");
        desktop.displayServices.missing = missing;
        desktop.preferences.store("pwmSafeMode", true);
        start();
        EXPECT_EQ(manager->isAvailable, available) << *missing.begin();
        EXPECT_EQ(log.front(), std::string("PwmSafeManager init - DisplayServices available: ") +
                                   (available ? "true" : "false"));
        EXPECT_TRUE(stored());
        if (!available) {
            EXPECT_FALSE(manager->hasControllableDisplay);
            desktop.advance(Seconds(10));
            desktop.displayChanges.screenParametersChanged();
            EXPECT_TRUE(calls.empty());
            EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U);
        }
        manager.reset();
        forget();
    }
}

TEST_F(PwmSafe, LocksVerifiesAndPutsBack) {
    startEnabled();
    EXPECT_EQ(calls, (std::vector<Call>{monitorFull, panelFull}));
    EXPECT_EQ(log, Lines{"PWM-Safe enabled - locked 2 display(s) at 100%"});
    EXPECT_TRUE(stored());
    desktop.advance(Seconds(0.74));
    EXPECT_FALSE(manager->verified);
    desktop.advance(Seconds(0.02));
    EXPECT_TRUE(manager->verified);
    desktop.advance(Seconds(20));
    EXPECT_EQ(calls.size(), 2U) << "nothing drifts";

    forget();
    manager->isEnabled = false;
    EXPECT_EQ(calls, (std::vector<Call>{panelBack, monitorBack})) << "at once, not smoothly";
    EXPECT_EQ(log, Lines{"PWM-Safe disabled - restored 2 display(s)"});
    EXPECT_FALSE(manager->verified);
    EXPECT_FALSE(stored());
    EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U);
    EXPECT_FALSE(displays[3].ambientLight) << "that goes back at the end of the run only";

    manager->isEnabled = false;
    EXPECT_EQ(calls.size(), 2U) << "no change, no work";
}

TEST_F(PwmSafe, TogglesBackByItselfWhereItCannotBeHad) {
    struct Case {
        std::set<std::string> missing;
        std::vector<DisplayId> online;
        const char* reason;
    };
    for (const Case& c : std::vector<Case>{
             {{getBrightnessSymbol}, {3}, "no getBrightness symbol"},
             {{setBrightnessSymbol, setBrightnessSmoothSymbol}, {3}, "no setBrightness symbol"},
             {{canChangeBrightnessSymbol}, {3}, "no controllable displays"},
             {{}, {9}, "no controllable displays"},
             {{}, {}, "no controllable displays"}}) {
        desktop.displayServices.missing = c.missing;
        desktop.online.ids = c.online;
        startEnabled();
        EXPECT_EQ(log.front(), std::string("PWM-Safe enable aborted: ") + c.reason);
        EXPECT_FALSE(manager->isEnabled) << c.reason;
        EXPECT_FALSE(stored());
        EXPECT_TRUE(calls.empty());
        EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U);
    }
}

TEST_F(PwmSafe, RevertsWhenADisplayDoesNotReachFullBrightness) {
    struct Case {
        float reached;
        std::int32_t readStatus;
        bool passes;
        const char* shown;
    };
    for (const Case& c : std::vector<Case>{{0.985F, 0, false, "0.985"},
                                           {0.99F, 0, true, ""},
                                           {0.5F, -5, true, "a failed read counts as a pass"}}) {
        displays[3] = {.brightness = 0.4F};
        startEnabled();
        displays[3].brightness = c.reached;
        displays[3].readStatus = c.readStatus;
        forget();
        desktop.advance(Seconds(0.8));
        EXPECT_EQ(manager->isEnabled, c.passes) << c.shown;
        EXPECT_EQ(manager->verified, c.passes) << c.shown;
        EXPECT_EQ(stored(), c.passes);
        if (!c.passes) {
            EXPECT_EQ(log, (Lines{"PWM-Safe verify: display 3 at " + std::string(c.shown) +
                                      " — below 0.99",
                                  "PWM-Safe verification FAILED — auto-reverting toggle",
                                  "PWM-Safe disabled - restored 2 display(s)"}));
            EXPECT_EQ(calls, (std::vector<Call>{panelBack, monitorBack}));
            EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U);
        }
    }
}

TEST_F(PwmSafe, DrivesADisplayThatDriftsBackAndKeepsTheFirstRecord) {
    startLocked();
    displays[5].brightness = 0.5F;
    desktop.advance(Seconds(5));
    EXPECT_EQ(log, Lines{"PWM-Safe re-assert: drift detected on display 5 (0.5)"});
    EXPECT_EQ(calls, (std::vector<Call>{monitorFull, panelFull}));
    EXPECT_TRUE(manager->verified) << "until the new check says otherwise";
    desktop.advance(Seconds(1));
    EXPECT_TRUE(manager->verified);
    displays[5].ignoresWrites = true;
    displays[5].brightness = 0.3F;
    desktop.advance(Seconds(5));
    EXPECT_FALSE(manager->isEnabled) << "it cannot be held";
    EXPECT_EQ(calls[calls.size() - 2], panelBack);
    EXPECT_EQ(calls.back(), monitorBack);
}

TEST_F(PwmSafe, ReassertsAfterDisplayChangesAndWakingAtMostOnceASecond) {
    startLocked(); // 0.8 s ago
    desktop.displayChanges.screenParametersChanged();
    desktop.advance(Seconds(0.46));
    EXPECT_EQ(log, Lines{"PWM-Safe re-assert: screen params changed"});
    desktop.displayChanges.screenParametersChanged();
    desktop.displayChanges.screenParametersChanged();
    desktop.advance(Seconds(0.46));
    EXPECT_EQ(log.size(), 1U) << "throttled, without a line";
    forget();
    desktop.displayChanges.woke();
    desktop.advance(Seconds(1.49));
    EXPECT_TRUE(calls.empty());
    desktop.advance(Seconds(0.02));
    EXPECT_EQ(log, Lines{"PWM-Safe re-assert: wake from sleep"});
    EXPECT_EQ(calls, (std::vector<Call>{monitorFull, panelFull}));
}

TEST_F(PwmSafe, ComesBackAtTheNextStartOrWhenADisplayCanBeChanged) {
    desktop.preferences.store("pwmSafeMode", true);
    start();
    EXPECT_FALSE(manager->isEnabled) << "not from inside the construction";
    desktop.settle();
    EXPECT_TRUE(manager->isEnabled);

    desktop.online.ids = {9};
    displays[9] = {.brightness = 0.6F, .controllable = false};
    start();
    desktop.advance(Seconds(10));
    EXPECT_FALSE(manager->isEnabled);
    EXPECT_TRUE(stored()) << "left for a later start";
    displays[9].controllable = true; // the monitor has answered at last
    desktop.displayChanges.brightnessControlsChanged();
    desktop.advance(Seconds(1.2));
    EXPECT_TRUE(manager->isEnabled);
    EXPECT_EQ(displays[9].brightness, 1.0F);

    manager->isEnabled = false;
    desktop.displayChanges.brightnessControlsChanged();
    desktop.advance(Seconds(5));
    EXPECT_FALSE(manager->isEnabled) << "the user has decided meanwhile";

    desktop.preferences.store("pwmSafeMode", true);
    desktop.online.ids = {};
    start();
    desktop.settle();
    desktop.online.ids = {9};
    desktop.displayChanges.brightnessControlsChanged();
    desktop.online.ids = {}; // unplugged again, which is not known yet
    desktop.advance(Seconds(5));
    EXPECT_FALSE(manager->isEnabled);
    EXPECT_TRUE(stored()) << "left for a later start";
}

TEST_F(PwmSafe, LocksAMonitorThatCanBeChangedOnlyMomentsAfterTheModeCameOn) {
    displays[5].controllable = false;
    displays[5].brightness = 0.5F;
    startEnabled();
    desktop.advance(Seconds(0.2));
    displays[5].controllable = true;
    desktop.displayChanges.brightnessControlsChanged();
    desktop.advance(Seconds(1.2));
    EXPECT_EQ(displays[5].brightness, 1.0F);
    forget();
    desktop.displayChanges.brightnessControlsChanged();
    desktop.advance(Seconds(1.2));
    EXPECT_EQ(log, Lines()) << "the same displays as before";
    manager->isEnabled = false;
    EXPECT_EQ(displays[5].brightness, 0.5F);
}

TEST_F(PwmSafe, PutsEverythingBackAtTheEndWhateverItsState) {
    for (const bool enabled : {true, false}) {
        displays[3] = {.brightness = 0.4F};
        enabled ? startLocked() : static_cast<void>(start());
        forget();
        manager->sealForExit();
        manager->restoreOnExit();
        Lines lines{"PWM-Safe restoreOnExit - restored " + std::string(enabled ? "2" : "0") +
                        " display(s)",
                    "PWM-Safe ALC restored for display 3", "PWM-Safe ALC restored for display 5"};
        EXPECT_EQ(log, lines);
        EXPECT_EQ(displays[3].brightness, 0.4F);
        EXPECT_TRUE(displays[3].ambientLight);
        EXPECT_EQ(manager->isEnabled, enabled);
        EXPECT_EQ(stored(), enabled) << "for the next start";

        forget();
        manager->restoreOnExit();
        EXPECT_EQ(log, Lines{"PWM-Safe restoreOnExit - restored 0 display(s)"});
        EXPECT_TRUE(calls.empty());

        // Whatever the main thread still does must not lock the displays again, nor say so.
        manager->isEnabled = !enabled;
        EXPECT_EQ(log.size(), 1U);
        desktop.displayChanges.screenParametersChanged();
        desktop.displayChanges.woke();
        desktop.advance(Seconds(20));
        EXPECT_EQ(displays[3].brightness, 0.4F);
        EXPECT_TRUE(displays[3].ambientLight);
        desktop.preferences.store("pwmSafeMode", false);
    }
}

} // namespace noctra
