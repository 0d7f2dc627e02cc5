#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/app/AppDelegateFixture.h"

namespace noctra {

namespace {

struct MenuBarTest : AppDelegateFixture {
    void leftClick() { desktop.statusBar.click(MouseEvent::leftMouseUp); }
    void rightClick() { desktop.statusBar.click(MouseEvent::rightMouseUp); }
    [[nodiscard]] bool isShown() const { return popover != nullptr && popover->shown; }
};

} // namespace

TEST_F(MenuBarTest, ASymbolStandsInForAnIconThatIsMissingOrDamaged) {
    launch();
    SimulatedStatusBar& bar = desktop.statusBar;
    for (const bool damaged : {false, true}) {
        if (damaged) {
            resources.paths = {{"active.pdf", "x"}, {"off.pdf", "x"}};
            desktop.images.drawsFiles = false;
        } else {
            resources.paths.clear();
        }
        for (const bool enabled : {true, false}) {
            desktop.log.messages.clear();
            engine->isEnabled = enabled;
            desktop.settle();
            const std::string file = enabled ? "active.pdf" : "off.pdf";
            EXPECT_EQ(desktop.log.messages.back(),
                      (damaged ? "Menu bar PDF failed to load: " : "Menu bar PDF missing: ") +
                          file);
            EXPECT_EQ(bar.pictureName(), "bolt.fill");
            EXPECT_EQ(bar.image->isTemplate, !enabled);
            EXPECT_EQ(bar.image->description, enabled ? "Noctra On" : "Noctra Off");
            const SymbolRequest& asked = desktop.images.symbols.back();
            EXPECT_EQ(asked.pointSize, 13.0);
            EXPECT_TRUE(asked.bold);
            EXPECT_EQ(asked.color, enabled ? std::optional(colors::systemRed) : std::nullopt);
        }
    }
    desktop.images.hasSymbols = false;
    const int before = bar.imagesSet;
    engine->isEnabled = true;
    desktop.settle();
    EXPECT_EQ(bar.imagesSet, before) << "the icon stays where there is nothing to put there";
}

TEST_F(MenuBarTest, LeftClicksOpenAndCloseThePopoverAndClicksElsewhereCloseIt) {
    launch();
    EXPECT_FALSE(isShown()) << "nothing opens by itself at a later start";
    leftClick();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(popover->width, 320.0);
    EXPECT_EQ(desktop.application.activations, 1);
    leftClick();
    EXPECT_FALSE(isShown());
    EXPECT_EQ(desktop.eventMonitors.pressElsewhere(), 0) << "nobody listens while it is closed";
    leftClick();
    EXPECT_EQ(desktop.eventMonitors.pressElsewhere(), 1);
    EXPECT_FALSE(isShown());
    EXPECT_EQ(desktop.eventMonitors.pressElsewhere(), 0);

    leftClick();
    popover->closeAsked(); // the Escape key
    EXPECT_FALSE(isShown());
    EXPECT_EQ(desktop.eventMonitors.pressElsewhere(), 0);

    leftClick();
    popover->shown = false; // the desktop closed it
    leftClick();
    EXPECT_TRUE(isShown());
    EXPECT_EQ(desktop.eventMonitors.pressElsewhere(), 1) << "the stale monitor has gone";

    desktop.eventMonitors.works = false;
    leftClick();
    EXPECT_TRUE(isShown());
    desktop.statusBar.callActionWithoutEvent();
    EXPECT_TRUE(isShown()) << "an action without an event does nothing";
}

TEST_F(MenuBarTest, ARightClickOffersToQuitAndNothingElse) {
    for (const bool desktopOpensMenus : {false, true}) {
        desktop.statusBar.opensMenus = desktopOpensMenus;
        desktop.statusBar.menu.reset();
        desktop.statusBar.menusOpened.clear();
        launch();
        engine->isEnabled = true;
        rightClick();
        ASSERT_EQ(desktop.statusBar.menusOpened.size(), 1U);
        const Menu menu = desktop.statusBar.menusOpened.back();
        ASSERT_EQ(menu.size(), 1U);
        EXPECT_EQ(menu[0].title, "Quit Noctra");
        EXPECT_EQ(menu[0].keyEquivalent, "q");
        EXPECT_FALSE(isShown());
        desktop.settle();
        leftClick();
        EXPECT_TRUE(isShown()) << "the menu does not take the left clicks";
        rightClick();
        EXPECT_TRUE(isShown()) << "the menu leaves the popover alone";
        EXPECT_EQ(desktop.statusBar.menusOpened.size(), 2U);
        desktop.settle();
        leftClick();
    }
    desktop.statusBar.keepsLeftClicks = true;
    launch();
    ASSERT_EQ(desktop.statusBar.menu->size(), 2U);
    EXPECT_EQ(desktop.statusBar.menu->front().title, "Show Noctra");
    desktop.statusBar.menu->front().action();
    EXPECT_TRUE(isShown());
    desktop.statusBar.menu->back().action();
    EXPECT_EQ(desktop.application.terminatedWith, 0);
    EXPECT_EQ(desktop.displays.tablesOf(1), SimulatedDisplays::linearTables());
}

TEST_F(MenuBarTest, AScreenChangeClosesThePopoverAndOpensItWhereItBelongsNow) {
    launch();
    desktop.displayChanges.screenParametersChanged();
    desktop.advance(Seconds(1.0));
    EXPECT_FALSE(isShown()) << "a closed one stays closed";
    leftClick();
    desktop.statusBar.screenHeight = 500.0;
    desktop.displayChanges.screenParametersChanged();
    EXPECT_FALSE(isShown());
    desktop.advance(Seconds(0.06));
    desktop.displayChanges.screenParametersChanged();
    desktop.advance(Seconds(0.05));
    EXPECT_FALSE(isShown());
    desktop.advance(Seconds(0.02));
    EXPECT_TRUE(isShown()) << "0.12 s after the first of the changes";
    EXPECT_EQ(popover->height, 476.0);
    desktop.advance(Seconds(1.0));
    EXPECT_EQ(popover->showings, 2);
    EXPECT_EQ(desktop.eventMonitors.pressElsewhere(), 1);

    popover->placeChanged();
    EXPECT_FALSE(isShown()) << "a closed one does not follow the button";
    leftClick();
    desktop.statusBar.screenHeight = 400.0;
    const int activations = desktop.application.activations;
    popover->placeChanged();
    EXPECT_EQ(popover->height, 376.0);
    EXPECT_EQ(desktop.application.activations, activations) << "it takes the focus from nobody";

    desktop.displayChanges.screenParametersChanged();
    owned.reset();
    desktop.advance(Seconds(1.0)); // nothing is left that could be shown
}

} // namespace noctra
