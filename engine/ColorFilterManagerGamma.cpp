// The engine's work on the displays' tables. Functions whose names end in Unsafe run inside work on
// gammaQueue_.

#include <algorithm>

#include "engine/ColorFilterManager.h"
#include "engine/GammaRamp.h"

namespace noctra {

void ColorFilterManager::captureGammaUnsafe(DisplayId display) {
    GammaTables tables;
    std::uint32_t sampleCount = 0; // entries beyond it stay zero
    if (services_.displays.readTables(display, tables, sampleCount) != 0) {
        services_.log.log("ERROR: Failed to capture gamma for display " + std::to_string(display));
        return;
    }
    originalGammas_.insert_or_assign(display, tables);
    services_.log.log("Captured gamma for display " + std::to_string(display));
}

void ColorFilterManager::captureOriginalGammas() {
    std::size_t count = 0;
    gammaQueue_.sync([&] {
        services_.displays.attachedScreens(attached_);
        for (const DisplayId display : attached_)
            captureGammaUnsafe(display);
        count = originalGammas_.size();
    });
    services_.log.log("Captured gamma for " + std::to_string(count) + " displays");
}

void ColorFilterManager::formAttachedSetUnsafe() {
    services_.displays.attachedScreens(attached_);
    std::sort(attached_.begin(), attached_.end());
    attached_.erase(std::unique(attached_.begin(), attached_.end()), attached_.end());
}

void ColorFilterManager::applyFilter() {
    if (isScreenshotRender_)
        return;
    const ChannelGains gains = ColorTemperatureCurve::normalizedRGB(intensity);
    const double level = brightness;
    gammaQueue_.sync([&] {
        if (sealed_)
            return;
        formAttachedSetUnsafe();
        // Displays that appeared since the last capture, all of them before the first write: two
        // displays may share their tables (one mirrors the other).
        for (const DisplayId display : attached_)
            if (!originalGammas_.contains(display))
                captureGammaUnsafe(display);
        for (const DisplayId display : attached_) {
            const auto captured = originalGammas_.find(display);
            if (captured == originalGammas_.end())
                continue; // its tables could not be read
            GammaTables filtered;
            scaleGammaTables(captured->second, gains, level, filtered);
            services_.displays.writeTables(display, filtered);
        }
        settleUnsafe();
    });
}

void ColorFilterManager::removeFilter() {
    if (isScreenshotRender_)
        return;
    gammaQueue_.sync([this] {
        formAttachedSetUnsafe();
        for (const auto& [display, tables] : originalGammas_)
            if (std::binary_search(attached_.begin(), attached_.end(), display))
                services_.displays.giveBackTables(display, tables);
        settleUnsafe();
    });
}

void ColorFilterManager::settleUnsafe() {
    failedNow_.clear();
    services_.displays.settle(
        [this](DisplayId display, Displays::Status) { failedNow_.push_back(display); });
    // One line when a display starts to refuse its tables, not one per step of a drag.
    for (const DisplayId display : failedNow_)
        if (std::find(refusing_.begin(), refusing_.end(), display) == refusing_.end())
            services_.log.log("ERROR: Failed to set gamma for display " + std::to_string(display));
    refusing_.swap(failedNow_);
}

void ColorFilterManager::sealForExit() {
    sealed_ = true;
}

} // namespace noctra
