#pragma once

#include <functional>
#include <optional>
#include <string>

#include "platform/LoginItem.h"

namespace noctra {

class DesktopEntry;
struct AutostartSession;

/// The program's autostart entry in the user's configuration folder, by which freedesktop.org
/// desktops start programs at login. A system-wide entry counts where the user has none.
///
/// status: `enabled` where this session starts an entry of the program's name, whatever it runs;
/// `requiresApproval` where the entry is switched off, by Hidden or in a desktop's settings;
/// `notFound` where entries can neither be read nor made; `notRegistered` where there is none, or
/// one that the session does not start. Both changes keep what is the user's own in his entry:
/// registering changes only what keeps the session from starting it, and unregistering hides it, or
/// removes it where it is as registering made it. Neither writes where nothing changes.
class XdgLoginItem : public LoginItem {
public:
    using Environment = std::function<std::optional<std::string>(const char* name)>;

    /// `program` is this program's absolute path. `environment` is asked for XDG_CONFIG_HOME, HOME,
    /// XDG_CONFIG_DIRS, XDG_CURRENT_DESKTOP and PATH at each call.
    XdgLoginItem(std::string program, Environment environment);

    [[nodiscard]] Status status() const override;
    std::string registerItem() override;
    std::string unregisterItem() override;

private:
    /// The folder of the user's entry; empty where there cannot be one.
    [[nodiscard]] std::string userFolder() const;
    [[nodiscard]] std::optional<std::string> systemEntry() const;
    [[nodiscard]] Status statusOf(const DesktopEntry& entry) const;
    [[nodiscard]] DesktopEntry newEntry() const;
    [[nodiscard]] AutostartSession session() const;
    /// Empty where the variable is not set.
    [[nodiscard]] std::string variable(const char* name) const;

    const std::string program_;
    const Environment environment_;
};

} // namespace noctra
