#pragma once

#include <functional>

namespace noctra {

/// The desktop's view of the running program. Main thread, except for `terminate`.
class Application {
public:
    virtual ~Application() = default;

    /// Declares the program an agent: no main window, no entry among the running applications.
    virtual void becomeAgent() = 0;

    /// Gives the program's windows the keyboard's focus, whatever other program has it.
    virtual void activate() = 0;

    /// Asks for normal termination: once the current work is done, the will-terminate handler runs
    /// and the process ends with `status`. Returns at once. Any thread.
    virtual void terminate(int status) = 0;

    /// Runs `handler` once on every normal termination (`terminate`, log-out, the terminal that the
    /// program was started from hanging up), before anything is torn down.
    virtual void onWillTerminate(std::function<void()> handler) = 0;
};

} // namespace noctra
