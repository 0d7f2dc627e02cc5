#pragma once

#include <functional>
#include <optional>

#include "foundation/Clock.h"
#include "foundation/MainQueue.h"
#include "foundation/ThreadSafety.h"
#include "platform/linux/AttachedDisplays.h"
#include "platform/linux/displayservices/HostFunctions.h"

namespace noctra {

/// What the program does for its display-services library, once that has been opened: tells it the
/// displays, hears its news, and waits for it at the end.
class DisplayServicesHost {
public:
    struct Handlers {
        std::function<void()> controllabilityChanged; ///< other displays can be changed than before
        std::function<void()> backlightWritten;       ///< gamma tables may have gone with it
    };

    /// The handlers run on the main queue, or on whatever thread calls hearNews. What is passed by
    /// reference must outlive the object.
    DisplayServicesHost(MainQueue& mainQueue, const SteadyClock& clock, AttachedDisplays& displays,
                        Handlers handlers);
    DisplayServicesHost(const DisplayServicesHost&) = delete;
    DisplayServicesHost& operator=(const DisplayServicesHost&) = delete;

    /// `library` has been opened. A library without the functions for its host is left alone. Any
    /// thread; the first call counts.
    void adopt(void* library);

    /// True when an earlier run has left levels that the library has to put back: it is to be
    /// opened at once.
    [[nodiscard]] static bool hasLevelsToPutBack();

    /// Waits until the library has put every level back that it has changed, until `patience` after
    /// the first call. Any thread.
    void finish(Seconds patience);

    /// Hears what the main queue has not come to yet. At the end of the process; any thread.
    void hearNews() const;

private:
    MainQueue& mainQueue_;
    const SteadyClock& clock_;
    AttachedDisplays& displays_;
    const Handlers handlers_;
    AnyCancellable watch_; // main thread

    mutable Mutex mutex_;
    display_services::TakeNews* takeNews_ GUARDED_BY(mutex_) = nullptr;
    display_services::Finish* finish_ GUARDED_BY(mutex_) = nullptr;
    std::optional<SteadyClock::TimePoint> deadline_ GUARDED_BY(mutex_);
};

} // namespace noctra
