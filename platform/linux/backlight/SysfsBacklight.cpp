#include "platform/linux/backlight/SysfsBacklight.h"

#include <utility>

namespace noctra {

SysfsBacklight::SysfsBacklight(std::string classFolder) : classFolder_(std::move(classFolder)) {}

std::optional<float> SysfsBacklight::level() {
    if (const auto level = read())
        return level;
    lookAgain();
    for (const BacklightDevice& device : listBacklightDevices(classFolder_)) {
        setting_ = NumberFile(device.folder + "/brightness");
        actual_ = NumberFile(device.folder + "/actual_brightness");
        maximum_ = device.maximum;
        if (const auto level = read())
            return level;
    }
    lookAgain();
    return std::nullopt;
}

void SysfsBacklight::lookAgain() {
    setting_ = NumberFile();
    actual_ = NumberFile();
    maximum_ = 0;
    sameScale_ = false;
}

std::optional<float> SysfsBacklight::read() {
    if (maximum_ == 0)
        return std::nullopt;
    const BacklightReading reading = backlightReading(setting_.read(), actual_.read(), maximum_);
    if (!reading.setting)
        return std::nullopt;
    unsigned int value = *reading.setting;
    // actual_brightness is 0 while the panel is dark, whatever it is set to.
    if (reading.actual && *reading.actual > 0 && *reading.actual <= maximum_) {
        const unsigned int actual = *reading.actual;
        // Drivers round the setting to the hardware's own steps.
        const unsigned int apart = actual > value ? actual - value : value - actual;
        sameScale_ = sameScale_ || apart <= value / 50;
        if (sameScale_)
            value = actual;
    }
    return static_cast<float>(static_cast<double>(value) / maximum_);
}

} // namespace noctra
