#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>
#include <thread>

#include "foundation/FunctionRef.h"
#include "foundation/ThreadSafety.h"

namespace noctra {

/// Runs pieces of work one at a time, in the order in which they were submitted.
///
/// Synchronous work runs on the submitting thread (no hand-over to another thread and back), as
/// soon as everything submitted before it has finished; asynchronous work runs on a thread of the
/// queue's own, which sleeps otherwise. Any thread may submit. Work must not throw.
class SerialQueue {
public:
    explicit SerialQueue(std::string label);
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;
    /// Waits for the work submitted so far.
    ~SerialQueue();

    [[nodiscard]] const std::string& label() const { return label_; }

    /// Runs `work` and returns when it has finished. Allocates nothing. Calling it from inside the
    /// queue's own work would wait for itself: that is a programming error, and the process stops
    /// with a message that names the queue.
    void sync(FunctionRef<void()> work);

    /// Queues `work` and returns at once. Allowed from inside the queue's own work.
    void async(std::function<void()> work);

private:
    struct Pending {
        std::uint64_t turn;
        std::function<void()> work;
    };

    void runTurn(FunctionRef<void()> work) REQUIRES(mutex_);
    void workerLoop();
    [[nodiscard]] bool isWorkersTurn() const REQUIRES(mutex_);

    const std::string label_;
    Mutex mutex_;
    // Apart, so that synchronous work alone, the common case, never wakes the queue's thread.
    std::condition_variable turnEnded_;   // for callers that wait for their turn, and for the end
    std::condition_variable workPending_; // for the queue's thread
    std::uint64_t nextTurn_ GUARDED_BY(mutex_) = 0;   // the turn the next submission gets
    std::uint64_t nowServing_ GUARDED_BY(mutex_) = 0; // the turn that may run now
    std::deque<Pending> pending_ GUARDED_BY(mutex_);
    std::thread::id runner_ GUARDED_BY(mutex_);
    bool ending_ GUARDED_BY(mutex_) = false;
    // Started at once: a queue that cannot have a thread later, when the process has run out of
    // them, would have taken on work that it cannot do.
    std::thread worker_{[this] {
        workerLoop();
    }};
};

} // namespace noctra
