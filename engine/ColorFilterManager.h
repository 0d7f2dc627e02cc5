#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ColorTemperatureCurve.h"
#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "foundation/Observable.h"
#include "foundation/SerialQueue.h"
#include "platform/DisplayChanges.h"
#include "platform/DisplayServices.h"
#include "platform/Displays.h"
#include "platform/GammaTables.h"

namespace noctra {

class Backlight;
class LoginItem;
class OnlineDisplays;
class Preferences;
class Process;

/// What the engine needs of its desktop. A null pointer stands for a service that the desktop does
/// not have; the engine then does without.
struct EngineServices {
    Log& log;
    MainQueue& mainQueue;
    Displays& displays;
    Preferences& preferences;
    Process& process;
    DisplayChanges* displayChanges = nullptr;
    LoginItem* loginItem = nullptr;
    Backlight* backlight = nullptr;
    const OnlineDisplays* onlineDisplays = nullptr;
    /// Finds the function that reads a built-in panel whose backlight the system does not know;
    /// null where there is none. Not called while there is no such panel.
    std::function<display_services::GetBrightness*()> brightnessGetter = nullptr;
};

/// The dimming engine: the filter's state, and the displays' tables that follow from it.
///
/// Every change of the state is on every display when the assignment returns, and in the
/// preferences half a second after the last change. Everything belongs to the main thread, except
/// `sealForExit` and `removeFilter`, which the thread that answers signals calls too.
class ColorFilterManager : public ObservableObject {
public:
    enum class FlickerWarningLevel { none, mild, severe };

    /// The program's one engine, constructed on first use.
    static ColorFilterManager& shared();

    /// Puts the displays back to their calibrated tables, captures them, loads the preferences and
    /// leaves the filter off. `services` must outlive the engine.
    explicit ColorFilterManager(const EngineServices& services);
    ~ColorFilterManager();

    /// The filter is on.
    Published<bool> isEnabled;
    /// Warmth, 0.0 (neutral) to 1.0 (warmest). Clamped; not-a-number is refused and logged.
    Published<double> intensity;
    /// Multiplier of every table entry, 0.1 (0.0 with `allowExtremeDim`) to 1.0. Clamped;
    /// not-a-number is refused and logged.
    Published<double> brightness;
    /// The program is registered to start at login.
    Published<bool> startAtLogin;
    /// `brightness` may go below 0.1.
    Published<bool> allowExtremeDim;

private:
    Published<float> hardwareBrightness_;
    Published<bool> hardwareBrightnessAvailable_;
    Published<bool> hasBuiltInDisplay_;

public:
    /// The built-in panel's backlight as last read, 0.0 to 1.0; 1.0 when it could not be read.
    const Published<float>& hardwareBrightness = hardwareBrightness_;
    const Published<bool>& hardwareBrightnessAvailable = hardwareBrightnessAvailable_;
    const Published<bool>& hasBuiltInDisplay = hasBuiltInDisplay_;

    /// How strongly the user should be warned of a flickering backlight, from the current values.
    [[nodiscard]] FlickerWarningLevel flickerWarningLevel() const;

    /// Writes the filtered tables to every attached display; they are there on return. A display
    /// that fails is logged and skipped. Allocates nothing while the set of displays stays the
    /// same.
    void applyFilter();

    /// Writes the captured tables back to every attached display that has them. Any thread.
    void removeFilter();

    /// From now on nothing but `removeFilter` writes a table, for the rest of the process. Any
    /// thread.
    void sealForExit();

private:
    void scheduleUpdate();
    void savePreferences();
    void clampIntensity();
    void clampBrightness();
    bool acceptsNumber(std::string_view property, double value);

    void captureOriginalGammas();
    void captureGammaUnsafe(DisplayId display);
    void formAttachedSetUnsafe();
    void settleUnsafe();

    void setupObservers();
    void scheduleDisplayRefresh(std::string reason);
    void refreshDisplays(const std::string& reason, std::uint64_t generation);
    void displayReconfigured(DisplayId display, DisplayChangeFlags flags);

    void checkLoginStatus();
    void toggleStartAtLogin(bool enabled);

    [[nodiscard]] bool checkForBuiltInDisplay() const;
    struct BacklightReading {
        float level = 1.0F;
        bool available = false;
    };
    [[nodiscard]] BacklightReading readHardwareBrightness() const;
    void pollBacklight();

    const EngineServices services_;
    /// Set for the whole run by the environment: the panel is to be rendered without touching the
    /// displays, the login item or the preferences.
    const bool isScreenshotRender_;
    std::atomic<bool> sealed_ = false;

    // Touched only inside work on gammaQueue_:
    std::map<DisplayId, GammaTables> originalGammas_;
    std::vector<DisplayId> attached_;
    std::vector<DisplayId> refusing_;
    std::vector<DisplayId> failedNow_;

    // Main thread:
    WorkItem saveWorkItem_;
    WorkItem displayRefreshWorkItem_;
    std::string displayRefreshReason_;
    std::uint64_t displayRefreshGeneration_ = 0;
    AnyCancellable brightnessTimer_;
    AnyCancellable displayChanges_;
    /// Deferred work holds this weakly and does nothing once the engine is gone.
    const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);

    SerialQueue gammaQueue_{"com.noctra.gamma"};
};

} // namespace noctra
