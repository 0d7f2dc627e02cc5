#pragma once

#include <memory>
#include <string>

#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

/// A session message bus on which nobody else is.
class SessionBus {
public:
    /// Throws std::runtime_error where the bus does not come up.
    SessionBus();

    /// As in the DBUS_SESSION_BUS_ADDRESS variable.
    [[nodiscard]] const std::string& address() const { return address_; }

private:
    TemporaryFolder folder_;
    std::unique_ptr<ChildProcess> process_;
    std::string address_;
};

} // namespace noctra::desktop
