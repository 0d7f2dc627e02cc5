// Which displays the controller drives, and how it follows their coming and going.

#include <algorithm>
#include <array>

#include "platform/DisplayChanges.h"
#include "platform/OnlineDisplays.h"
#include "pwmsafe/DisplayServicesBridge.h"
#include "pwmsafe/PwmSafeManager.h"

namespace noctra {

namespace {

constexpr std::size_t mostDisplays = 16;
constexpr Seconds displaysChangedDelay{0.45};
constexpr Seconds wakeDelay{1.5};
// Longer than the throttle of re-asserts, so that one made just before, which did not know the new
// display, does not hold back the one made for it.
constexpr Seconds controlsChangedDelay{1.1};

} // namespace

void PwmSafeManager::setupObservers() {
    const std::weak_ptr<const bool> manager = alive_;
    displayChanges_ = services_.displayChanges.subscribe({
        .woke =
            [this, manager] {
                services_.mainQueue.asyncAfter(wakeDelay, [this, manager] {
                    if (manager.expired())
                        return;
                    disableALCForControllableDisplays();
                    reassertNow("wake from sleep");
                });
            },
        .screenParametersChanged =
            [this, manager] {
                if (!manager.expired())
                    displaysChanged();
            },
        .reconfigured = {},
        .brightnessControlsChanged =
            [this, manager] {
                if (!manager.expired())
                    brightnessControlsChanged();
            },
    });
}

void PwmSafeManager::displaysChanged() {
    refreshControllableDisplays();
    services_.mainQueue.asyncAfter(displaysChangedDelay,
                                   [this, manager = std::weak_ptr<const bool>(alive_)] {
                                       if (manager.expired())
                                           return;
                                       disableALCForControllableDisplays();
                                       reassertNow("screen params changed");
                                   });
}

/// Monitors take seconds to answer for the first time, so that some can be changed only later.
void PwmSafeManager::brightnessControlsChanged() {
    refreshControllableDisplays();
    services_.mainQueue.asyncAfter(controlsChangedDelay,
                                   [this, manager = std::weak_ptr<const bool>(alive_)] {
                                       if (manager.expired())
                                           return;
                                       disableALCForControllableDisplays();
                                       // Enabled without a display that can be changed, the mode
                                       // would be stored as off.
                                       refreshControllableDisplays();
                                       if (resumesLater_ && hasControllableDisplay_)
                                           isEnabled = true;
                                       else if (locksOthersThan(controllableDisplayIDs()))
                                           reassertNow("brightness controls changed");
                                   });
}

void PwmSafeManager::refreshControllableDisplays() {
    hasControllableDisplay_ = isAvailable_ && !controllableDisplayIDs().empty();
}

std::vector<DisplayId> PwmSafeManager::onlineDisplayIDs() const {
    std::array<DisplayId, mostDisplays> ids{};
    std::uint32_t count = 0;
    if (services_.onlineDisplays.list(ids, count) != 0)
        return {};
    return {ids.begin(), ids.begin() + std::min<std::size_t>(count, mostDisplays)};
}

std::vector<DisplayId> PwmSafeManager::controllableDisplayIDs() const {
    auto* canChange = services_.bridge.canChangeBrightness();
    if (canChange == nullptr)
        return {};
    std::vector<DisplayId> displays = onlineDisplayIDs();
    std::erase_if(displays, [&](DisplayId display) { return !canChange(display); });
    return displays;
}

display_services::SetBrightness* PwmSafeManager::activeSetter() const {
    display_services::SetBrightness* smooth = services_.bridge.setBrightnessSmooth();
    return smooth != nullptr ? smooth : services_.bridge.setBrightness();
}

std::optional<float> PwmSafeManager::readBrightness(DisplayId display, float prefilled) const {
    auto* getter = services_.bridge.getBrightness();
    float brightness = prefilled;
    if (getter == nullptr || getter(display, &brightness) != 0)
        return std::nullopt;
    return brightness;
}

} // namespace noctra
