#include "platform/linux/PosixProcess.h"

#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <pthread.h>
#include <unistd.h>

#include "foundation/ThreadSafety.h"
#include "platform/linux/CrashSignals.h"

namespace noctra {

struct PosixProcess::State {
    sigset_t taken{};
    Mutex mutex;
    std::condition_variable deadlineSet;
    std::function<void(TerminationSignal)> onTermination GUARDED_BY(mutex);
    std::function<void()> beforeEnd GUARDED_BY(mutex);
    std::function<void()> onCrash GUARDED_BY(mutex);
    std::optional<std::chrono::steady_clock::time_point> deadline GUARDED_BY(mutex);
    int statusAtDeadline GUARDED_BY(mutex) = 0;
    std::function<void()> lastResort GUARDED_BY(mutex);
    // Neither thread is ever joined: they wait until the process ends, and touch only this object,
    // which is never destroyed.
    std::thread taker;
    std::thread watchdog;
};

namespace {

constexpr std::chrono::milliseconds lastChance{300};

/// Ends the process by `signal`, so that whoever waits for it sees why it ended.
void endBySignal(int signal) {
    std::signal(signal, SIG_DFL);
    sigset_t only;
    sigemptyset(&only);
    sigaddset(&only, signal);
    pthread_sigmask(SIG_UNBLOCK, &only, nullptr);
    ::raise(signal);
}

/// Standard descriptors that the program was started without would be given to the next files that
/// are opened, and log lines would go there.
void fillStandardDescriptors() {
    for (int descriptor = 0; descriptor <= 2; ++descriptor)
        if (::fcntl(descriptor, F_GETFD) < 0)
            static_cast<void>(::open("/dev/null", O_RDWR)); // takes the lowest that is free
}

} // namespace

PosixProcess& PosixProcess::start() {
    static auto* const process = new PosixProcess;
    return *process;
}

PosixProcess::PosixProcess() : state_(std::make_unique<State>()) {
    fillStandardDescriptors();
    std::signal(SIGPIPE, SIG_IGN);
    sigemptyset(&state_->taken);
    sigaddset(&state_->taken, SIGINT);
    sigaddset(&state_->taken, SIGTERM);
    struct sigaction hangUp {};
    if (::sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN)
        sigaddset(&state_->taken, SIGHUP);
    sigaddset(&state_->taken, crashNotice());
    pthread_sigmask(SIG_BLOCK, &state_->taken, nullptr);
    // Both threads start now: on the way out the system may refuse to make one.
    state_->taker = std::thread([this] { takeSignals(); });
    state_->watchdog = std::thread([this] { watch(); });
    handCrashesTo(state_->taker.native_handle());
}

void PosixProcess::takeSignals() {
    for (;;) {
        int signal = 0;
        if (sigwait(&state_->taken, &signal) != 0)
            continue;
        std::function<void(TerminationSignal)> onTermination;
        std::function<void()> onCrash;
        {
            const MutexLock lock(state_->mutex);
            onTermination = state_->onTermination;
            onCrash = state_->onCrash;
        }
        if (signal == crashNotice() && crashWasHandedOver()) {
            if (onCrash)
                onCrash();
            leaveCrashToSystem();
        } else if (signal == crashNotice() || !onTermination)
            endBySignal(signal);
        else
            onTermination(signal == SIGINT    ? TerminationSignal::interrupt
                          : signal == SIGTERM ? TerminationSignal::terminate
                                              : TerminationSignal::hangUp);
    }
}

void PosixProcess::watch() {
    state_->mutex.lock();
    while (!state_->deadline)
        state_->mutex.wait(state_->deadlineSet);
    const auto deadline = *state_->deadline;
    const int status = state_->statusAtDeadline;
    const std::function<void()> lastResort = std::move(state_->lastResort);
    state_->mutex.unlock();
    std::this_thread::sleep_until(deadline);
    if (lastResort)
        lastResort();
    // A thread that was stuck until now may be about to end the process in good order.
    std::this_thread::sleep_for(lastChance);
    ::_exit(status);
}

std::optional<std::string> PosixProcess::environment(std::string_view name) const {
    const char* value = std::getenv(std::string(name).c_str());
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
}

void PosixProcess::onTerminationSignal(std::function<void(TerminationSignal)> handler) {
    const MutexLock lock(state_->mutex);
    state_->onTermination = std::move(handler);
}

void PosixProcess::endAfter(Seconds delay, int status, std::function<void()> lastResort) {
    const MutexLock lock(state_->mutex);
    if (state_->deadline)
        return;
    state_->deadline = std::chrono::steady_clock::now() +
                       std::chrono::duration_cast<std::chrono::steady_clock::duration>(delay);
    state_->statusAtDeadline = status;
    state_->lastResort = std::move(lastResort);
    state_->deadlineSet.notify_one();
}

void PosixProcess::holdSignalThread(Seconds time) {
    std::this_thread::sleep_for(time);
}

void PosixProcess::beforeEnd(std::function<void()> lastWork) {
    const MutexLock lock(state_->mutex);
    state_->beforeEnd = std::move(lastWork);
}

void PosixProcess::onCrash(std::function<void()> answer) {
    const MutexLock lock(state_->mutex);
    state_->onCrash = std::move(answer);
}

void PosixProcess::endNow(int status) {
    std::function<void()> lastWork;
    {
        const MutexLock lock(state_->mutex);
        lastWork = state_->beforeEnd;
    }
    if (lastWork)
        lastWork();
    ::_exit(status);
}

} // namespace noctra
