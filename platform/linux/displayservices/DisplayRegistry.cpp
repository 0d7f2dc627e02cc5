#include "platform/linux/displayservices/DisplayRegistry.h"

#include <algorithm>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

// Off and at once on again, as when the controller is made only to be asked to restore, is nothing.
constexpr auto beforeAmbientLightGoesOff = 100ms;

/// What the backlight has been set to, where the hardware agrees. Drivers round in the hardware's
/// own units, so that what it says comes back a step off; and it says 0 while the panel is dark.
std::optional<float> levelOf(const BacklightDevice& panel) {
    const auto actual = readBacklight(panel);
    const auto setting = readBacklightSetting(panel);
    auto value = actual ? actual : setting;
    if (!value)
        return std::nullopt;
    if (setting && (*value == 0 || (*value > *setting ? *value - *setting : *setting - *value) <=
                                       panel.maximum / 50))
        value = setting;
    return static_cast<float>(*value) / static_cast<float>(panel.maximum);
}

} // namespace

void DisplayRegistry::awaitDisplays(std::chrono::milliseconds limit) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, limit, [this] { return displaysKnown_; });
}

std::optional<float> DisplayRegistry::brightness(DisplayId id, TimePoint now) {
    std::shared_ptr<const BacklightDevice> panel;
    {
        const std::lock_guard lock(mutex_);
        DisplayEntry* entry = displays_.find(id);
        if (entry == nullptr || entry->goneSince)
            return std::nullopt;
        if (!entry->output.builtIn) {
            entry->asked = true;
            const auto answer = entry->brightness.brightness(now);
            wake_.raise();
            return entry->monitor ? answer : std::nullopt;
        }
        if (const auto onItsWay = panel_.pendingBrightness())
            return onItsWay;
        panel = backlight_;
    }
    return panel ? levelOf(*panel) : std::nullopt;
}

bool DisplayRegistry::request(DisplayId id, float brightness, bool smoothly, TimePoint now) {
    const std::lock_guard lock(mutex_);
    DisplayEntry* entry = displays_.find(id);
    if (entry == nullptr)
        return false;
    if (entry->output.builtIn) {
        if (!backlight_)
            return false;
        panel_.request(brightness, smoothly);
    } else {
        if (!entry->monitor && !entry->lookFor)
            return false;
        entry->asked = true;
        entry->brightness.request(brightness, now);
    }
    wake_.raise();
    return true;
}

bool DisplayRegistry::canChange(const DisplayEntry& entry) const {
    if (entry.goneSince)
        return false;
    return entry.output.builtIn ? panel_.canChange()
                                : entry.monitor && entry.brightness.canChange();
}

bool DisplayRegistry::canChange(DisplayId id, TimePoint now) {
    const std::lock_guard lock(mutex_);
    DisplayEntry* entry = displays_.find(id);
    if (entry == nullptr)
        return false;
    if (!entry->output.builtIn && !entry->goneSince) {
        entry->asked = true;
        entry->brightness.expectQuestion(now);
        wake_.raise();
    }
    entry->answered = canChange(*entry);
    return entry->answered;
}

bool DisplayRegistry::enableAmbientLight(DisplayId id, bool enable, TimePoint now) {
    const std::lock_guard lock(mutex_);
    DisplayEntry* entry = displays_.find(id);
    if (entry == nullptr)
        return false;
    if (!entry->output.builtIn)
        return true;
    ambientLightOff_ = !enable;
    ambientLightDue_ = enable ? now : now + beforeAmbientLightGoesOff;
    wake_.raise();
    return true;
}

void DisplayRegistry::beginFinishing() {
    const std::lock_guard lock(mutex_);
    finishing_ = true;
    wake_.raise();
}

bool DisplayRegistry::isSettled() {
    const auto& entries = displays_.entries();
    return !panel_.isPending() && !ambientLightOff_ &&
           std::none_of(entries.begin(), entries.end(),
                        [](const DisplayEntry& entry) { return entry.brightness.isPending(); });
}

bool DisplayRegistry::awaitSettled(TimePoint deadline) {
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, deadline, [this] { return isSettled(); });
}

} // namespace noctra::display_services
