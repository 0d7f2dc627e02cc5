#include "platform/linux/backlight/SysfsBacklight.h"

#include <utility>

namespace noctra {

SysfsBacklight::SysfsBacklight(std::string classFolder) : classFolder_(std::move(classFolder)) {}

std::optional<float> SysfsBacklight::level() {
    if (const auto level = read())
        return level;
    lookAgain();
    for (const BacklightDevice& device : listBacklightDevices(classFolder_)) {
        value_ = NumberFile(device.folder + "/actual_brightness");
        maximum_ = device.maximum;
        if (const auto level = read())
            return level;
    }
    lookAgain();
    return std::nullopt;
}

void SysfsBacklight::lookAgain() {
    value_ = NumberFile();
    maximum_ = 0;
}

std::optional<float> SysfsBacklight::read() const {
    if (maximum_ == 0)
        return std::nullopt;
    const auto value = value_.read();
    if (!value || *value > maximum_)
        return std::nullopt;
    return static_cast<float>(static_cast<double>(*value) / maximum_);
}

} // namespace noctra
