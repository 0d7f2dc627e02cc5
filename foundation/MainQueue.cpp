#include "foundation/MainQueue.h"

#include <algorithm>
#include <utility>

namespace noctra {

struct WorkItem::State {
    std::function<void()> work;
    SteadyClock::TimePoint due;
    std::uint64_t sequence = 0;
    SteadyClock::TimePoint::duration interval{}; // zero: runs once
    bool pending = false;
};

WorkItem::WorkItem(MainQueue& queue, std::function<void()> work)
    : queue_(queue), state_(std::make_shared<State>()) {
    state_->work = std::move(work);
}

WorkItem::~WorkItem() {
    cancel();
}

void WorkItem::schedule(Seconds delay) {
    cancel();
    queue_.insert(state_, queue_.clock_.now() +
                              std::chrono::duration_cast<SteadyClock::TimePoint::duration>(delay));
}

void WorkItem::cancel() {
    if (state_->pending)
        queue_.remove(state_);
}

bool WorkItem::isPending() const {
    return state_->pending;
}

MainQueue::MainQueue(RunLoop& loop, const SteadyClock& clock) : loop_(loop), clock_(clock) {}

MainQueue::~MainQueue() = default;

void MainQueue::async(std::function<void()> work) {
    {
        const MutexLock lock(mutex_);
        inbox_.push_back(std::move(work));
    }
    loop_.wake();
}

void MainQueue::asyncAfter(Seconds delay, std::function<void()> work) {
    auto timed = std::make_shared<WorkItem::State>();
    timed->work = std::move(work);
    insert(timed,
           clock_.now() + std::chrono::duration_cast<SteadyClock::TimePoint::duration>(delay));
}

AnyCancellable MainQueue::repeatEvery(Seconds interval, std::function<void()> tick) {
    auto timed = std::make_shared<WorkItem::State>();
    timed->work = std::move(tick);
    timed->interval = std::chrono::duration_cast<SteadyClock::TimePoint::duration>(interval);
    insert(timed, clock_.now() + timed->interval);
    return AnyCancellable::calling([this, timed] {
        timed->interval = {}; // a tick that drops its own token is not put back
        remove(timed);
    });
}

AnyCancellable MainQueue::watch(int descriptor, std::function<void()> readable) {
    loop_.watch(descriptor, std::move(readable));
    return AnyCancellable::calling([this, descriptor] { loop_.unwatch(descriptor); });
}

void MainQueue::runDue() {
    std::vector<std::function<void()>> running;
    {
        const MutexLock lock(mutex_);
        running.swap(inbox_);
    }
    // Work that this work submits waits for the next turn, so that the loop gets to its events.
    for (auto& work : running)
        std::exchange(work, nullptr)();

    const SteadyClock::TimePoint now = clock_.now();
    const std::uint64_t before = nextSequence_;
    while (const Timed timed = takeDue(now, before)) {
        timed->work();
        if (timed->interval.count() > 0) {
            const auto missed = (now - timed->due) / timed->interval;
            insert(timed, timed->due + (missed + 1) * timed->interval);
        }
    }
}

std::optional<SteadyClock::TimePoint> MainQueue::nextDeadline() const {
    std::optional<SteadyClock::TimePoint> next;
    for (const Timed& timed : timed_)
        next = next ? std::min(*next, timed->due) : timed->due;
    return next;
}

void MainQueue::insert(const Timed& timed, SteadyClock::TimePoint due) {
    timed->due = due;
    timed->sequence = nextSequence_++;
    timed->pending = true;
    timed_.push_back(timed);
    loop_.wakeAt(due);
}

void MainQueue::remove(const Timed& timed) {
    timed->pending = false;
    std::erase(timed_, timed);
}

MainQueue::Timed MainQueue::takeDue(SteadyClock::TimePoint now, std::uint64_t before) {
    const auto runsSooner = [](const Timed& a, const Timed& b) {
        return a->due != b->due ? a->due < b->due : a->sequence < b->sequence;
    };
    Timed first;
    for (const Timed& timed : timed_)
        if (timed->due <= now && timed->sequence < before && (!first || runsSooner(timed, first)))
            first = timed;
    if (first)
        remove(first);
    return first;
}

} // namespace noctra
