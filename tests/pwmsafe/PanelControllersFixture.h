#pragma once

#include <gtest/gtest.h>

#include "engine/ColorFilterManager.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "pwmsafe/DisplayServicesBridge.h"
#include "pwmsafe/PwmSafeManager.h"

namespace noctra {

inline PwmSafeServices pwmSafeServices(SimulatedDesktop& desktop,
                                       const DisplayServicesBridge& bridge) {
    return {.log = desktop.log,
            .mainQueue = desktop.mainQueue,
            .wallClock = desktop.wall,
            .preferences = desktop.preferences,
            .onlineDisplays = desktop.online,
            .displayChanges = desktop.displayChanges,
            .bridge = bridge};
}

/// Both controllers on a simulated desktop with one built-in panel (display 1), whose brightness
/// can be set where `controllable` says so.
struct PanelControllers : testing::Test {
    SimulatedDesktop desktop;
    bool& controllable;
    DisplayServicesBridge bridge{desktop.displayServices};
    ColorFilterManager engine;
    PwmSafeManager manager;

    PanelControllers()
        : controllable(withDisplay(desktop)), engine({.log = desktop.log,
                                                      .mainQueue = desktop.mainQueue,
                                                      .displays = desktop.displays,
                                                      .preferences = desktop.preferences,
                                                      .process = desktop.process,
                                                      .displayChanges = &desktop.displayChanges,
                                                      .loginItem = &desktop.loginItem,
                                                      .backlight = &desktop.backlight,
                                                      .onlineDisplays = &desktop.online}),
          manager(pwmSafeServices(desktop, bridge)) {
        desktop.settle();
        desktop.log.messages.clear();
    }

    /// Makes the engine read `level` off the panel's backlight.
    void setBacklight(float level) {
        desktop.backlight.value = level;
        desktop.advance(Seconds(2));
    }
    void setControllable(bool can) {
        controllable = can;
        manager.refreshControllableDisplays();
        desktop.settle();
    }

private:
    static bool& withDisplay(SimulatedDesktop& desktop) {
        desktop.displays.attach(1);
        desktop.online.ids = {1};
        desktop.online.builtIn = {1};
        desktop.backlight.value = 1.0F;
        auto& display = desktop.displayServices.displays[1];
        display.controllable = false;
        return display.controllable;
    }
};

} // namespace noctra
