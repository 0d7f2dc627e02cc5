#pragma once

#include <optional>
#include <string>

#include "platform/Backlight.h"
#include "platform/linux/backlight/BacklightDevices.h"
#include "platform/linux/backlight/NumberFile.h"

namespace noctra {

/// The level of the kernel's best backlight. A reading costs one system call as long as the device
/// answers, and a failed look at the class folder where the machine has no backlight.
class SysfsBacklight : public Backlight {
public:
    explicit SysfsBacklight(std::string classFolder = backlightClassFolder);

    [[nodiscard]] std::optional<float> level() override;

    /// Makes the next reading choose its device anew: a better one may have come.
    void lookAgain();

private:
    [[nodiscard]] std::optional<float> read() const;

    const std::string classFolder_;
    NumberFile value_;         ///< of the chosen device
    unsigned int maximum_ = 0; ///< of the chosen device; 0: none is chosen
};

} // namespace noctra
