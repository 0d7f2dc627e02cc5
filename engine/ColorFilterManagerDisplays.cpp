// How the engine follows displays that come, go and wake.

#include <algorithm>
#include <utility>

#include "engine/ColorFilterManager.h"

namespace noctra {

namespace {

// Displays settle in steps after a change; some drivers load a table of their own meanwhile.
constexpr Seconds displayRefreshDelay{0.45};
constexpr Seconds settlePassDelay{0.7};
constexpr Seconds wakeDelay{1.2};

} // namespace

void ColorFilterManager::setupObservers() {
    if (services_.displayChanges == nullptr)
        return;
    const std::weak_ptr<const bool> engine = alive_;
    displayChanges_ = services_.displayChanges->subscribe({
        .woke =
            [this, engine, &log = services_.log] {
                log.log("System woke from sleep");
                if (engine.expired() || !isEnabled)
                    return;
                services_.mainQueue.asyncAfter(wakeDelay, [this, engine] {
                    if (!engine.expired())
                        scheduleDisplayRefresh("wake from sleep");
                });
            },
        .screenParametersChanged =
            [this, engine] {
                if (engine.expired())
                    return;
                hasBuiltInDisplay_ = checkForBuiltInDisplay();
                scheduleDisplayRefresh("NSApplication.didChangeScreenParametersNotification");
            },
        .reconfigured =
            [this, engine, &log = services_.log,
             &queue = services_.mainQueue](DisplayId display, DisplayChangeFlags flags) {
                if ((flags & displayChangeBegins) != 0) {
                    log.log("Display " + std::to_string(display) + " configuration begin");
                    return;
                }
                queue.async([this, engine, display, flags] {
                    if (!engine.expired())
                        displayReconfigured(display, flags);
                });
            },
        .brightnessControlsChanged = {},
    });
}

void ColorFilterManager::displayReconfigured(DisplayId display, DisplayChangeFlags flags) {
    const std::string name = "Display " + std::to_string(display);
    if ((flags & displayRemoved) != 0) {
        services_.log.log(name + " disconnected - cleaning up");
        gammaQueue_.async([this, display] {
            // A display that is attached again by now may have the filter on it, and needs its
            // captured tables to lose it.
            formAttachedSetUnsafe();
            if (!std::binary_search(attached_.begin(), attached_.end(), display))
                originalGammas_.erase(display);
        });
    } else if ((flags & displayAdded) != 0) {
        services_.log.log(name + " connected");
    } else {
        services_.log.log(name + " reconfigured (flags: " + std::to_string(flags) + ")");
    }
    scheduleDisplayRefresh("CGDisplay callback flags=" + std::to_string(flags));
}

void ColorFilterManager::scheduleDisplayRefresh(std::string reason) {
    ++displayRefreshGeneration_;
    displayRefreshReason_ = std::move(reason);
    displayRefreshWorkItem_.schedule(displayRefreshDelay);
}

void ColorFilterManager::refreshDisplays(const std::string& reason, std::uint64_t generation) {
    services_.log.log("Refreshing displays (" + reason + ")");
    gammaQueue_.sync([this] {
        if (sealed_)
            return;
        services_.displays.restoreCalibratedTables();
    });
    gammaQueue_.sync([this] {
        if (sealed_)
            return; // the captured tables have been put back for good
        formAttachedSetUnsafe();
        std::erase_if(originalGammas_, [this](const auto& entry) {
            return !std::binary_search(attached_.begin(), attached_.end(), entry.first);
        });
        for (const DisplayId display : attached_)
            captureGammaUnsafe(display);
    });
    if (!isEnabled)
        return;
    applyFilter();
    services_.mainQueue.asyncAfter(
        settlePassDelay, [this, generation, engine = std::weak_ptr<const bool>(alive_)] {
            if (engine.expired() || !isEnabled || displayRefreshGeneration_ != generation)
                return;
            services_.log.log("Display settle pass reapply");
            applyFilter();
        });
}

} // namespace noctra
