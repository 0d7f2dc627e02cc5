#pragma once

#include <cstdint>
#include <string>

#include "tests/desktop/support/XConnection.h"

namespace noctra::desktop {

/// A desktop's settings manager, as programs find it, that announces one integer.
class XSettingsManager {
public:
    XSettingsManager(const std::string& display, const std::string& setting, std::int32_t value);

private:
    XConnection connection_; ///< what it owns goes with it
};

} // namespace noctra::desktop
