// What the engine reads of the machine and asks of it besides tables: the backlight and the login
// item.

#include <algorithm>
#include <array>

#include "engine/ColorFilterManager.h"
#include "platform/Backlight.h"
#include "platform/LoginItem.h"
#include "platform/OnlineDisplays.h"

namespace noctra {

namespace {

// Backlights flicker most below about four fifths; anything short of full may flicker a little.
constexpr float severeBelow = 0.8F;
constexpr float mildBelow = 0.99F;
constexpr double softwareMildBelow = 0.99;

/// Whether `wanted` accepts one of the built-in panels that are online; asks in their order.
template <typename Wanted>
bool anyBuiltInPanel(const OnlineDisplays* displays, Wanted wanted) {
    std::array<DisplayId, 16> ids{};
    std::uint32_t count = 0;
    if (displays == nullptr || displays->list(ids, count) != 0)
        return false;
    return std::any_of(ids.begin(), ids.begin() + count, [&](DisplayId display) {
        return displays->isBuiltIn(display) && wanted(display);
    });
}

} // namespace

void ColorFilterManager::checkLoginStatus() {
    if (services_.loginItem == nullptr)
        return;
    startAtLogin = services_.loginItem->status() == LoginItem::Status::enabled;
}

void ColorFilterManager::toggleStartAtLogin(bool enabled) {
    if (services_.loginItem == nullptr)
        return;
    const std::string error =
        enabled ? services_.loginItem->registerItem() : services_.loginItem->unregisterItem();
    if (!error.empty())
        services_.log.log("Login item error: " + error);
}

bool ColorFilterManager::checkForBuiltInDisplay() const {
    return anyBuiltInPanel(services_.onlineDisplays, [](DisplayId) { return true; });
}

ColorFilterManager::BacklightReading ColorFilterManager::readHardwareBrightness() const {
    if (services_.backlight != nullptr)
        if (const std::optional<float> level = services_.backlight->level())
            return {*level, true};

    float level = 1.0F;
    const bool read = anyBuiltInPanel(services_.onlineDisplays, [&](DisplayId display) {
        // Looked up only here: a machine without such a panel never loads the library behind it.
        auto* getter = services_.brightnessGetter ? services_.brightnessGetter() : nullptr;
        level = 1.0F;
        return getter != nullptr && getter(display, &level) == 0;
    });
    return read ? BacklightReading{level, true} : BacklightReading{};
}

void ColorFilterManager::pollBacklight() {
    const BacklightReading reading = readHardwareBrightness();
    if (hardwareBrightness_ != reading.level)
        hardwareBrightness_ = reading.level;
    hardwareBrightnessAvailable_ = reading.available;
}

ColorFilterManager::FlickerWarningLevel ColorFilterManager::flickerWarningLevel() const {
    if (hasBuiltInDisplay && hardwareBrightnessAvailable) {
        if (hardwareBrightness < severeBelow)
            return FlickerWarningLevel::severe;
        return hardwareBrightness < mildBelow ? FlickerWarningLevel::mild
                                              : FlickerWarningLevel::none;
    }
    return brightness < softwareMildBelow ? FlickerWarningLevel::mild : FlickerWarningLevel::none;
}

} // namespace noctra
