#pragma once

#include <atomic>
#include <map>
#include <memory>

#include <QtCore/QObject>
#include <QtCore/QSocketNotifier>
#include <QtCore/QTimer>

#include "foundation/MainQueue.h"
#include "foundation/RunLoop.h"

namespace noctra {

/// Qt's event loop as the main thread's sleep. Made on the main thread, before or after the
/// QCoreApplication, which has to be there from `drive` on.
class QtRunLoop : public QObject, public RunLoop {
public:
    explicit QtRunLoop(const SteadyClock& clock);

    /// The queue to run; before this, and after `queue` is gone, nothing runs.
    void drive(MainQueue& queue);

    void wake() override;
    void wakeAt(SteadyClock::TimePoint due) override;
    void watch(int descriptor, std::function<void()> readable) override;
    void unwatch(int descriptor) override;

private:
    struct Watch {
        std::function<void()> readable;
        std::unique_ptr<QSocketNotifier> notifier; // none before `drive`
    };
    void runDue();
    void startWatching(int descriptor, Watch& watch);

    const SteadyClock& clock_;
    MainQueue* queue_ = nullptr;
    QTimer timer_;
    SteadyClock::TimePoint timerDue_{}; // while timer_ is active
    std::atomic<bool> wakePosted_ = false;
    std::map<int, Watch> watches_;
};

} // namespace noctra
