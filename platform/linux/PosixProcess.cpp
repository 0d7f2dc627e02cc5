#include "platform/linux/PosixProcess.h"

#include <csignal>
#include <cstdlib>
#include <mutex>
#include <thread>
#include <utility>

#include <pthread.h>
#include <unistd.h>

namespace noctra {

struct PosixProcess::State {
    sigset_t taken{};
    std::mutex mutex;
    // Guarded by mutex:
    std::function<void(TerminationSignal)> onTermination;
    std::function<void()> onHangUp;
    // Neither thread is ever joined: they wait until the process ends, and touch only this object,
    // which is never destroyed.
    std::thread taker;
    std::thread watchdog;
};

namespace {

/// Ends the process by `signal`, so that whoever waits for it sees why it ended.
void endBySignal(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    ::raise(signal);
}

} // namespace

PosixProcess& PosixProcess::start() {
    static auto* const process = new PosixProcess;
    return *process;
}

PosixProcess::PosixProcess() : state_(std::make_unique<State>()) {
    std::signal(SIGPIPE, SIG_IGN);
    sigemptyset(&state_->taken);
    sigaddset(&state_->taken, SIGINT);
    sigaddset(&state_->taken, SIGTERM);
    struct sigaction hangUp {};
    if (::sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN)
        sigaddset(&state_->taken, SIGHUP);
    pthread_sigmask(SIG_BLOCK, &state_->taken, nullptr);
    state_->taker = std::thread([this] { takeSignals(); });
}

void PosixProcess::takeSignals() {
    for (;;) {
        int signal = 0;
        if (sigwait(&state_->taken, &signal) != 0)
            continue;
        std::function<void(TerminationSignal)> onTermination;
        std::function<void()> onHangUp;
        {
            const std::lock_guard lock(state_->mutex);
            onTermination = state_->onTermination;
            onHangUp = state_->onHangUp;
        }
        if (signal == SIGHUP && onHangUp)
            onHangUp();
        else if (signal != SIGHUP && onTermination)
            onTermination(signal == SIGINT ? TerminationSignal::interrupt
                                           : TerminationSignal::terminate);
        else
            endBySignal(signal);
    }
}

void PosixProcess::onHangUp(std::function<void()> handler) {
    const std::lock_guard lock(state_->mutex);
    state_->onHangUp = std::move(handler);
}

std::optional<std::string> PosixProcess::environment(std::string_view name) const {
    const char* value = std::getenv(std::string(name).c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

void PosixProcess::onTerminationSignal(std::function<void(TerminationSignal)> handler) {
    const std::lock_guard lock(state_->mutex);
    state_->onTermination = std::move(handler);
}

void PosixProcess::endAfter(Seconds delay, int status) {
    const std::lock_guard lock(state_->mutex);
    if (state_->watchdog.joinable())
        return;
    state_->watchdog = std::thread([delay, status] {
        std::this_thread::sleep_for(delay);
        ::_exit(status);
    });
}

void PosixProcess::endNow(int status) {
    ::_exit(status);
}

} // namespace noctra
