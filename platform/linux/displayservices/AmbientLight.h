#pragma once

#include <memory>
#include <string>

#include "platform/linux/displayservices/AmbientSetting.h"

namespace noctra::display_services {

/// Switches the desktop's automatic brightness off and puts it back. What was off already stays
/// off. A marker file remembers that it is off through us, so that also a run after one that was
/// killed puts it back. One thread.
class AmbientLight {
public:
    /// `marker` is the file's path; its folder is made when it is needed. Empty: there is no memory
    /// from one run to the next.
    AmbientLight(std::string marker, std::unique_ptr<AmbientSetting> setting);

    void switchOff();
    void putBack();

private:
    [[nodiscard]] bool isOffThroughUs() const;

    const std::string marker_;
    const std::unique_ptr<AmbientSetting> setting_;
    bool switchedOff_ = false; // by this run
};

} // namespace noctra::display_services
