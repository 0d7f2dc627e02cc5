#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "platform/MotionPreference.h"

namespace noctra {

/// The integer called `name` in the bytes of a settings manager's property, which come from another
/// program and may be anything; nothing where it is not there or the bytes end too early. The
/// format is that of the XSETTINGS protocol, version 0.5.
[[nodiscard]] std::optional<std::int32_t> xsettingsInteger(std::span<const std::byte> property,
                                                           std::string_view name);

/// The value of Xft.dpi among the X server's resources, one in a line; nothing where there is none.
[[nodiscard]] std::optional<int> dpiInResources(std::string_view resources);

/// The scale that the settings manager announces to GTK's programs alone, 1 to 4, as Xfce does; 1
/// where the letters' size (Xft.dpi), by which Qt goes, tells a scale already.
[[nodiscard]] int unannouncedScale();

/// What the desktop's settings manager announces on the X server that DISPLAY names; GNOME, Xfce,
/// MATE, Cinnamon and Plasma run one.
class XSettings : public MotionPreference {
public:
    /// Asks anew each time, which takes a few round trips to the X server.
    [[nodiscard]] bool reducesMotion() const override;
};

} // namespace noctra
