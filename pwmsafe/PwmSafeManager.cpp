#include "pwmsafe/PwmSafeManager.h"

#include "foundation/Numbers.h"
#include "foundation/SharedInstance.h"
#include "platform/Preferences.h"
#include "pwmsafe/DisplayServicesBridge.h"

namespace noctra {

namespace {

constexpr float full = 1.0F;
constexpr float lowBelow = 0.99F; // some panels round what they were given
constexpr Seconds verifyDelay{0.75};
constexpr Seconds driftCheckInterval{5.0};
constexpr double reassertThrottle = 1.0; // seconds

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
        const std::lock_guard lock(mutex_);
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
        const std::lock_guard lock(mutex_);
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
    const std::lock_guard lock(mutex_);
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
    const std::lock_guard lock(mutex_);
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
    const std::lock_guard lock(mutex_);
    sealed_ = true;
}

bool PwmSafeManager::isSealed() const {
    const std::lock_guard lock(mutex_);
    return sealed_;
}

/// Whether the displays that were last set to full brightness are others than `displays`.
bool PwmSafeManager::locksOthersThan(const std::vector<DisplayId>& displays) const {
    const std::lock_guard lock(mutex_);
    return lockedDisplays_ != std::set<DisplayId>(displays.begin(), displays.end());
}

std::optional<PwmSafeManager::Reading> PwmSafeManager::firstLowDisplay() const {
    const std::lock_guard lock(mutex_);
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

} // namespace noctra
