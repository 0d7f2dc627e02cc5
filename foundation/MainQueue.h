#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "foundation/AnyCancellable.h"
#include "foundation/Clock.h"
#include "foundation/RunLoop.h"
#include "foundation/ThreadSafety.h"

namespace noctra {

class MainQueue;

/// A piece of main-queue work that can be put off, restarted and cancelled. Main thread only.
///
/// Scheduling it again replaces what was pending, so a burst of requests runs the work once, after
/// the last. Restarting allocates nothing. Dropping the item cancels it.
class WorkItem {
public:
    WorkItem(MainQueue& queue, std::function<void()> work);
    WorkItem(const WorkItem&) = delete;
    WorkItem& operator=(const WorkItem&) = delete;
    ~WorkItem();

    void schedule(Seconds delay);
    void cancel();
    [[nodiscard]] bool isPending() const;

private:
    friend class MainQueue;
    struct State;
    MainQueue& queue_;
    std::shared_ptr<State> state_;
};

/// The main thread's queue: work for now, work for later, repeating timers, file descriptors.
///
/// The queue decides what is due and in which order; a RunLoop (Qt's in the program, a virtual
/// clock in tests) sleeps and calls `runDue`. Everything but `async` belongs to the main thread,
/// and all work runs there. Work of equal due time runs in the order in which it was submitted.
class MainQueue {
public:
    /// `loop` and `clock` must outlive the queue. The constructing thread is the main thread.
    MainQueue(RunLoop& loop, const SteadyClock& clock);
    MainQueue(const MainQueue&) = delete;
    MainQueue& operator=(const MainQueue&) = delete;
    ~MainQueue();

    /// Runs `work` on a later turn of the main thread. Any thread.
    void async(std::function<void()> work);

    /// Runs `work` once, `delay` from now; it cannot be taken back (see WorkItem for that).
    void asyncAfter(Seconds delay, std::function<void()> work);

    /// Runs `tick` every `interval`, first one interval from now, until the token is dropped. Ticks
    /// that were missed (a blocked main thread, a sleeping machine) are not made up for.
    [[nodiscard]] AnyCancellable repeatEvery(Seconds interval, std::function<void()> tick);

    /// Runs `readable` whenever `descriptor` has something to read or was hung up, until the token
    /// is dropped. The descriptor stays the caller's; drop the token before closing it.
    [[nodiscard]] AnyCancellable watch(int descriptor, std::function<void()> readable);

    /// Runs what is due; called by the RunLoop.
    void runDue();

    /// When the loop has to call `runDue` next; nothing when only `async` work can come.
    [[nodiscard]] std::optional<SteadyClock::TimePoint> nextDeadline() const;

    /// How many pieces of delayed work and timers are waiting.
    [[nodiscard]] std::size_t pendingCount() const { return timed_.size(); }

private:
    friend class WorkItem;
    using Timed = std::shared_ptr<WorkItem::State>;

    void insert(const Timed& timed, SteadyClock::TimePoint due);
    void remove(const Timed& timed);
    Timed takeDue(SteadyClock::TimePoint now, std::uint64_t before);

    RunLoop& loop_;
    const SteadyClock& clock_;
    std::vector<Timed> timed_; // a handful: a scan beats a heap, and cancelling is an erase
    std::uint64_t nextSequence_ = 0;
    Mutex mutex_;
    std::vector<std::function<void()>> inbox_ GUARDED_BY(mutex_);
};

} // namespace noctra
