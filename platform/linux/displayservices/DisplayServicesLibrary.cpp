#include "platform/linux/displayservices/DisplayServicesLibrary.h"

#include <system_error>
#include <utility>

namespace noctra::display_services {

namespace {

using Clock = std::chrono::steady_clock;

constexpr DisplayServicesLibrary::Status success = 0;
constexpr DisplayServicesLibrary::Status noAnswer = -1;
constexpr DisplayServicesLibrary::Status badArgument = -2;

} // namespace

DisplayServicesLibrary::DisplayServicesLibrary(Worker::Settings settings)
    : settings_(std::move(settings)), ownLevels_(settings_.ownLevels),
      registry_(news_, wake_, ownLevels_,
                {!settings_.deviceFolder.empty(), settings_.backlightFolder}),
      panel_(registry_, ownLevels_) {}

void DisplayServicesLibrary::begin() {
    std::call_once(begun_, [this] {
        try {
            worker_ = std::make_unique<Worker>(registry_, wake_, panel_, ownLevels_, settings_);
        } catch (const std::system_error&) { // nothing can be changed then
            return;
        }
        registry_.lookForBacklight(); // the next question finds the panel's level known
    });
}

void DisplayServicesLibrary::setDisplays(std::span<const AttachedDisplay> displays) {
    const bool hasLeftOvers = ownLevels_.hasLeftOvers();
    registry_.replaceDisplays(displays, Clock::now());
    if (hasLeftOvers)
        begin();
}

DisplayServicesLibrary::Status DisplayServicesLibrary::getBrightness(DisplayId display,
                                                                     float* brightness) {
    if (brightness == nullptr)
        return badArgument;
    begin();
    const auto answer = registry_.brightness(display, Clock::now());
    if (!answer)
        return noAnswer;
    *brightness = *answer;
    return success;
}

DisplayServicesLibrary::Status
DisplayServicesLibrary::setBrightness(DisplayId display, float brightness, bool smoothly) {
    if (!(brightness >= 0.0F && brightness <= 1.0F)) // NaN too
        return badArgument;
    begin();
    return registry_.request(display, brightness, smoothly, Clock::now()) ? success : noAnswer;
}

bool DisplayServicesLibrary::canChangeBrightness(DisplayId display) {
    begin();
    return registry_.canChange(display, Clock::now());
}

DisplayServicesLibrary::Status
DisplayServicesLibrary::enableAmbientLightCompensation(DisplayId display, bool enable) {
    begin();
    return registry_.enableAmbientLight(display, enable, Clock::now()) ? success : noAnswer;
}

bool DisplayServicesLibrary::finish(std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    registry_.beginFinishing(Clock::now());
    // The worker may be busy with a slow monitor.
    panel_.advanceUnlessBusy(limit);
    const bool settled = registry_.awaitSettled(deadline);
    // The process may end before the worker comes to it.
    ownLevels_.save([this] { return registry_.levelsToKeep(); });
    return settled;
}

} // namespace noctra::display_services
