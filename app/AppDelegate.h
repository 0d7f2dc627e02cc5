#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <string>

#include "app/AutomationCommand.h"
#include "app/MenuBarIconSelfTest.h"
#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "platform/Process.h"

namespace noctra {

class Application;
class ColorFilterManager;
class Fonts;
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
    /// Shows the control panel, or brings it to the front.
    std::function<void()> showPanel;
    /// The engine; its first call constructs it.
    std::function<ColorFilterManager&()> engine;
    /// Puts the displays' hardware brightness back and returns when that is done, or has taken too
    /// long. Any thread, may be called more than once.
    std::function<void()> restoreBrightness;
    /// Puts right what setting the brightness has done to the tables. Any thread; may wait for the
    /// display server.
    std::function<void()> repairTables;
};

/// The program's start, its end, and the commands that other programs send it.
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

    /// The same where the process is already being ended from inside a library: ends it at once,
    /// with the brightness back.
    void displayServerGone();

    /// Applies the command in `url`, or logs that there is none; a bad URL changes nothing.
    void handleAutomationURL(const std::string& url);

private:
    void setupSignalHandlers();
    void answerSignal(TerminationSignal signal);
    void restoreDisplays();
    void endWhateverHangs(int status);
    void sayThatItTerminates();
    void runAutomationCommand(AutomationCommand command);
    ColorFilterManager& engine() { return services_.engine(); }

    const AppServices services_;
    std::unique_ptr<MenuBarIconSelfTest> selfTest_;
    std::atomic<bool> saidThatItTerminates_ = false;
};

} // namespace noctra
