#pragma once

#include <csignal>
#include <memory>
#include <string>

#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

/// A session message bus on which nobody else is, at one address for the object's life.
class SessionBus {
public:
    /// Starts the bus. Throws std::runtime_error where it does not come up.
    SessionBus();

    /// As in the DBUS_SESSION_BUS_ADDRESS variable; a user's bus has no GUID in it either.
    [[nodiscard]] std::string address() const;

    /// The bus goes away without a word to its clients. They are not ended.
    void kill();
    /// Starts a new bus at the same address; kills the old one first where there is one. Throws as
    /// the constructor does.
    void restart();
    /// The bus takes connections and answers nobody until it is resumed.
    void pause() { process_->signal(SIGSTOP); }
    void resume() { process_->signal(SIGCONT); }

private:
    TemporaryFolder folder_;
    std::unique_ptr<ChildProcess> process_;
};

} // namespace noctra::desktop
