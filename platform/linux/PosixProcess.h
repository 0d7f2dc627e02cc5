#pragma once

#include <functional>
#include <memory>

#include "platform/Process.h"

namespace noctra {

/// The real process. Make it first thing in main, before any other thread exists: the signals that
/// end the program are blocked in every thread from then on and taken by one thread of this object.
///
/// Until `onTerminationSignal` a signal ends the process as it would have without this object.
/// SIGPIPE is ignored: a reader of the log that goes away must not take the program with it. There
/// can be one object, and it lives until the process ends.
class PosixProcess : public Process {
public:
    static PosixProcess& start();

    PosixProcess(const PosixProcess&) = delete;
    PosixProcess& operator=(const PosixProcess&) = delete;

    /// SIGHUP (the terminal or the session goes away) calls `handler` on the signal thread, each
    /// time, instead of ending the process; not when the program was started with SIGHUP ignored.
    void onHangUp(std::function<void()> handler);

    [[nodiscard]] std::optional<std::string> environment(std::string_view name) const override;
    void onTerminationSignal(std::function<void(TerminationSignal)> handler) override;
    void endAfter(Seconds delay, int status) override;
    [[noreturn]] void endNow(int status) override;

private:
    PosixProcess();
    ~PosixProcess() override = default;
    void takeSignals();

    struct State;
    std::unique_ptr<State> state_;
};

} // namespace noctra
