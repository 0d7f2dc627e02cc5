#pragma once

#include <csignal>
#include <memory>
#include <string>

#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

/// A system message bus on which nobody else is, at one address for the object's life. It runs only
/// once it has been started.
class SystemBus {
public:
    /// As in the DBUS_SYSTEM_BUS_ADDRESS variable.
    [[nodiscard]] std::string address() const;

    /// Starts the bus, also again. `rules` are put into its configuration, e.g. a limit. Throws
    /// std::runtime_error where it does not come up.
    void start(const std::string& rules = {});
    /// The bus goes away without a word to its clients. They are not ended.
    void kill();
    /// The bus takes connections and answers nobody until it is resumed.
    void pause() { process_->signal(SIGSTOP); }
    void resume() { process_->signal(SIGCONT); }

    /// Whether a client listens to PrepareForSleep: from then on it misses none.
    [[nodiscard]] bool hasSleepListener() const;

private:
    TemporaryFolder folder_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace noctra::desktop
