#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/pwmsafe/PanelControllersFixture.h"

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
    std::optional<DisplayServicesBridge> bridge;
    std::optional<PwmSafeManager> manager;

    PwmSafe() {
        desktop.online.ids = {5, 9, 3};
        displays = {{3, {.brightness = 0.4F}}, {5, {}}, {9, {.controllable = false}}};
    }

    void start(bool stored = false) {
        desktop.preferences.store("pwmSafeMode", stored);
        manager.reset();
        manager.emplace(pwmSafeServices(desktop, bridge.emplace(desktop.displayServices)));
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

const std::vector<Call> bothFull{{Call::Kind::setSmooth, 5, 1.0F},
                                 {Call::Kind::setSmooth, 3, 1.0F}};
const std::vector<Call> bothBack{{Call::Kind::set, 3, 0.4F}, {Call::Kind::set, 5, 1.0F}};

} // namespace

TEST_F(PwmSafe, TouchesNothingWhereItCannotBeHadAndTogglesBackByItself) {
    struct Case {
        std::set<std::string> missing;
        std::vector<DisplayId> online;
        bool available;
        std::string reason;
    };
    for (const Case& c :
         std::vector<Case>{{{"the library"}, {3}, false, "no getBrightness symbol"},
                           {{getBrightnessSymbol}, {3}, false, "no getBrightness symbol"},
                           {{setBrightnessSymbol, setBrightnessSmoothSymbol},
                            {3},
                            false,
                            "no setBrightness symbol"},
                           {{canChangeBrightnessSymbol}, {3}, false, "no controllable displays"},
                           {{}, {9}, true, "no controllable displays"}}) {
        desktop.displayServices.present = !c.missing.contains("the library");
        desktop.displayServices.missing = c.missing;
        desktop.online.ids = c.online;
        log.clear();
        start(true);
        desktop.displayChanges.screenParametersChanged();
        desktop.advance(Seconds(10));
        EXPECT_EQ(manager->isAvailable, c.available) << c.reason;
        EXPECT_FALSE(manager->hasControllableDisplay) << c.reason;
        EXPECT_TRUE(stored()) << c.reason << ": left for a later start";

        manager->isEnabled = true;
        EXPECT_EQ(desktop.log.count("PWM-Safe enable aborted: " + c.reason), 1U);
        EXPECT_FALSE(manager->isEnabled) << c.reason;
        EXPECT_FALSE(stored()) << c.reason;
        EXPECT_TRUE(calls.empty()) << c.reason;
        EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U) << c.reason;
    }
}

TEST_F(PwmSafe, LocksVerifiesAndPutsBackWithTheSmoothSetterAndWithoutIt) {
    for (const bool smooth : {true, false}) {
        if (!smooth)
            desktop.displayServices.missing = {setBrightnessSmoothSymbol};
        displays[3].brightness = 0.4F;
        desktop.displayServices.opened.clear();
        desktop.displayServices.lookedUp.clear();
        startEnabled();
        EXPECT_EQ(calls.size(), 2U);
        EXPECT_EQ(calls == bothFull, smooth);
        EXPECT_EQ(displays[3].brightness, 1.0F);
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
        manager->isEnabled = false; // no change, no work
        EXPECT_EQ(calls, bothBack) << "at once, not smoothly";
        EXPECT_EQ(log, Lines{"PWM-Safe disabled - restored 2 display(s)"});
        EXPECT_FALSE(manager->verified);
        EXPECT_FALSE(stored());
        EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U);
        EXPECT_FALSE(displays[3].ambientLight) << "that goes back at the end of the run only";
        EXPECT_EQ(desktop.displayServices.opened.size(), 1U);
        EXPECT_EQ(desktop.displayServices.lookedUp.size(), 5U) << "each function once";
    }
}

TEST_F(PwmSafe, RevertsWhenADisplayDoesNotReachFullBrightness) {
    struct Case {
        float reached;
        std::int32_t readStatus;
        bool passes;
    };
    for (const Case& c : std::vector<Case>{
             {0.985F, 0, false}, {0.99F, 0, true}, {0.5F, -5, true /* not known */}}) {
        displays[3] = {.brightness = 0.4F};
        startEnabled();
        displays[3].brightness = c.reached;
        displays[3].readStatus = c.readStatus;
        forget();
        desktop.advance(Seconds(0.8));
        EXPECT_EQ(manager->verified, c.passes) << c.reached;
        EXPECT_EQ(stored(), c.passes) << c.reached;
        EXPECT_EQ(calls, c.passes ? std::vector<Call>{} : bothBack) << c.reached;
        EXPECT_EQ(log, c.passes ? Lines{}
                                : (Lines{"PWM-Safe verify: display 3 at 0.985 — below 0.99",
                                         "PWM-Safe verification FAILED — auto-reverting toggle",
                                         "PWM-Safe disabled - restored 2 display(s)"}));
    }
}

TEST_F(PwmSafe, DrivesDisplaysBackAtMostOnceASecondAndKeepsTheFirstRecord) {
    const SimulatedDisplayChanges& changes = desktop.displayChanges;
    struct Case {
        std::string reason;
        std::function<void()> happen;
        double after; ///< seconds
    };
    for (const Case& c : std::vector<Case>{
             {"drift detected on display 5 (0.5)", [&] { displays[5].brightness = 0.5F; }, 4.2},
             {"screen params changed",
              [&] {
                  changes.screenParametersChanged();
                  changes.screenParametersChanged();
              },
              0.45},
             {"wake from sleep", [&] { changes.woke(); }, 1.5}}) {
        displays[3].brightness = 0.4F;
        displays[5] = {};
        startLocked(); // 0.8 s ago
        c.happen();
        desktop.advance(Seconds(c.after - 0.01));
        EXPECT_TRUE(calls.empty()) << c.reason;
        desktop.advance(Seconds(0.02));
        EXPECT_EQ(log, Lines{"PWM-Safe re-assert: " + c.reason});
        EXPECT_EQ(calls, bothFull) << c.reason;
        desktop.advance(Seconds(1));
        EXPECT_TRUE(manager->verified) << c.reason;

        displays[5] = {.brightness = 0.3F, .ignoresWrites = true};
        desktop.advance(Seconds(6));
        EXPECT_FALSE(manager->isEnabled) << "it cannot be held";
        EXPECT_EQ(std::vector<Call>(calls.end() - 2, calls.end()), bothBack) << c.reason;
    }
}

TEST_F(PwmSafe, ComesBackAtTheNextStartOrOnceADisplayCanBeChanged) {
    start(true);
    EXPECT_FALSE(manager->isEnabled) << "not from inside the construction";
    desktop.settle();
    EXPECT_TRUE(manager->isEnabled);

    desktop.online.ids = {9};
    start(true);
    desktop.online.ids = {3};
    desktop.displayChanges.brightnessControlsChanged();
    desktop.online.ids = {}; // unplugged again, which is not known yet
    desktop.advance(Seconds(5));
    EXPECT_FALSE(manager->isEnabled);
    EXPECT_TRUE(stored()) << "left for a later start";

    desktop.online.ids = {9};
    displays[9] = {.brightness = 0.6F}; // the monitor has answered at last
    desktop.displayChanges.brightnessControlsChanged();
    desktop.advance(Seconds(1.2));
    EXPECT_TRUE(manager->isEnabled);
    EXPECT_EQ(displays[9].brightness, 1.0F);
    manager->isEnabled = false;
    desktop.displayChanges.brightnessControlsChanged();
    desktop.advance(Seconds(5));
    EXPECT_FALSE(manager->isEnabled) << "the user has decided meanwhile";
}

TEST_F(PwmSafe, LocksAMonitorThatCanBeChangedOnlyMomentsAfterTheModeCameOn) {
    displays[5] = {.brightness = 0.5F, .controllable = false};
    startEnabled();
    desktop.advance(Seconds(0.2));
    displays[5].controllable = true;
    for (int answers = 0; answers < 2; ++answers) {
        desktop.displayChanges.brightnessControlsChanged();
        desktop.advance(Seconds(1.2));
    }
    EXPECT_EQ(displays[5].brightness, 1.0F);
    EXPECT_EQ(desktop.log.count("PWM-Safe re-assert: brightness controls changed"), 1U);
    manager->isEnabled = false;
    EXPECT_EQ(displays[5].brightness, 0.5F);
}

TEST_F(PwmSafe, PutsEverythingBackAtTheEndWhateverItsState) {
    for (const bool enabled : {true, false}) {
        displays[3] = {.brightness = 0.4F};
        enabled ? startLocked() : start();
        forget();
        manager->sealForExit();
        manager->restoreOnExit();
        EXPECT_EQ(log, (Lines{"PWM-Safe restoreOnExit - restored " +
                                  std::string(enabled ? "2" : "0") + " display(s)",
                              "PWM-Safe ALC restored for display 3",
                              "PWM-Safe ALC restored for display 5"}));
        forget();
        manager->restoreOnExit();
        EXPECT_TRUE(calls.empty()) << "only once";

        // Whatever the main thread still does must not lock the displays again, nor say so.
        manager->isEnabled = !enabled;
        desktop.displayChanges.screenParametersChanged();
        desktop.displayChanges.woke();
        desktop.advance(Seconds(20));
        EXPECT_EQ(log.size(), 1U);
        EXPECT_EQ(displays[3].brightness, 0.4F);
        EXPECT_TRUE(displays[3].ambientLight);
        EXPECT_EQ(stored(), enabled) << "for the next start";
    }
}

} // namespace noctra
