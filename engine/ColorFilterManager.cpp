#include "engine/ColorFilterManager.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "foundation/Numbers.h"
#include "foundation/SharedInstance.h"
#include "platform/Backlight.h"
#include "platform/LoginItem.h"
#include "platform/OnlineDisplays.h"
#include "platform/Preferences.h"
#include "platform/Process.h"

namespace noctra {

namespace {

constexpr Seconds saveDebounceInterval{0.5};
constexpr Seconds brightnessPollInterval{2.0};
constexpr double lowestBrightness = 0.1;
// Backlights flicker most below about four fifths; anything short of full may flicker a little.
constexpr float severeBelow = 0.8F;
constexpr float mildBelow = 0.99F;
constexpr double softwareMildBelow = 0.99;

constexpr std::string_view enabledKey = "filterEnabled";
constexpr std::string_view intensityKey = "filterIntensity";
constexpr std::string_view brightnessKey = "filterBrightness";
constexpr std::string_view extremeDimKey = "allowExtremeDim";

double clampedTo(double lower, double upper, double value) {
    if (value <= lower)
        return lower;
    return value > upper ? upper : value;
}

double minimumBrightness(bool allowExtremeDim) {
    return allowExtremeDim ? 0.0 : lowestBrightness;
}

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

ColorFilterManager& ColorFilterManager::shared() {
    return SharedInstance<ColorFilterManager>::get();
}

ColorFilterManager::ColorFilterManager(const EngineServices& services)
    : isEnabled(*this, false, [this] { scheduleUpdate(); }),
      intensity(
          *this, 0.0, [this] { clampIntensity(); },
          [this](double value) { return acceptsNumber("intensity", value); }),
      brightness(
          *this, 1.0, [this] { clampBrightness(); },
          [this](double value) { return acceptsNumber("brightness", value); }),
      startAtLogin(*this, false, [this] { toggleStartAtLogin(startAtLogin); }),
      allowExtremeDim(*this, false, [this] { clampBrightness(); }),
      hardwareBrightness_(*this, 1.0F), hardwareBrightnessAvailable_(*this, false),
      hasBuiltInDisplay_(*this, false), services_(services),
      isScreenshotRender_(services.process.environment("NOCTRA_SCREENSHOT_RENDER") == "1"),
      saveWorkItem_(services.mainQueue, [this] { savePreferences(); }),
      displayRefreshWorkItem_(services.mainQueue, [this] {
          refreshDisplays(displayRefreshReason_, displayRefreshGeneration_);
      }) {
    services_.log.log("ColorFilterManager init starting");
    if (!isScreenshotRender_) {
        // A filter left behind by a run that was killed must not be captured as the display's own.
        gammaQueue_.sync([this] { services_.displays.restoreCalibratedTables(); });
        captureOriginalGammas();
        setupObservers();
        checkLoginStatus();
    }

    isEnabled = false; // also when the last run ended with the filter on
    const double storedIntensity = services_.preferences.doubleForKey(intensityKey);
    allowExtremeDim = services_.preferences.boolForKey(extremeDimKey);
    const double storedBrightness = services_.preferences.numberForKey(brightnessKey).value_or(1.0);
    intensity = clampedTo(0.0, 1.0, storedIntensity);
    brightness = clampedTo(minimumBrightness(allowExtremeDim), 1.0, storedBrightness);
    services_.log.log("Init complete - intensity: " + shortestDecimal(intensity.get()) +
                      ", brightness: " + shortestDecimal(brightness.get()));

    hasBuiltInDisplay_ = checkForBuiltInDisplay();
    brightnessTimer_ =
        services_.mainQueue.repeatEvery(brightnessPollInterval, [this] { pollBacklight(); });
    const BacklightReading reading = readHardwareBrightness();
    hardwareBrightness_ = reading.level;
    hardwareBrightnessAvailable_ = reading.available;
}

ColorFilterManager::~ColorFilterManager() = default;

void ColorFilterManager::clampIntensity() {
    const double clamped = clampedTo(0.0, 1.0, intensity);
    if (clamped != intensity) {
        intensity = clamped;
        return;
    }
    scheduleUpdate();
}

void ColorFilterManager::clampBrightness() {
    const double clamped = clampedTo(minimumBrightness(allowExtremeDim), 1.0, brightness);
    if (clamped != brightness) {
        brightness = clamped;
        return;
    }
    scheduleUpdate();
}

bool ColorFilterManager::acceptsNumber(std::string_view property, double value) {
    if (!std::isnan(value))
        return true;
    services_.log.log("ERROR: Refused a value for " + std::string(property) +
                      " that is not a number");
    return false;
}

void ColorFilterManager::scheduleUpdate() {
    if (isScreenshotRender_)
        return;
    if (isEnabled)
        applyFilter();
    else
        removeFilter();
    saveWorkItem_.schedule(saveDebounceInterval);
}

void ColorFilterManager::savePreferences() {
    if (isScreenshotRender_)
        return;
    services_.preferences.setBool(enabledKey, isEnabled);
    services_.preferences.setDouble(intensityKey, intensity);
    services_.preferences.setDouble(brightnessKey, brightness);
    services_.preferences.setBool(extremeDimKey, allowExtremeDim);
}

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
