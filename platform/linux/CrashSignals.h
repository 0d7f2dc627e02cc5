#pragma once

#include <pthread.h>

namespace noctra {

// What a crash of a thread (SIGSEGV, SIGBUS, SIGABRT) does: another thread is told of it and may
// end the process in good order. In the one that crashed nothing can be relied on any more.

/// The signal by which the other thread is told. It has to be blocked in every thread.
[[nodiscard]] int crashNotice();
/// From now on a thread that crashes sends `crashNotice` to `answerer` and waits. Once, at the
/// start.
void handCrashesTo(pthread_t answerer);
/// Whether a thread has crashed; else a `crashNotice` is a signal that somebody else has sent.
[[nodiscard]] bool crashWasHandedOver();
/// The answerer has nothing to say: the process ends by the signal, as it would have without this.
/// It does so too 5 s after the crash, and at once where the answerer crashes itself.
void leaveCrashToSystem();

} // namespace noctra
