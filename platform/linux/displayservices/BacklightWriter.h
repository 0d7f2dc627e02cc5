#pragma once

#include <chrono>
#include <string>

#include "platform/linux/backlight/BacklightDevices.h"
#include "platform/linux/systembus/BoundedSystemBus.h"

namespace noctra::display_services {

/// Writes a backlight's value: through logind, which lets the session's user do that, else into the
/// device's file, where the system has made that writable. Any thread, one at a time.
class BacklightWriter {
public:
    static constexpr std::chrono::milliseconds usualLimit{500};

    /// Where the bus hangs it takes up to `limit`, and not again as long as the file works. False
    /// when neither way works.
    bool write(const BacklightDevice& device, unsigned int value,
               std::chrono::milliseconds limit = usualLimit);

private:
    bool writeThroughLogind(const BacklightDevice& device, unsigned int value,
                            std::chrono::milliseconds limit);

    BoundedSystemBus bus_;
    bool fileFirst_ = false; // it worked where logind did not
};

} // namespace noctra::display_services
