#include "platform/linux/DisplayServicesHost.h"

#include <algorithm>
#include <utility>

#include <unistd.h>

#include "platform/linux/StateFolder.h"
#include "platform/linux/Symbol.h"

namespace noctra {

DisplayServicesHost::DisplayServicesHost(MainQueue& mainQueue, const SteadyClock& clock,
                                         AttachedDisplays& displays, Handlers handlers)
    : mainQueue_(mainQueue), clock_(clock), displays_(displays), handlers_(std::move(handlers)) {}

void DisplayServicesHost::adopt(void* library) {
    using namespace display_services;
    SetDisplays* setDisplays = nullptr;
    NewsDescriptor* descriptor = nullptr;
    TakeNews* takeNews = nullptr;
    Finish* finish = nullptr;
    if (!findSymbol(library, setDisplaysSymbol, setDisplays) ||
        !findSymbol(library, newsDescriptorSymbol, descriptor) ||
        !findSymbol(library, takeNewsSymbol, takeNews) ||
        !findSymbol(library, finishSymbol, finish))
        return;
    {
        const MutexLock lock(mutex_);
        if (finish_ != nullptr)
            return;
        takeNews_ = takeNews;
        finish_ = finish;
    }
    displays_.deliverTo([setDisplays](const std::vector<AttachedDisplay>& displays) {
        setDisplays(displays.data(), displays.size());
    });
    mainQueue_.async([this, news = descriptor()] {
        if (news >= 0)
            watch_ = mainQueue_.watch(news, [this] { hearNews(); });
    });
}

bool DisplayServicesHost::hasLevelsToPutBack() {
    return ::access(stateFile(display_services::ownLevelsFile).c_str(), F_OK) == 0;
}

void DisplayServicesHost::hearNews() const {
    const std::uint32_t news = [this] {
        const MutexLock lock(mutex_);
        return takeNews_ != nullptr ? takeNews_() : 0;
    }();
    if ((news & display_services::backlightWritten) != 0)
        handlers_.backlightWritten();
    if ((news & display_services::controllabilityChanged) != 0)
        handlers_.controllabilityChanged();
}

void DisplayServicesHost::finish(Seconds patience) {
    display_services::Finish* finish = nullptr;
    Seconds left{0};
    {
        const MutexLock lock(mutex_);
        finish = finish_;
        if (!deadline_)
            deadline_ = clock_.now() +
                        std::chrono::duration_cast<SteadyClock::TimePoint::duration>(patience);
        left = std::max(Seconds(0), Seconds(*deadline_ - clock_.now()));
    }
    if (finish != nullptr)
        static_cast<void>(finish(static_cast<int>(left.count() * 1000.0)));
}

} // namespace noctra
