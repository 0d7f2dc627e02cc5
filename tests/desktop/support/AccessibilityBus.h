#pragma once

#include <memory>
#include <string>

#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

/// The service that brings programs and assistive technology together: a message bus of its own,
/// whose address is known on the session bus.
class AccessibilityBus {
public:
    /// Throws std::runtime_error where it does not come up.
    explicit AccessibilityBus(const std::string& sessionBusAddress);

    [[nodiscard]] const std::string& address() const { return address_; }

private:
    TemporaryFolder folder_; ///< its socket's, and all that it sees of a home
    std::unique_ptr<ChildProcess> launcher_;
    std::string address_;
};

} // namespace noctra::desktop
