#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/LoginItem.h"

namespace noctra {

class DesktopEntry;

/// The program's autostart entry in the user's configuration folder, by which freedesktop.org
/// desktops start programs at login. A system-wide entry counts where the user has none.
///
/// status: `enabled` where an entry of the program's name runs anything; `requiresApproval` where the entry is
/// switched off, by Hidden or in the desktop's settings; `notFound` where entries can neither be
/// read nor made. Registering keeps what the user changed in his entry, also its command as long as
/// that is there, and writes nothing where nothing changes.
class XdgLoginItem : public LoginItem {
public:
    using Environment = std::function<std::optional<std::string>(const char* name)>;

    /// `program` is this program's absolute path. `environment` is asked for XDG_CONFIG_HOME, HOME,
    /// XDG_CONFIG_DIRS and PATH at each call.
    XdgLoginItem(std::string program, Environment environment);

    [[nodiscard]] Status status() const override;
    std::string registerItem() override;
    std::string unregisterItem() override;

private:
    /// The folder of the user's entry; empty where there cannot be one.
    [[nodiscard]] std::string userFolder() const;
    [[nodiscard]] std::optional<std::string> systemEntry() const;
    [[nodiscard]] Status statusOf(const DesktopEntry& entry) const;
    /// Whether what the entry is to run is there.
    [[nodiscard]] bool canRun(const DesktopEntry& entry) const;
    /// Empty where the variable is not set.
    [[nodiscard]] std::string variable(const char* name) const;

    const std::string program_;
    const Environment environment_;
};

} // namespace noctra
