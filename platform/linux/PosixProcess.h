#pragma once

#include <functional>
#include <memory>

#include "platform/Process.h"

namespace noctra {

/// The real process. Make it first thing in main, before any other thread exists: the signals that
/// end the program are blocked in every thread from then on and taken by one thread of this object.
///
/// SIGHUP counts as a signal that ends the program too, unless it was started with SIGHUP ignored.
/// Until `onTerminationSignal` a signal ends the process as it would have without this object.
/// SIGPIPE is ignored: a reader of the log that goes away must not take the program with it. There
/// can be one object, and it lives until the process ends.
class PosixProcess : public Process {
public:
    static PosixProcess& start();

    PosixProcess(const PosixProcess&) = delete;
    PosixProcess& operator=(const PosixProcess&) = delete;

    /// Runs `lastWork` in `endNow`, on the thread that calls it; it has to be quick.
    void beforeEnd(std::function<void()> lastWork);

    /// Runs `answer` on the signal thread when another thread has crashed (CrashSignals.h); that
    /// one waits meanwhile. Where `answer` returns, the process ends by the crash.
    void onCrash(std::function<void()> answer);

    [[nodiscard]] std::optional<std::string> environment(std::string_view name) const override;
    void onTerminationSignal(std::function<void(TerminationSignal)> handler) override;
    void endAfter(Seconds delay, int status, std::function<void()> lastResort) override;
    void holdSignalThread(Seconds time) override;
    [[noreturn]] void endNow(int status) override;

private:
    PosixProcess();
    ~PosixProcess() override = default;
    void takeSignals();
    void watch();

    struct State;
    std::unique_ptr<State> state_;
};

} // namespace noctra
