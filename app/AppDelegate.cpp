#include "app/AppDelegate.h"

#include "app/BundledFonts.h"
#include "engine/ColorFilterManager.h"
#include "platform/Application.h"
#include "platform/DisplayChanges.h"
#include "platform/Preferences.h"
#include "platform/UrlChannel.h"

namespace noctra {

namespace {

// A display server that does not answer must not keep the process: it ends after this long, which
// leaves a margin below the 2 s that are promised.
constexpr Seconds exitDeadline{1.6};
// How long the main thread may take to end the program by itself after a hang-up.
constexpr Seconds hangUpPatience{0.7};

constexpr const char* terminatingLine = "App terminating - restoring gamma";
constexpr const char* firstRunKey = "hasShownFirstRunPopover";

} // namespace

AppDelegate::AppDelegate(const AppServices& services)
    : services_(services), firstRun_(services.mainQueue, [this] { showPopoverIfThereIsAButton(); }),
      menuDetachment_(services.mainQueue, [this] { detachMenu(); }),
      reopening_(services.mainQueue, [this] { showPopoverIfThereIsAButton(); }) {}

void AppDelegate::applicationDidFinishLaunching() {
    engine();
    services_.application.becomeAgent();
    registerFonts(services_.resources, services_.fonts);
    setupSignalHandlers();
    services_.application.onWillTerminate([this] { applicationWillTerminate(); });
    setupStatusItem();
    setupPopover();
    subscribe();
    const std::string unreachable = services_.urls.setHandlers({
        .open = [this](const std::string& url) { handleAutomationURL(url); },
        .activate = [this] { runAutomationCommand(AutomationCommand::show); },
    });
    if (!unreachable.empty())
        services_.log.log("Automation commands from other programs unavailable: " + unreachable);
    services_.log.log("App launched successfully");
    if (services_.process.environment(iconTestVariable) == "1")
        runSelfTest();
    else
        openOnFirstRun();
}

void AppDelegate::subscribe() {
    cancellables_.push_back(engine().isEnabled.subscribe(
        services_.mainQueue, [this](bool enabled) { updateMenuBarIcon(enabled); }));
    cancellables_.push_back(services_.displayChanges.subscribe(
        {.woke = {},
         .screenParametersChanged = [this] { handleScreenParameterChange(); },
         .reconfigured = {},
         .brightnessControlsChanged = {}}));
}

void AppDelegate::runSelfTest() {
    selfTest_ = std::make_unique<MenuBarIconSelfTest>(MenuBarIconSelfTest::Parts{
        .log = services_.log,
        .mainQueue = services_.mainQueue,
        .wallClock = services_.wallClock,
        .files = services_.files,
        .updateMenuBarIcon = [this](bool enabled) { updateMenuBarIcon(enabled); },
        .statusIconPng = [this]() -> std::optional<std::string> {
            const StatusImage* const image = button() ? button()->image() : nullptr;
            return image ? services_.images.png(*image) : std::nullopt;
        },
        .terminate = [this] { services_.application.terminate(0); },
    });
    selfTest_->run();
}

void AppDelegate::openOnFirstRun() {
    if (services_.preferences.boolForKey(firstRunKey))
        return;
    // Stored before the panel is shown, so that a failure to show it does not come back at every
    // start.
    services_.preferences.setBool(firstRunKey, true);
    services_.preferences.flush();
    firstRun_.schedule(Seconds(0.0));
}

void AppDelegate::setupSignalHandlers() {
    services_.process.onTerminationSignal(
        [this](TerminationSignal signal) { answerSignal(signal); });
}

void AppDelegate::answerSignal(TerminationSignal signal) {
    endWhateverHangs(0);
    if (signal == TerminationSignal::hangUp) {
        // The end of the session is a normal termination, if the main thread gets to it.
        services_.application.terminate(0);
        services_.process.holdSignalThread(hangUpPatience);
        sayThatItTerminates();
    } else {
        services_.log.log(signal == TerminationSignal::interrupt
                              ? "SIGINT received - restoring gamma"
                              : "SIGTERM received - restoring gamma");
    }
    restoreDisplays();
    services_.process.endNow(0);
}

void AppDelegate::applicationWillTerminate() {
    endWhateverHangs(0); // unless an earlier deadline has its own status
    sayThatItTerminates();
    restoreDisplays();
    services_.urls.removeHandlers();
}

/// Once, though after a hang-up two threads may come to it.
void AppDelegate::sayThatItTerminates() {
    if (!saidThatItTerminates_.exchange(true))
        services_.log.log(terminatingLine);
}

void AppDelegate::quitApp() {
    endWhateverHangs(0);
    restoreDisplays();
    services_.application.terminate(0);
}

void AppDelegate::restoreDisplays() {
    // Sealed first: a fader that is being dragged, or a refresh under way, must not write after
    // this.
    engine().sealForExit();
    engine().removeFilter();
    services_.restoreBrightness();
    services_.repairTables();
}

/// From now on the process ends in bounded time, and not before the brightness is back, even where
/// the displays' tables cannot be written because their server has stopped answering.
void AppDelegate::endWhateverHangs(int status) {
    services_.process.endAfter(exitDeadline, status, services_.restoreBrightness);
}

void AppDelegate::displayServerLost(const std::string& reason) {
    endWhateverHangs(1);
    services_.log.log("ERROR: The display server is gone: " + reason);
    services_.application.terminate(1);
}

void AppDelegate::displayServerGone() {
    endWhateverHangs(1);
    services_.log.log("ERROR: The display server is gone: the connection of its windows broke");
    sayThatItTerminates();
    restoreDisplays();
    services_.process.endNow(1);
}

void AppDelegate::handleAutomationURL(const std::string& url) {
    const auto command = commandInUrl(url);
    if (!command) {
        services_.log.log("Ignored invalid automation URL");
        return;
    }
    services_.log.log("Automation URL received: " + url);
    runAutomationCommand(*command);
}

void AppDelegate::runAutomationCommand(AutomationCommand command) {
    ColorFilterManager& filter = engine();
    switch (command) {
    case AutomationCommand::on:
        filter.isEnabled = true;
        break;
    case AutomationCommand::off:
        filter.isEnabled = false;
        break;
    case AutomationCommand::toggle:
        filter.isEnabled = !filter.isEnabled;
        break;
    case AutomationCommand::show:
        if (!popoverIsShown())
            showPopoverIfThereIsAButton();
        break;
    }
    services_.log.log("Automation command applied: " + std::string(rawValue(command)));
}

} // namespace noctra
