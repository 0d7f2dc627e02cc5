// Built in the place of the DDC/CI sources where libddcutil's headers are missing.

#include "platform/linux/displayservices/MonitorControl.h"

namespace noctra::display_services {

std::unique_ptr<MonitorControl> createMonitorControl(const std::string& /*deviceFolder*/) {
    return nullptr;
}

} // namespace noctra::display_services
