#include "app/linux/LinuxPanel.h"

#include <dlfcn.h>

#include "app/DebugLogger.h"
#include "app/LibraryLocation.h"
#include "app/linux/BesideTheProgram.h"
#include "engine/ColorFilterManager.h"
#include "platform/linux/Symbol.h"
#include "platform/linux/tray/PopoverWindow.h"
#include "pwmsafe/PwmSafeManager.h"

namespace noctra {

namespace {

std::vector<std::filesystem::path> resourceFolders() {
    const auto candidates = besideTheProgram(resourcesFromProgram, resourcesFolder);
    return {candidates.begin(), candidates.end()};
}

} // namespace

LinuxPanel::LinuxPanel(Log& log, MainQueue& mainQueue, const SteadyClock& steadyClock,
                       Application& application)
    : log_(log), mainQueue_(mainQueue), steadyClock_(steadyClock), application_(application),
      resources_(resourceFolders()) {}

void LinuxPanel::show(const PanelPlace& place) {
    if (!window_)
        open();
    if (window_)
        window_->show(place);
}

void LinuxPanel::close() {
    if (window_)
        window_->close();
}

void LinuxPanel::open() {
    MakePanelWindow* const make = load();
    if (make == nullptr)
        return;
    services_ = std::make_unique<PanelServices>(PanelServices{
        .log = log_,
        .fullLog = [] { return DebugLogger::shared().getFullLog(); },
        .mainQueue = mainQueue_,
        .steadyClock = steadyClock_,
        .filterManager = ColorFilterManager::shared(),
        .pwmSafeManager = PwmSafeManager::shared(),
        .application = application_,
        .clipboard = clipboard_,
        .cursor = cursor_,
        .numbers = numbers_,
        .motion = settings_,
        .resources = resources_,
        .fonts = fonts_,
        .windowMade = [](std::uintptr_t window) { announcePopover(window); },
    });
    window_.reset(make(*services_));
    window_->onCloseAsked([this] {
        if (closeAsked_)
            closeAsked_();
    });
}

MakePanelWindow* LinuxPanel::load() {
    std::string problem;
    for (const std::string& candidate : besideTheProgram(panelFromProgram, panelFile)) {
        if (void* library = ::dlopen(candidate.c_str(), RTLD_NOW | RTLD_LOCAL)) {
            if (MakePanelWindow* make = nullptr; findSymbol(library, makePanelWindowSymbol, make))
                return make;
        }
        const char* error = ::dlerror();
        problem += (problem.empty() ? "" : "; ") +
                   std::string(error != nullptr ? error : "it exports no panel");
    }
    log_.log("ERROR: The panel cannot be shown: " + problem);
    return nullptr;
}

} // namespace noctra
