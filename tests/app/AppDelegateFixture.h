#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "app/AppDelegate.h"
#include "engine/ColorFilterManager.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "platform/simulated/SimulatedFonts.h"
#include "platform/simulated/SimulatedResources.h"

namespace noctra {

/// The program's delegate on a simulated desktop with one display, which has been used before.
struct AppDelegateFixture : testing::Test {
    SimulatedDesktop desktop;
    std::unique_ptr<ColorFilterManager> engine;
    std::vector<std::string> brightnessRestores; ///< the last log line at each
    SimulatedResources resources;
    SimulatedFonts fonts;
    SimulatedPopover* popover = nullptr; ///< once it is made
    std::unique_ptr<AppDelegate> owned = std::make_unique<AppDelegate>(AppServices{
        .log = desktop.log,
        .mainQueue = desktop.mainQueue,
        .application = desktop.application,
        .process = desktop.process,
        .urls = desktop.urls,
        .wallClock = desktop.wall,
        .files = desktop.files,
        .resources = resources,
        .fonts = fonts,
        .images = desktop.images,
        .preferences = desktop.preferences,
        .displayChanges = desktop.displayChanges,
        .statusBar = desktop.statusBar,
        .eventMonitors = desktop.eventMonitors,
        .makePopover = [this]() -> std::unique_ptr<Popover> {
            auto made = std::make_unique<SimulatedPopover>();
            popover = made.get();
            return made;
        },
        .engine = [this]() -> ColorFilterManager& { return madeEngine(); },
        .restoreBrightness =
            [this] {
                const auto& messages = desktop.log.messages;
                brightnessRestores.push_back(messages.empty() ? "" : messages.back());
                EXPECT_EQ(desktop.displays.tablesOf(1), SimulatedDisplays::linearTables())
                    << "gamma goes back before the brightness";
            },
        .repairTables = [this] { brightnessRestores.back() += ", tables repaired"; },
    });
    AppDelegate& delegate = *owned;

    AppDelegateFixture() {
        desktop.displays.attach(1);
        desktop.preferences.store("hasShownFirstRunPopover", true);
        resources.paths = {{"active.pdf", "/icons/active.pdf"}, {"off.pdf", "/icons/off.pdf"}};
    }

    ColorFilterManager& madeEngine() {
        if (!engine)
            engine = std::make_unique<ColorFilterManager>(
                EngineServices{.log = desktop.log,
                               .mainQueue = desktop.mainQueue,
                               .displays = desktop.displays,
                               .preferences = desktop.preferences,
                               .process = desktop.process});
        return *engine;
    }
};

} // namespace noctra
