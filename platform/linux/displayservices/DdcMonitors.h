#pragma once

#include "platform/linux/displayservices/LibDdcutil.h"
#include "platform/linux/displayservices/MonitorControl.h"

namespace noctra::display_services {

/// Monitors over DDC/CI. A monitor is open only while a command lasts, because an open one is
/// locked for other programs.
class DdcMonitors : public MonitorControl {
public:
    explicit DdcMonitors(const LibDdcutil& library) : library_(library) {}

    std::vector<Edid> detect() override;
    std::optional<MonitorValue> read(std::size_t monitor) override;
    bool write(std::size_t monitor, std::uint16_t raw) override;

private:
    const LibDdcutil library_;
    std::vector<DDCA_Display_Ref> monitors_;
    bool detected_ = false;
};

} // namespace noctra::display_services
