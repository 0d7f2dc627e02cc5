#pragma once

#include <optional>
#include <string>

#include "platform/Backlight.h"
#include "platform/linux/backlight/BacklightDevices.h"
#include "platform/linux/backlight/NumberFile.h"

namespace noctra {

/// The level of the kernel's best backlight: what the hardware says, once that has been seen to
/// agree with the setting, and as long as it makes sense; else the setting. A reading costs two
/// system calls as long as the device answers, and a failed look at the class folder where the
/// machine has no backlight.
class SysfsBacklight : public Backlight {
public:
    explicit SysfsBacklight(std::string classFolder = backlightClassFolder);

    [[nodiscard]] std::optional<float> level() override;

    /// Makes the next reading choose its device anew: a better one may have come.
    void lookAgain();

private:
    [[nodiscard]] std::optional<float> read();

    const std::string classFolder_;
    // Of the chosen device:
    NumberFile setting_;
    NumberFile actual_;
    unsigned int maximum_ = 0; ///< 0: none is chosen
    bool sameScale_ = false;   ///< setting and hardware have agreed
};

} // namespace noctra
