// Puts the program together: with its neighbours here the only place that names concrete adapters.

#include "app/linux/LinuxProgram.h"

#include <cstdio>
#include <memory>

#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>

#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/DebugLogger.h"
#include "app/LibraryLocation.h"
#include "app/linux/BesideTheProgram.h"
#include "app/linux/DisplayService.h"
#include "app/linux/LinuxPanel.h"
#include "app/linux/LinuxPopover.h"
#include "engine/ColorFilterManager.h"
#include "foundation/SharedInstance.h"
#include "platform/linux/ClipboardManager.h"
#include "platform/linux/DisplayServicesHost.h"
#include "platform/linux/LinuxDisplayChanges.h"
#include "platform/linux/LinuxSystem.h"
#include "platform/linux/LogindSleep.h"
#include "platform/linux/PosixLibraryLoader.h"
#include "platform/linux/PosixScratchFiles.h"
#include "platform/linux/SessionBusUrlChannel.h"
#include "platform/linux/StandardOutput.h"
#include "platform/linux/XConnection.h"
#include "platform/linux/XSettings.h"
#include "platform/linux/XdgLoginItem.h"
#include "platform/linux/backlight/SysfsBacklight.h"
#include "platform/linux/sessionbus/SessionBusLink.h"
#include "platform/linux/tray/QtPresses.h"
#include "platform/linux/tray/QtX11.h"
#include "platform/linux/tray/TrayBar.h"
#include "platform/linux/tray/XInputEventMonitors.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtPreferences.h"
#include "platform/qt/QtRunLoop.h"
#include "platform/qt/pdf/QtImages.h"
#include "pwmsafe/DisplayServicesBridge.h"
#include "pwmsafe/PwmSafeManager.h"

namespace noctra {

namespace {

// How long the last lines may take to reach whoever reads them.
constexpr Seconds outputPatience{0.1};
// How long displays may take to get their own brightness back at the end. A slow monitor takes
// three quarters of a second for one reading, and may be in the middle of one.
constexpr Seconds brightnessPatience{3.0};
// How long the desktop's clipboard manager may take over the copied diagnostics.
constexpr Seconds clipboardPatience{0.1};

/// Reaches the shared log, which is made by the first line that anything logs.
class SharedLog : public Log {
public:
    void log(std::string_view message) override { DebugLogger::shared().log(message); }
};

/// Qt ends the process by itself where its own connection to the display server breaks before ours
/// does. What this runs has to end it first, the way it should end.
std::function<void()>* whenQtExits = nullptr;

void answerQtsExit() {
    if (whenQtExits != nullptr)
        (*whenQtExits)();
}

void preset(const char* variable, const char* value) {
    if (!qEnvironmentVariableIsSet(variable))
        qputenv(variable, value);
}

void prepareQt(const DisplayService& displays, bool hasSessionBus) {
    // Its windows belong on the displays that are dimmed.
    qputenv("QT_QPA_PLATFORM", displays.windowSystem);
    // All that it draws has its own looks; a theme would load another toolkit for nothing.
    preset("QT_QPA_PLATFORMTHEME", "generic");
    if (const int scale = unannouncedScale();
        scale > 1 && !qEnvironmentVariableIsSet("QT_SCREEN_SCALE_FACTORS"))
        preset("QT_SCALE_FACTOR", std::to_string(scale).c_str());
    // Without a bus Qt would try to start one, and on one that does not answer wait for it.
    if (!hasSessionBus)
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
    QGuiApplication::setDesktopFileName("org.noctra.Noctra");
}

} // namespace

int failToRun(const std::string& message) {
    std::fprintf(stderr, "noctra: %s\n", message.c_str());
    return 1;
}

int runLinuxProgram(PosixProcess& process, int argc, char** argv,
                    const std::vector<std::string>& urls,
                    const std::function<void(const RunningProgram&)>& launched) {
    // libdbus ends the process where it takes a call for wrong, and Qt 6.4 makes such calls where a
    // bus goes away in the wrong moment.
    preset("DBUS_FATAL_WARNINGS", "0");
    const MonotonicClock steadyClock;
    QtRunLoop runLoop(steadyClock);
    MainQueue mainQueue(runLoop, steadyClock);

    SessionBusLink sessionBus(mainQueue);
    SessionBusUrlChannel urlChannel(mainQueue, sessionBus);
    const SessionBusUrlChannel::Claim claim = urlChannel.claim();
    const std::string complaint = complaintAbout(urls);
    if (claim == SessionBusUrlChannel::Claim::anothers) {
        if (process.environment(iconTestVariable) == "1")
            return failToRun("the icon self-test cannot run beside the running Noctra");
        const std::string problem = urlChannel.handOver(urls);
        if (!problem.empty())
            return failToRun("the running Noctra cannot be reached: " + problem);
        return complaint.empty() ? 0 : failToRun(complaint);
    }
    if (!complaint.empty())
        static_cast<void>(failToRun(complaint)); // says so; the program runs

    static SharedLog log;
    const DisplayService service = chooseDisplays(log);
    if (!service.displays)
        return failToRun(service.problem);
    RandrDisplays& displays = *service.displays;

    const SystemWallClock wallClock;
    const LinuxSystemInfo system(displays);
    StandardOutput output;
    SharedInstance<DebugLogger>::provide(
        [&] { return std::make_unique<DebugLogger>(wallClock, system, output); });
    urlChannel.setLog(log);
    log.log("Displays: " + service.chosen);
    if (!service.problem.empty())
        log.log("ERROR: " + service.problem);

    const bool hasSessionBus = claim == SessionBusUrlChannel::Claim::ours;
    prepareQt(service, hasSessionBus);
    const QApplication qt(argc, argv);
    // What desktops call the item in the tray.
    QCoreApplication::setApplicationName(QStringLiteral("Noctra"));

    QtPreferences preferences(QtPreferences::defaultPath(), mainQueue, log);
    process.beforeEnd([&] {
        preferences.flush();
        output.drain(outputPatience);
    });
    LinuxDisplayChanges displayChanges;
    SysfsBacklight backlight;
    XdgLoginItem loginItem(programPath(),
                           [&](const char* name) { return process.environment(name); });
    DisplayServicesHost displayServicesHost(
        mainQueue, steadyClock, displays.online(),
        {.controllabilityChanged =
             [&] { mainQueue.async([&] { displayChanges.brightnessControlsChanged(); }); },
         .backlightWritten =
             [&] {
                 displays.reassertTables();
             }});
    PosixLibraryLoader libraryLoader(
        besideTheProgram(displayServicesFromProgram, displayServicesFile),
        [&](void* library) { displayServicesHost.adopt(library); });
    SharedInstance<DisplayServicesBridge>::provide(
        [&] { return std::make_unique<DisplayServicesBridge>(libraryLoader); });
    SharedInstance<ColorFilterManager>::provide([&] {
        return std::make_unique<ColorFilterManager>(EngineServices{
            .log = log,
            .mainQueue = mainQueue,
            .displays = displays,
            .preferences = preferences,
            .process = process,
            .displayChanges = &displayChanges,
            .loginItem = &loginItem,
            .backlight = &backlight,
            .onlineDisplays = &displays.online(),
            .brightnessGetter = [] { return DisplayServicesBridge::shared().getBrightness(); },
        });
    });
    SharedInstance<PwmSafeManager>::provide([&] {
        return std::make_unique<PwmSafeManager>(PwmSafeServices{
            .log = log,
            .mainQueue = mainQueue,
            .wallClock = wallClock,
            .preferences = preferences,
            .onlineDisplays = displays.online(),
            .displayChanges = displayChanges,
            .bridge = DisplayServicesBridge::shared(),
        });
    });

    QtApplication application;
    PosixScratchFiles files;
    LinuxPanel panel(log, mainQueue, steadyClock, application);
    QtImages images;
    const QtPresses presses;
    XInputEventMonitors eventMonitors(mainQueue, steadyClock, log,
                                      [&](auto time) { return presses.include(time); });
    ClosingPress closingPress(eventMonitors);
    TrayBar tray({.log = log,
                  .mainQueue = mainQueue,
                  .closingPress = closingPress,
                  .sessionBus = hasSessionBus ? &sessionBus : nullptr});
    AppDelegate delegate({
        .log = log,
        .mainQueue = mainQueue,
        .application = application,
        .process = process,
        .urls = urlChannel,
        .wallClock = wallClock,
        .files = files,
        .resources = panel.resources(),
        .fonts = panel.fonts(),
        .images = images,
        .preferences = preferences,
        .displayChanges = displayChanges,
        .statusBar = tray,
        .eventMonitors = eventMonitors,
        .makePopover = [&]() -> std::unique_ptr<Popover> {
            return std::make_unique<LinuxPopover>(LinuxPopover::Parts{.panel = panel,
                                                                      .item = *tray.item(),
                                                                      .monitors = eventMonitors,
                                                                      .closingPress = closingPress,
                                                                      .steadyClock = steadyClock});
        },
        .engine = []() -> ColorFilterManager& { return ColorFilterManager::shared(); },
        .restoreBrightness =
            [&] {
                PwmSafeManager::shared().sealForExit();
                PwmSafeManager::shared().restoreOnExit();
                displayServicesHost.finish(brightnessPatience);
            },
        .repairTables = [&] { displayServicesHost.hearNews(); },
    });
    AnyCancellable serverWatch;
    const auto hearTheServer = [&] {
        if (!serverWatch.isActive())
            return; // the server has gone, which has been reported
        const RandrDisplays::News news = displays.processEvents();
        if (!news.serverGone.empty()) {
            serverWatch.cancel();
            delegate.displayServerLost(news.serverGone);
            static_cast<void>(failToRun("the X server is gone: " + news.serverGone));
        } else if (news.configurationChanged) {
            backlight.lookAgain();
            displayChanges.configurationChanged(news.changes);
        }
    };
    serverWatch = mainQueue.watch(displays.descriptor(), hearTheServer);
    displays.onNews([&] { mainQueue.async(hearTheServer); });

    std::function<void()> endLikeALostServer = [&] {
        delegate.displayServerGone();
    };
    whenQtExits = &endLikeALostServer;
    std::atexit(answerQtsExit);
    // Where the connection breaks in the middle of a change of the displays, Qt crashes instead.
    process.onCrash([&, connection = qtXConnection()] {
        if (connection == nullptr || !isBroken(connection))
            return;
        static_cast<void>(failToRun("the X server is gone: it went in the middle of an answer"));
        delegate.displayServerGone();
    });

    if (DisplayServicesHost::hasLevelsToPutBack())
        static_cast<void>(DisplayServicesBridge::shared().getBrightness()); // opens the library
    delegate.applicationDidFinishLaunching();
    const LogindSleep sleep(mainQueue, log, [&] { displayChanges.woke(); });
    urlChannel.deliver(urls);
    if (launched)
        launched({mainQueue, delegate, preferences});
    runLoop.drive(mainQueue);
    const int status = QCoreApplication::exec();
    if (QGuiApplication::clipboard()->ownsClipboard())
        saveClipboard(qtXConnection(), clipboardPatience);
    std::fflush(nullptr);
    // Nothing is torn down: the signal thread may be putting the tables back once more right now.
    process.endNow(status);
    return status;
}

} // namespace noctra
