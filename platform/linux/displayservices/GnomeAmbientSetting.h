#pragma once

#include <memory>

#include "platform/linux/displayservices/AmbientSetting.h"

namespace noctra::display_services {

/// The setting of GNOME's power plug-in and of the desktops that keep its schema, reached through
/// GLib's libraries, which are loaded when it is first used and may be missing.
class GnomeAmbientSetting : public AmbientSetting {
public:
    GnomeAmbientSetting();
    ~GnomeAmbientSetting() override;

    std::optional<bool> read() override;
    bool write(bool on) override;

private:
    struct GLib;
    class Settings;

    std::unique_ptr<GLib> glib_; // null until it is first used
};

} // namespace noctra::display_services
