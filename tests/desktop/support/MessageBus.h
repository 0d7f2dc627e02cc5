#pragma once

#include <memory>
#include <string>

#include "tests/desktop/support/ChildProcess.h"

namespace noctra::desktop {

/// A running dbus-daemon.
struct MessageBus {
    std::unique_ptr<ChildProcess> process;
    std::string address;
};

/// Starts one with the configuration that is written to `file`; returns once clients can connect.
/// Throws std::runtime_error where it does not come up.
[[nodiscard]] MessageBus startMessageBus(const std::string& file, const std::string& configuration);

} // namespace noctra::desktop
