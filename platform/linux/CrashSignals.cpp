#include "platform/linux/CrashSignals.h"

#include <array>
#include <atomic>
#include <csignal>
#include <cstddef>
#include <ctime>

namespace noctra {

namespace {

constexpr std::array crashes{SIGSEGV, SIGBUS, SIGABRT};
constexpr timespec betweenLooks{0, 10'000'000};
constexpr int mostLooks = 500; // 5 s in all: the way out may have to wait for a slow monitor

// Without destructors: a thread may crash while the process is ending.
std::array<struct sigaction, crashes.size()> before;
pthread_t theAnswerer;
std::atomic<bool> handedOver = false;
std::atomic<bool> leftToSystem = false;

/// Only what POSIX lets a handler do.
void handOver(int signal, siginfo_t* info, void* /*context*/) {
    handedOver = true;
    if (pthread_equal(pthread_self(), theAnswerer) == 0 &&
        pthread_kill(theAnswerer, crashNotice()) == 0)
        for (int look = 0; look < mostLooks && !leftToSystem; ++look)
            nanosleep(&betweenLooks, nullptr);
    for (std::size_t i = 0; i < crashes.size(); ++i)
        if (crashes[i] == signal)
            sigaction(signal, &before[i], nullptr);
    if (info->si_code <= 0) // it was sent; else the instruction that failed is about to fail again
        pthread_kill(pthread_self(), signal);
}

} // namespace

int crashNotice() {
    return SIGRTMIN;
}

bool crashWasHandedOver() {
    return handedOver;
}

void handCrashesTo(pthread_t answerer) {
    theAnswerer = answerer;
    struct sigaction action {};
    action.sa_sigaction = handOver;
    action.sa_flags = SA_SIGINFO;
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < crashes.size(); ++i)
        sigaction(crashes[i], &action, &before[i]);
}

void leaveCrashToSystem() {
    leftToSystem = true;
}

} // namespace noctra
