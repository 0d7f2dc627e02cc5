#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "app/AutomationCommand.h"
#include "app/MenuBarIconSelfTest.h"
#include "foundation/AnyCancellable.h"
#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "platform/Popover.h"
#include "platform/Process.h"
#include "platform/StatusItem.h"

namespace noctra {

class Application;
class ColorFilterManager;
class DisplayChanges;
class EventMonitors;
class Fonts;
class Preferences;
class Resources;
class UrlChannel;

/// What the delegate needs. Everything must outlive it.
struct AppServices {
    Log& log;
    MainQueue& mainQueue;
    Application& application;
    Process& process;
    UrlChannel& urls;
    const WallClock& wallClock;
    ScratchFiles& files;
    const Resources& resources;
    Fonts& fonts;
    Images& images;
    Preferences& preferences;
    DisplayChanges& displayChanges;
    StatusBar& statusBar;
    EventMonitors& eventMonitors;
    /// Makes the popover that holds the control panel; may give null.
    std::function<std::unique_ptr<Popover>()> makePopover;
    /// The engine; its first call constructs it.
    std::function<ColorFilterManager&()> engine;
    /// Puts the displays' hardware brightness back and returns when that is done, or has taken too
    /// long. Any thread, may be called more than once.
    std::function<void()> restoreBrightness;
    /// Puts right what setting the brightness has done to the tables. Any thread; may wait for the
    /// display server.
    std::function<void()> repairTables;
};

/// The program's start and its end, its item in the menu bar with the popover, and the commands
/// that other programs send it.
///
/// Main thread, except for the answer to a signal, which runs on the thread that took it.
class AppDelegate {
public:
    explicit AppDelegate(const AppServices& services);
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    /// The start-up sequence: the engine first, so that the displays' own tables are captured
    /// before anything can change them.
    void applicationDidFinishLaunching();

    /// The last step of every normal termination: log, tables back, brightness back, no more URLs.
    void applicationWillTerminate();

    /// Puts everything back, then asks for normal termination (which does it once more).
    void quitApp();

    /// The display server has gone, and the tables with it: puts the brightness back and ends the
    /// program with status 1.
    void displayServerLost(const std::string& reason);

    /// The same where the process is already being ended from inside a library, or has crashed
    /// there: ends it at once, with the brightness back. Any thread.
    void displayServerGone();

    /// Sets the item's icon for the filter's state. Where neither the icon's file nor the symbol
    /// that stands in for it can be had, the icon stays as it is.
    void updateMenuBarIcon(bool enabled);

    /// What a click on the item does: the left button opens or closes the popover, the right one
    /// opens the menu.
    void handleClick();
    void togglePopover();
    void showPopover(StatusItemButton& button);
    void closePopover();

    /// Closes the popover where it is shown, and shows it again where it belongs now, once the
    /// displays have settled.
    void handleScreenParameterChange();

    /// Applies the command in `url`, or logs that there is none; a bad URL changes nothing.
    void handleAutomationURL(const std::string& url);

private:
    void setupSignalHandlers();
    void answerSignal(TerminationSignal signal);
    void restoreDisplays();
    void endWhateverHangs(int status);
    void sayThatItTerminates();
    void runAutomationCommand(AutomationCommand command);
    void setupStatusItem();
    void setupPopover();
    void subscribe();
    void runSelfTest();
    void openOnFirstRun();
    [[nodiscard]] StatusImage loadMenuBarPDF(const std::string& name, bool isTemplate);
    [[nodiscard]] Menu quitMenu();
    void showRightClickMenu();
    void detachMenu();
    void followButton();
    void updatePopoverSize(const StatusItemButton& button);
    [[nodiscard]] StatusItemButton* button() const;
    [[nodiscard]] bool popoverIsShown() const { return popover_ && popover_->isShown(); }
    void showPopoverIfThereIsAButton();
    ColorFilterManager& engine() { return services_.engine(); }

    const AppServices services_;
    std::unique_ptr<StatusItem> statusItem_;
    std::unique_ptr<Popover> popover_;
    AnyCancellable eventMonitor_; ///< for clicks elsewhere; active while the popover is shown
    std::vector<AnyCancellable> cancellables_;
    WorkItem firstRun_;
    WorkItem menuDetachment_;
    WorkItem reopening_;
    std::unique_ptr<MenuBarIconSelfTest> selfTest_;
    std::atomic<bool> saidThatItTerminates_ = false;
};

} // namespace noctra
