#pragma once

#include <optional>

namespace noctra::display_services {

/// The desktop's setting that lets a light sensor change the panel's brightness. Worker thread; may
/// load libraries and talk to the desktop's settings service.
class AmbientSetting {
public:
    virtual ~AmbientSetting() = default;

    /// Nothing where the desktop has no such setting.
    virtual std::optional<bool> read() = 0;
    /// False when the setting could not be changed.
    virtual bool write(bool on) = 0;
};

} // namespace noctra::display_services
