#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/app/AppDelegateFixture.h"

namespace noctra {

namespace {

struct MenuBarTest : AppDelegateFixture {
    MenuBarTest() {
        delegate.applicationDidFinishLaunching();
        desktop.settle();
    }
    void click() { desktop.statusBar.click(MouseEvent::leftMouseUp); }
    [[nodiscard]] bool isShown() const { return popover->shown; }
};

} // namespace

TEST_F(MenuBarTest, ASymbolStandsInForAnIconThatIsMissingOrDamaged) {
    SimulatedStatusBar& bar = desktop.statusBar;
    desktop.images.drawsFiles = false;
    for (const std::string line : {"Menu bar PDF failed to load: ", "Menu bar PDF missing: "}) {
        for (const bool enabled : {true, false}) {
            engine->isEnabled = enabled;
            desktop.settle();
            EXPECT_EQ(desktop.log.messages.back(), line + (enabled ? "active.pdf" : "off.pdf"));
            EXPECT_EQ(bar.pictureName(), "bolt.fill");
            EXPECT_EQ(bar.image->isTemplate, !enabled);
            EXPECT_EQ(desktop.images.symbols.back().color,
                      enabled ? std::optional(colors::systemRed) : std::nullopt);
        }
        resources.paths.clear();
    }
    desktop.images.hasSymbols = false;
    const int before = bar.imagesSet;
    engine->isEnabled = true;
    desktop.settle();
    EXPECT_EQ(bar.imagesSet, before) << "the icon stays where there is nothing to put there";
}

TEST_F(MenuBarTest, AClickOpensThePopoverWhichHearsOfClicksElsewhereWhileItIsOpen) {
    SimulatedEventMonitors& monitors = desktop.eventMonitors;
    const std::vector<std::function<void()>> waysToClose{
        [this] { click(); },
        [&] { EXPECT_EQ(monitors.pressElsewhere(), 1) << "also after the desktop closed it"; },
        [this] {
            popover->closeAsked();
        }};
    for (const auto& close : waysToClose) {
        EXPECT_FALSE(isShown());
        EXPECT_EQ(monitors.pressElsewhere(), 0);
        click();
        popover->shown = false; // the desktop closed it
        click();
        EXPECT_TRUE(isShown());
        close();
    }
    monitors.works = false;
    desktop.statusBar.callActionWithoutEvent();
    EXPECT_FALSE(isShown());
    click();
    EXPECT_TRUE(isShown());
}

TEST_F(MenuBarTest, AScreenChangeClosesThePopoverAndOpensItWhereItBelongsNow) {
    const auto change = [this](double height) {
        desktop.statusBar.screenHeight = height;
        desktop.displayChanges.screenParametersChanged();
    };
    change(600.0);
    desktop.advance(Seconds(1.0));
    EXPECT_FALSE(isShown()) << "a closed one stays closed";
    click();
    change(500.0);
    desktop.advance(Seconds(0.06));
    change(450.0);
    desktop.advance(Seconds(0.05));
    EXPECT_FALSE(isShown());
    desktop.advance(Seconds(0.02));
    EXPECT_TRUE(isShown()) << "0.12 s after the first of the changes";
    EXPECT_EQ(popover->height, 426.0);
    desktop.statusBar.screenHeight = 400.0;
    popover->placeChanged();
    EXPECT_EQ(popover->height, 376.0);
    EXPECT_EQ(desktop.application.activations, 2) << "following takes the focus from nobody";

    change(600.0);
    popover->placeChanged();
    EXPECT_FALSE(isShown()) << "a closed one does not follow the button";
    owned.reset();
    desktop.advance(Seconds(1.0)); // nothing is left that could be shown
}

} // namespace noctra
