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
    wake();
}

void QtRunLoop::wake() {
    if (!wakePosted_.exchange(true))
        QMetaObject::invokeMethod(
            this, [this] { runDue(); }, Qt::QueuedConnection);
}

void QtRunLoop::wakeAt(SteadyClock::TimePoint due) {
    // A later deadline is found when the timer fires: a debounced task that is put off on every
    // step of a drag does not touch the timer.
    if (timer_.isActive() && timerDue_ <= due)
        return;
    timerDue_ = due;
    const auto wait = std::chrono::ceil<std::chrono::milliseconds>(due - clock_.now());
    timer_.start(std::max(wait, std::chrono::milliseconds(0)));
}

void QtRunLoop::watch(int descriptor, std::function<void()> readable) {
    auto notifier = std::make_unique<QSocketNotifier>(descriptor, QSocketNotifier::Read);
    connect(notifier.get(), &QSocketNotifier::activated, this,
            [readable = std::move(readable)] { readable(); });
    notifiers_[descriptor] = std::move(notifier);
}

void QtRunLoop::unwatch(int descriptor) {
    const auto found = notifiers_.find(descriptor);
    if (found == notifiers_.end())
        return;
    found->second->setEnabled(false);
    found->second.release()->deleteLater(); // it may be the one that is calling
    notifiers_.erase(found);
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
