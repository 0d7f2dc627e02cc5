#pragma once

#include <functional>
#include <string>
#include <utility>

#include "panel/PanelServices.h"
#include "platform/Fonts.h"
#include "platform/Resources.h"
#include "tests/pwmsafe/PanelControllersFixture.h"

namespace noctra {

/// What a panel needs, of the simulated desktop and its controllers. All arguments outlive it.
[[nodiscard]] inline PanelServices panelServices(PanelControllers& controllers,
                                                 std::function<std::string()> fullLog,
                                                 const Resources& resources, const Fonts& fonts) {
    SimulatedDesktop& desktop = controllers.desktop;
    return {.log = desktop.log,
            .fullLog = std::move(fullLog),
            .mainQueue = desktop.mainQueue,
            .steadyClock = desktop.steady,
            .filterManager = controllers.engine,
            .pwmSafeManager = controllers.manager,
            .application = desktop.application,
            .clipboard = desktop.clipboard,
            .cursor = desktop.cursor,
            .numbers = desktop.numbers,
            .motion = desktop.motion,
            .resources = resources,
            .fonts = fonts};
}

} // namespace noctra
