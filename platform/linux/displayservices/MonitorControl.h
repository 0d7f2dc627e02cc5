#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/DisplayIdentity.h"
#include "platform/linux/displayservices/MonitorBrightness.h"

namespace noctra::display_services {

/// The brightness control of external monitors over their cables. Worker thread; every operation
/// talks to hardware and may take seconds.
class MonitorControl {
public:
    virtual ~MonitorControl() = default;

    /// Looks for monitors that can be talked to, and gives their EDIDs. Below, a monitor is its
    /// place in the latest list.
    virtual std::vector<Edid> detect() = 0;
    /// Nothing when the monitor does not answer, or not with a brightness.
    virtual std::optional<MonitorValue> read(std::size_t monitor) = 0;
    /// False when the monitor did not take the command. True does not mean that it obeyed.
    virtual bool write(std::size_t monitor, std::uint16_t raw) = 0;
};

/// DDC/CI on the I2C buses of `deviceFolder` ("/dev"). Null when there is no such bus or no library
/// to use it. Worker thread; takes some milliseconds and keeps the process's standard output clean.
std::unique_ptr<MonitorControl> createMonitorControl(const std::string& deviceFolder);

} // namespace noctra::display_services
