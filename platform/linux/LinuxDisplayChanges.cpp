#include "platform/linux/LinuxDisplayChanges.h"

#include <utility>

namespace noctra {

AnyCancellable LinuxDisplayChanges::subscribe(Handlers handlers) {
    auto subscriber = std::make_shared<Handlers>(std::move(handlers));
    const MutexLock lock(mutex_);
    subscribers_.emplace_back(subscriber);
    return AnyCancellable(std::move(subscriber));
}

void LinuxDisplayChanges::configurationChanged(const std::vector<DisplayChange>& changes) const {
    for (const auto& subscriber : subscribers()) {
        if (subscriber->reconfigured) {
            for (const DisplayChange& change : changes)
                subscriber->reconfigured(change.display, displayChangeBegins);
            for (const DisplayChange& change : changes)
                subscriber->reconfigured(change.display, change.flags);
        }
        if (subscriber->screenParametersChanged)
            subscriber->screenParametersChanged();
    }
}

void LinuxDisplayChanges::woke() const {
    for (const auto& subscriber : subscribers())
        if (subscriber->woke)
            subscriber->woke();
}

void LinuxDisplayChanges::brightnessControlsChanged() const {
    for (const auto& subscriber : subscribers())
        if (subscriber->brightnessControlsChanged)
            subscriber->brightnessControlsChanged();
}

std::vector<std::shared_ptr<const DisplayChanges::Handlers>>
LinuxDisplayChanges::subscribers() const {
    const MutexLock lock(mutex_);
    std::vector<std::shared_ptr<const Handlers>> alive;
    std::erase_if(subscribers_, [&](const auto& weak) {
        auto subscriber = weak.lock();
        if (!subscriber)
            return true;
        alive.push_back(std::move(subscriber));
        return false;
    });
    return alive;
}

} // namespace noctra
