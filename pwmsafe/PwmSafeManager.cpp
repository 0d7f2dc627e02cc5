#include "pwmsafe/PwmSafeManager.h"

#include <algorithm>
#include <array>

#include "foundation/Numbers.h"
#include "foundation/SharedInstance.h"
#include "platform/DisplayChanges.h"
#include "platform/OnlineDisplays.h"
#include "platform/Preferences.h"
#include "pwmsafe/DisplayServicesBridge.h"

namespace noctra {

namespace {

constexpr float full = 1.0F;
constexpr float lowBelow = 0.99F; // some panels round what they were given
constexpr Seconds verifyDelay{0.75};
constexpr Seconds driftCheckInterval{5.0};
constexpr double reassertThrottle = 1.0; // seconds
constexpr std::size_t mostDisplays = 16;
constexpr Seconds displaysChangedDelay{0.45};
constexpr Seconds wakeDelay{1.5};
// Longer than the throttle of re-asserts, so that one made just before, which did not know the new
// display, does not hold back the one made for it.
constexpr Seconds controlsChangedDelay{1.1};

constexpr std::string_view modeKey = "pwmSafeMode";

} // namespace

PwmSafeManager& PwmSafeManager::shared() {
    return SharedInstance<PwmSafeManager>::get();
}

PwmSafeManager::PwmSafeManager(const PwmSafeServices& services)
    : isAvailable_(*this, false), hasControllableDisplay_(*this, false),
      isEnabled(*this, false, [this] { enabledDidChange(); }), verified_(*this, false),
      services_(services), verifyWorkItem_(services.mainQueue, [this] { verify(); }) {
    const DisplayServicesBridge& bridge = services_.bridge;
    isAvailable_ = bridge.getBrightness() != nullptr && bridge.setBrightness() != nullptr &&
                   bridge.canChangeBrightness() != nullptr;
    services_.log.log(std::string("PwmSafeManager init - DisplayServices available: ") +
                      (isAvailable_ ? "true" : "false"));
    if (!isAvailable_)
        return;
    refreshControllableDisplays();
    setupObservers();
    disableALCForControllableDisplays();
    if (!services_.preferences.boolForKey(modeKey))
        return;
    if (!hasControllableDisplay_)
        resumesLater_ = true;
    else
        services_.mainQueue.async([this, manager = std::weak_ptr<const bool>(alive_)] {
            if (!manager.expired())
                isEnabled = true;
        });
}

void PwmSafeManager::enabledDidChange() {
    if (isEnabled == wasEnabled_ || isSealed())
        return;
    wasEnabled_ = isEnabled;
    resumesLater_ = false;
    services_.preferences.setBool(modeKey, isEnabled);
    if (isEnabled)
        applyEnable();
    else
        applyDisable();
}

void PwmSafeManager::applyEnable() {
    if (services_.bridge.getBrightness() == nullptr)
        return abortEnable("no getBrightness symbol");
    display_services::SetBrightness* setter = activeSetter();
    if (setter == nullptr)
        return abortEnable("no setBrightness symbol");
    const std::vector<DisplayId> displays = controllableDisplayIDs();
    if (displays.empty())
        return abortEnable("no controllable displays");
    disableALCForControllableDisplays();
    const std::size_t recorded = lockAtFull(displays, setter, Records::anew);
    services_.log.log("PWM-Safe enabled - locked " + std::to_string(recorded) +
                      " display(s) at 100%");
    scheduleVerification();
    startDriftTimer();
    lastReassertAt_ = secondsNow();
}

void PwmSafeManager::abortEnable(const char* reason) {
    services_.log.log(std::string("PWM-Safe enable aborted: ") + reason);
    isEnabled = false;
}

void PwmSafeManager::applyDisable() {
    verifyWorkItem_.cancel();
    driftTimer_.cancel();
    // At once, not smoothly: whoever switches the mode off sees that it is off.
    display_services::SetBrightness* setter = services_.bridge.setBrightness();
    if (setter == nullptr)
        return;
    {
        const MutexLock lock(mutex_);
        for (const auto& [display, brightness] : priorBrightnesses_)
            setter(display, brightness);
        services_.log.log("PWM-Safe disabled - restored " +
                          std::to_string(priorBrightnesses_.size()) + " display(s)");
        priorBrightnesses_.clear();
    }
    verified_ = false;
}

void PwmSafeManager::disableALCForControllableDisplays() {
    auto* enableALC = services_.bridge.enableALC();
    if (enableALC == nullptr)
        return;
    for (const DisplayId display : controllableDisplayIDs()) {
        const MutexLock lock(mutex_);
        if (sealed_ || !alcDisabledDisplays_.insert(display).second)
            continue;
        enableALC(display, false);
        services_.log.log("PWM-Safe ALC disabled for display " + std::to_string(display));
    }
}

/// Records what displays had that are not recorded yet, and sets all of them to full brightness.
/// Returns how many records there are then.
std::size_t PwmSafeManager::lockAtFull(const std::vector<DisplayId>& displays,
                                       display_services::SetBrightness* setter, Records records) {
    const MutexLock lock(mutex_);
    if (sealed_)
        return priorBrightnesses_.size();
    if (records == Records::anew)
        priorBrightnesses_.clear();
    lockedDisplays_ = {displays.begin(), displays.end()};
    for (const DisplayId display : displays) {
        if (!priorBrightnesses_.contains(display))
            if (const std::optional<float> prior = readBrightness(display, full))
                priorBrightnesses_.emplace(display, *prior);
        setter(display, full);
    }
    return priorBrightnesses_.size();
}

void PwmSafeManager::scheduleVerification() {
    verifyWorkItem_.schedule(verifyDelay);
}

void PwmSafeManager::verify() {
    if (!isEnabled || isSealed() || services_.bridge.getBrightness() == nullptr)
        return;
    const std::optional<Reading> low = firstLowDisplay();
    if (!low) {
        verified_ = true;
        return;
    }
    services_.log.log("PWM-Safe verify: display " + std::to_string(low->display) + " at " +
                      shortestDecimal(low->brightness) + " — below 0.99");
    verified_ = false;
    services_.log.log("PWM-Safe verification FAILED — auto-reverting toggle");
    isEnabled = false;
}

void PwmSafeManager::startDriftTimer() {
    driftTimer_ = services_.mainQueue.repeatEvery(driftCheckInterval, [this] { checkForDrift(); });
}

void PwmSafeManager::checkForDrift() {
    if (!isEnabled || services_.bridge.getBrightness() == nullptr)
        return;
    if (const std::optional<Reading> low = firstLowDisplay())
        reassertNow("drift detected on display " + std::to_string(low->display) + " (" +
                    shortestDecimal(low->brightness) + ")");
}

void PwmSafeManager::reassertNow(const std::string& reason) {
    if (!isEnabled || isSealed())
        return;
    display_services::SetBrightness* setter = activeSetter();
    if (setter == nullptr)
        return;
    const double now = secondsNow();
    if (now - lastReassertAt_ < reassertThrottle)
        return;
    lastReassertAt_ = now;
    services_.log.log("PWM-Safe re-assert: " + reason);
    disableALCForControllableDisplays();
    lockAtFull(controllableDisplayIDs(), setter, Records::kept);
    scheduleVerification();
}

void PwmSafeManager::restoreOnExit() {
    const MutexLock lock(mutex_);
    if (auto* setter = services_.bridge.setBrightness())
        for (const auto& [display, brightness] : priorBrightnesses_)
            setter(display, brightness);
    services_.log.log("PWM-Safe restoreOnExit - restored " +
                      std::to_string(priorBrightnesses_.size()) + " display(s)");
    priorBrightnesses_.clear();
    auto* enableALC = services_.bridge.enableALC();
    if (enableALC == nullptr)
        return;
    for (const DisplayId display : alcDisabledDisplays_) {
        enableALC(display, true);
        services_.log.log("PWM-Safe ALC restored for display " + std::to_string(display));
    }
    alcDisabledDisplays_.clear();
}

void PwmSafeManager::sealForExit() {
    const MutexLock lock(mutex_);
    sealed_ = true;
}

bool PwmSafeManager::isSealed() const {
    const MutexLock lock(mutex_);
    return sealed_;
}

/// Whether the displays that were last set to full brightness are others than `displays`.
bool PwmSafeManager::locksOthersThan(const std::vector<DisplayId>& displays) const {
    const MutexLock lock(mutex_);
    return lockedDisplays_ != std::set<DisplayId>(displays.begin(), displays.end());
}

std::optional<PwmSafeManager::Reading> PwmSafeManager::firstLowDisplay() const {
    const MutexLock lock(mutex_);
    for (const auto& [display, prior] : priorBrightnesses_) {
        const std::optional<float> level = readBrightness(display, 0.0F);
        if (level && *level < lowBelow)
            return Reading{display, *level};
    }
    return std::nullopt;
}

double PwmSafeManager::secondsNow() const {
    return std::chrono::duration<double>(services_.wallClock.now().time_since_epoch()).count();
}

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
