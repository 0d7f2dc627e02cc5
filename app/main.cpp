// Puts the program together: the only place that names concrete adapters.

#include <array>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <system_error>
#include <vector>

#include <QtCore/QCoreApplication>

#include "app/AppDelegate.h"
#include "app/CommandLine.h"
#include "app/DebugLogger.h"
#include "app/Version.h"
#include "engine/ColorFilterManager.h"
#include "foundation/SharedInstance.h"
#include "platform/linux/LinuxDisplayChanges.h"
#include "platform/linux/LinuxSystem.h"
#include "platform/linux/LogindSleep.h"
#include "platform/linux/PosixProcess.h"
#include "platform/linux/PosixScratchFiles.h"
#include "platform/linux/RandrDisplays.h"
#include "platform/linux/RuntimeDirectory.h"
#include "platform/linux/SessionBusUrlChannel.h"
#include "platform/linux/StandardOutput.h"
#include "platform/linux/XdgLoginItem.h"
#include "platform/linux/backlight/SysfsBacklight.h"
#include "platform/qt/QtApplication.h"
#include "platform/qt/QtPreferences.h"
#include "platform/qt/QtRunLoop.h"

namespace noctra {

namespace {

// How long the last lines may take to reach whoever reads them.
constexpr Seconds outputPatience{0.1};

/// Reaches the shared log, which is made by the first line that anything logs.
class SharedLog : public Log {
public:
    void log(std::string_view message) override { DebugLogger::shared().log(message); }
};

int fail(const std::string& message) {
    std::fprintf(stderr, "noctra: %s\n", message.c_str());
    return 1;
}

/// Displays with what main has to know about them.
struct DisplayService {
    std::unique_ptr<RandrDisplays> displays;
    std::string chosen;  ///< why this one, for the log
    std::string problem; ///< why it could not be had, or what about it is not as it should be
};

DisplayService createRandrDisplays(Log& log) {
    RandrConnection connection = connectToRandr(nullptr);
    if (!connection.xcb)
        return {nullptr, {}, connection.description};

    const char* name = std::getenv("DISPLAY");
    const RuntimeDirectory directory = openRuntimeDirectory();
    auto opened = TableRecord::open(directory.path.empty()
                                        ? std::string()
                                        : directory.path + "/" +
                                              tableRecordName(name != nullptr ? name : ""));
    if (opened.opened == TableRecord::Opened::inUse)
        return {nullptr,
                {},
                "another Noctra is running on this display and cannot be reached: " + opened.error};
    if (!opened.record)
        return {nullptr, {}, "out of memory"};
    std::string problem = directory.path.empty() ? std::string() : directory.problem;
    if (!problem.empty())
        problem += "; using " + directory.path;
    if (opened.opened == TableRecord::Opened::unavailable)
        problem = "a filter cannot be taken off after Noctra was killed: " +
                  (directory.path.empty() ? directory.problem : opened.error);
    std::string chosen = connection.description;
    return {std::make_unique<RandrDisplays>(std::move(connection), std::move(opened.record), log),
            std::move(chosen), std::move(problem)};
}

/// Every kind of display service, best first.
struct DisplayServiceKind {
    const char* name;
    DisplayService (*create)(Log& log);
};
constexpr std::array<DisplayServiceKind, 1> displayServiceKinds{{
    {"X11 RandR", createRandrDisplays},
}};

DisplayService chooseDisplays(Log& log) {
    std::string problems;
    for (const DisplayServiceKind& kind : displayServiceKinds) {
        DisplayService service = kind.create(log);
        if (service.displays) {
            service.chosen = std::string(kind.name) + " (" + service.chosen + ")";
            return service;
        }
        problems += (problems.empty() ? "" : "; ") + service.problem;
    }
    return {nullptr, {}, problems};
}

int run(PosixProcess& process, int argc, char** argv, const std::vector<std::string>& urls) {
    QCoreApplication qt(argc, argv);
    const MonotonicClock steadyClock;
    QtRunLoop runLoop(steadyClock);
    MainQueue mainQueue(runLoop, steadyClock);

    SessionBusUrlChannel urlChannel(mainQueue);
    if (urlChannel.claim() == SessionBusUrlChannel::Claim::anothers) {
        const std::string problem = urlChannel.handOver(urls);
        return problem.empty() ? 0 : fail("the running Noctra cannot be reached: " + problem);
    }

    static SharedLog log;
    const DisplayService service = chooseDisplays(log);
    if (!service.displays)
        return fail(service.problem);
    RandrDisplays& displays = *service.displays;

    const SystemWallClock wallClock;
    const LinuxSystemInfo system(displays);
    StandardOutput output;
    process.beforeEnd([&] { output.drain(outputPatience); });
    SharedInstance<DebugLogger>::provide(
        [&] { return std::make_unique<DebugLogger>(wallClock, system, output); });
    urlChannel.setLog(log);
    log.log("Displays: " + service.chosen);
    if (!service.problem.empty())
        log.log("ERROR: " + service.problem);

    QtPreferences preferences(QtPreferences::defaultPath(), mainQueue, log);
    LinuxDisplayChanges displayChanges;
    SysfsBacklight backlight;
    XdgLoginItem loginItem(programPath(),
                           [&](const char* name) { return process.environment(name); });
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
        });
    });

    QtApplication application;
    PosixScratchFiles files;
    AppDelegate delegate({
        .log = log,
        .mainQueue = mainQueue,
        .application = application,
        .process = process,
        .urls = urlChannel,
        .wallClock = wallClock,
        .files = files,
        .engine = []() -> ColorFilterManager& { return ColorFilterManager::shared(); },
        .restoreBrightness = {},
    });
    AnyCancellable serverWatch;
    const auto hearTheServer = [&] {
        if (!serverWatch.isActive())
            return; // it is gone, and that has been said
        const RandrDisplays::News news = displays.processEvents();
        if (!news.serverGone.empty()) {
            serverWatch.cancel();
            delegate.displayServerLost(news.serverGone);
            static_cast<void>(fail("the X server is gone: " + news.serverGone));
        } else if (news.configurationChanged) {
            backlight.lookAgain();
            displayChanges.configurationChanged(news.changes);
        }
    };
    serverWatch = mainQueue.watch(displays.descriptor(), hearTheServer);
    displays.onNews([&] { mainQueue.async(hearTheServer); });

    delegate.applicationDidFinishLaunching();
    const LogindSleep sleep(mainQueue, log, [&] { displayChanges.woke(); });
    urlChannel.deliver(urls);
    runLoop.drive(mainQueue);
    const int status = QCoreApplication::exec();
    preferences.flush();
    std::fflush(nullptr);
    // Nothing is torn down: the signal thread may be putting the tables back once more right now.
    process.endNow(status);
    return status;
}

} // namespace

} // namespace noctra

int main(int argc, char** argv) {
    using namespace noctra;
    PosixProcess* process = nullptr;
    try {
        process = &PosixProcess::start();
    } catch (const std::system_error& error) {
        return fail(std::string("cannot start a thread: ") + error.what());
    }
    const CommandLine commandLine =
        parseCommandLine(std::vector<std::string>(argv + 1, argv + argc));
    switch (commandLine.action) {
    case CommandLine::Action::help:
        std::fputs(helpText().c_str(), stdout);
        return 0;
    case CommandLine::Action::version:
        std::printf("noctra %s\n", std::string(programVersion).c_str());
        return 0;
    case CommandLine::Action::refuse:
        std::fprintf(stderr, "%s\n", std::string(usageLine).c_str());
        return 2;
    case CommandLine::Action::run:
        break;
    }
    return run(*process, argc, argv, commandLine.urls);
}
