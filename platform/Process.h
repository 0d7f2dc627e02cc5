#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/Clock.h"

namespace noctra {

enum class TerminationSignal {
    interrupt, ///< SIGINT
    terminate, ///< SIGTERM
    hangUp,    ///< the terminal or the session went away
};

/// The process that the program runs in.
class Process {
public:
    virtual ~Process() = default;

    /// The value of an environment variable; nothing when it is not set. Any thread.
    [[nodiscard]] virtual std::optional<std::string> environment(std::string_view name) const = 0;

    /// From now on the signals above are answered with `handler` instead of ending the process. It
    /// runs on a thread of its own that does nothing else, and is expected to end the process;
    /// signals that follow while it runs change nothing. Call once.
    virtual void onTerminationSignal(std::function<void(TerminationSignal)> handler) = 0;

    /// Ends the process with `status` when `delay` has passed, whatever its threads are waiting for
    /// then. Before that it runs `lastResort`, on a thread of its own, for what must not be left
    /// undone even then; that has to be bounded in time by itself. The first call counts. Any
    /// thread.
    virtual void endAfter(Seconds delay, int status, std::function<void()> lastResort) = 0;

    /// Holds up the thread that answers signals; for use in the handler only.
    virtual void holdSignalThread(Seconds time) = 0;

    /// Ends the process at once, without running destructors of static objects. Any thread. Returns
    /// only on the simulated desktop.
    virtual void endNow(int status) = 0;
};

} // namespace noctra
