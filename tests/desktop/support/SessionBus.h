#pragma once

#include <string>

#include "tests/desktop/support/MessageBus.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

/// A session message bus on which nobody else is.
class SessionBus {
public:
    /// Throws std::runtime_error where the bus does not come up.
    SessionBus();

    /// As in the DBUS_SESSION_BUS_ADDRESS variable.
    [[nodiscard]] const std::string& address() const { return bus_.address; }

private:
    TemporaryFolder folder_;
    MessageBus bus_;
};

} // namespace noctra::desktop
