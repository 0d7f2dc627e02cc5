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

/// The backlights that can be read, best first: firmware before platform before raw, then by name.
/// A device whose type, maximum or value is missing, empty, negative or no number is left out, as
/// is one whose maximum is 0, and one that a driver makes of an external monitor (each reading
/// would take as long as the monitor does). Main thread or a worker; reads a few small files.
[[nodiscard]] std::vector<BacklightDevice>
listBacklightDevices(const std::string& classFolder = backlightClassFolder);

/// The device's value at the moment (what the hardware says, not what was last asked for), 0 to its
/// maximum; nothing when it cannot be read or is out of range.
[[nodiscard]] std::optional<unsigned int> readBacklight(const BacklightDevice& device);

/// What was last asked for, whoever did, 0 to the maximum; nothing as above.
[[nodiscard]] std::optional<unsigned int> readBacklightSetting(const BacklightDevice& device);

} // namespace noctra
