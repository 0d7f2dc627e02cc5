#include "platform/qt/QtRunLoop.h"

#include <algorithm>
#include <utility>

namespace noctra {

QtRunLoop::QtRunLoop(const SteadyClock& clock) : clock_(clock) {
    timer_.setSingleShot(true);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] { runDue(); });
}

void QtRunLoop::drive(MainQueue& queue) {
    queue_ = &queue;
    for (auto& [descriptor, watch] : watches_)
        startWatching(descriptor, watch);
    wake();
}

void QtRunLoop::wake() {
    if (!wakePosted_.exchange(true))
        QMetaObject::invokeMethod(
            this, [this] { runDue(); }, Qt::QueuedConnection);
}

void QtRunLoop::wakeAt(SteadyClock::TimePoint due) {
    if (queue_ == nullptr)
        return; // found when the queue is first run
    // A later deadline is found when the timer fires: a debounced task that is put off on every
    // step of a drag does not touch the timer.
    if (timer_.isActive() && timerDue_ <= due)
        return;
    timerDue_ = due;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(due - clock_.now());
    timer_.start(std::max(wait, std::chrono::milliseconds(0)));
}

void QtRunLoop::watch(int descriptor, std::function<void()> readable) {
    Watch& watch = watches_[descriptor];
    watch.readable = std::move(readable);
    if (queue_ != nullptr)
        startWatching(descriptor, watch);
}

void QtRunLoop::startWatching(int descriptor, Watch& watch) {
    watch.notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(watch.notifier.get(), &QSocketNotifier::activated, this,
            [readable = watch.readable] { readable(); });
}

void QtRunLoop::unwatch(int descriptor) {
    const auto found = watches_.find(descriptor);
    if (found == watches_.end())
        return;
    if (QSocketNotifier* notifier = found->second.notifier.release()) {
        notifier->setEnabled(false);
        notifier->deleteLater(); // it may be the one that is calling
    }
    watches_.erase(found);
}

void QtRunLoop::runDue() {
    wakePosted_ = false;
    if (queue_ == nullptr)
        return;
    queue_->runDue();
    if (const auto next = queue_->nextDeadline())
        wakeAt(*next);
}

} // namespace noctra
