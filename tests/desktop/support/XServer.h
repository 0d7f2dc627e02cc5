#pragma once

#include <memory>
#include <string>

#include "tests/desktop/support/ChildProcess.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

/// A real X server without a monitor, on a display number that was free, with every output in its
/// place: Xorg with the dummy driver.
class XServer {
public:
    /// Starts the server with the first `outputs` outputs lit, side by side. Throws
    /// std::runtime_error, with the end of the server's log, where it does not come up.
    explicit XServer(int outputs);

    /// As in the DISPLAY variable.
    [[nodiscard]] const std::string& display() const { return display_; }
    [[nodiscard]] bool isRunning() const { return process_->isRunning(); }

    /// The server answers nobody until it is resumed.
    void pause() const;
    void resume() const;
    /// The server goes away without a word to its clients.
    void killAtOnce() const;

private:
    void awaitDisplay(int descriptor);

    TemporaryFolder folder_;
    std::unique_ptr<ChildProcess> process_;
    std::string display_;
};

} // namespace noctra::desktop
