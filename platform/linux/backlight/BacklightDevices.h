#pragma once

#include <optional>
#include <string>
#include <vector>

namespace noctra {

inline constexpr const char* backlightClassFolder = "/sys/class/backlight";

/// A backlight of the kernel's that can be read.
struct BacklightDevice {
    std::string name;         ///< of its folder under the class folder, e.g. "intel_backlight"
    std::string folder;       ///< its path
    unsigned int maximum = 0; ///< the value that is full brightness, at least 1
};

/// What a backlight says of itself.
struct BacklightReading {
    /// The level that it was last set to, whoever did that; where the driver does not tell, what
    /// the hardware says. 0 to the maximum.
    std::optional<unsigned int> setting;
    /// What the hardware says, where it says anything. Some drivers count on another scale here
    /// than the setting's, and a panel that is dark says 0.
    std::optional<unsigned int> actual;
};

/// The backlights that can be read, best first: firmware before platform before raw, then by name.
/// A device whose type, maximum or setting is missing, empty, negative or no number is left out, as
/// is one whose maximum is 0, and one that a driver makes of an external monitor (each reading
/// would take as long as the monitor does). Main thread or a worker; reads a few small files.
[[nodiscard]] std::vector<BacklightDevice>
listBacklightDevices(const std::string& classFolder = backlightClassFolder);

/// What `device` says at the moment; `setting` is missing when it cannot be read.
[[nodiscard]] BacklightReading readBacklight(const BacklightDevice& device);

/// What a setting and the hardware's own value, as their files say them, amount to.
[[nodiscard]] BacklightReading backlightReading(std::optional<unsigned int> setting,
                                                std::optional<unsigned int> actual,
                                                unsigned int maximum);

} // namespace noctra
