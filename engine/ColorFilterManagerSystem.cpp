// What the engine reads of the machine and asks of it besides tables: the backlight and the login
// item.

#include "engine/ColorFilterManager.h"
#include "platform/Backlight.h"
#include "platform/LoginItem.h"

namespace noctra {

namespace {

// Backlights flicker most below about four fifths; anything short of full may flicker a little.
constexpr float severeBelow = 0.8F;
constexpr float mildBelow = 0.99F;
constexpr double softwareMildBelow = 0.99;

} // namespace

void ColorFilterManager::checkLoginStatus() {
    if (services_.loginItem == nullptr)
        return;
    startAtLogin = services_.loginItem->status() == LoginItem::Status::enabled;
}

void ColorFilterManager::toggleStartAtLogin(bool enabled) {
    if (services_.loginItem == nullptr)
        return;
    const std::string error =
        enabled ? services_.loginItem->registerItem() : services_.loginItem->unregisterItem();
    if (!error.empty())
        services_.log.log("Login item error: " + error);
}

bool ColorFilterManager::checkForBuiltInDisplay() const {
    return services_.backlight != nullptr && services_.backlight->hasBuiltInDisplay();
}

ColorFilterManager::BacklightReading ColorFilterManager::readHardwareBrightness() const {
    if (services_.backlight != nullptr)
        if (const std::optional<float> level = services_.backlight->level())
            return {*level, true};
    return {};
}

void ColorFilterManager::pollBacklight() {
    const BacklightReading reading = readHardwareBrightness();
    if (hardwareBrightness_ != reading.level)
        hardwareBrightness_ = reading.level;
    hardwareBrightnessAvailable_ = reading.available;
}

ColorFilterManager::FlickerWarningLevel ColorFilterManager::flickerWarningLevel() const {
    if (hasBuiltInDisplay && hardwareBrightnessAvailable) {
        if (hardwareBrightness < severeBelow)
            return FlickerWarningLevel::severe;
        return hardwareBrightness < mildBelow ? FlickerWarningLevel::mild
                                              : FlickerWarningLevel::none;
    }
    return brightness < softwareMildBelow ? FlickerWarningLevel::mild : FlickerWarningLevel::none;
}

} // namespace noctra
