#pragma once

#include <functional>

#include "foundation/Clock.h"

namespace noctra {

/// What puts the main thread to sleep and wakes it for a MainQueue.
class RunLoop {
public:
    virtual ~RunLoop() = default;

    /// Makes the main thread call MainQueue::runDue soon. Any thread; never blocks.
    virtual void wake() = 0;

    /// A deadline earlier than the one the loop sleeps until has come up; at `due` the loop calls
    /// MainQueue::runDue and afterwards asks MainQueue::nextDeadline for the next. The loop may
    /// wake early: nothing runs before its time. Main thread.
    virtual void wakeAt(SteadyClock::TimePoint due) = 0;

    /// Calls `readable` on the main thread whenever `descriptor` can be read or was hung up.
    virtual void watch(int descriptor, std::function<void()> readable) = 0;
    virtual void unwatch(int descriptor) = 0;
};

} // namespace noctra
