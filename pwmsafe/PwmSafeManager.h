#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "foundation/Clock.h"
#include "foundation/Log.h"
#include "foundation/MainQueue.h"
#include "foundation/Observable.h"
#include "foundation/ThreadSafety.h"
#include "platform/DisplayServices.h"

namespace noctra {

class DisplayChanges;
class DisplayServicesBridge;
class OnlineDisplays;
class Preferences;

/// What the controller needs. Everything must outlive it.
struct PwmSafeServices {
    Log& log;
    MainQueue& mainQueue;
    const WallClock& wallClock;
    Preferences& preferences;
    const OnlineDisplays& onlineDisplays;
    DisplayChanges& displayChanges;
    const DisplayServicesBridge& bridge;
};

/// PWM-safe mode: while it is on, the backlight of every display that can be changed is held at
/// full power, where backlights do not flicker, and the dimming is left to the software.
///
/// Main thread, except for the construction, `sealForExit` and `restoreOnExit`, which the thread
/// that answers signals may do too.
class PwmSafeManager : public ObservableObject {
public:
    /// The program's one controller, constructed on first use.
    static PwmSafeManager& shared();

    /// Where the display-services library can be used: switches automatic brightness off wherever
    /// brightness can be set, for the whole run, and puts the mode back on where the last run ended
    /// with it, soon afterwards or when the library finds a display that it can change. Elsewhere
    /// the object never does anything.
    explicit PwmSafeManager(const PwmSafeServices& services);

private:
    Published<bool> isAvailable_;
    Published<bool> hasControllableDisplay_;

public:
    /// The display-services library can be used. Never changes.
    const Published<bool>& isAvailable = isAvailable_;
    /// The brightness of some online display can be set.
    const Published<bool>& hasControllableDisplay = hasControllableDisplay_;
    /// The mode is on. It goes back to false by itself where it cannot be had.
    Published<bool> isEnabled;

private:
    Published<bool> verified_;

public:
    /// The last check found every recorded display at full brightness.
    const Published<bool>& verified = verified_;

    /// Looks anew which displays can be changed, as it is worth doing when the user is about to see
    /// it: monitors answer late, and their last answer may be old.
    void refreshControllableDisplays();

    /// Puts the recorded brightness of every display back, and automatic brightness where it was
    /// switched off. May be called again. Any thread.
    void restoreOnExit();

    /// From now on nothing but `restoreOnExit` changes a brightness, for the rest of the process.
    /// Any thread.
    void sealForExit();

private:
    struct Reading {
        DisplayId display;
        float brightness;
    };

    void enabledDidChange();
    void applyEnable();
    void abortEnable(const char* reason);
    void applyDisable();
    void disableALCForControllableDisplays();
    [[nodiscard]] bool locksOthersThan(const std::vector<DisplayId>& displays) const;
    enum class Records { anew, kept };
    std::size_t lockAtFull(const std::vector<DisplayId>& displays,
                           display_services::SetBrightness* setter, Records records);
    void scheduleVerification();
    void verify();
    void startDriftTimer();
    void checkForDrift();
    void reassertNow(const std::string& reason);

    void setupObservers();
    void displaysChanged();
    void brightnessControlsChanged();
    [[nodiscard]] std::vector<DisplayId> onlineDisplayIDs() const;
    [[nodiscard]] std::vector<DisplayId> controllableDisplayIDs() const;
    [[nodiscard]] display_services::SetBrightness* activeSetter() const;
    [[nodiscard]] std::optional<float> readBrightness(DisplayId display, float prefilled) const;
    [[nodiscard]] std::optional<Reading> firstLowDisplay() const;
    [[nodiscard]] bool isSealed() const;
    [[nodiscard]] double secondsNow() const;

    const PwmSafeServices services_;
    bool wasEnabled_ = false;
    WorkItem verifyWorkItem_;
    AnyCancellable driftTimer_;
    AnyCancellable displayChanges_;
    double lastReassertAt_ = 0.0; ///< seconds since 1970
    /// The last run ended with the mode on, and no display could be changed when this one began.
    bool resumesLater_ = false;

    /// The main thread and the thread that answers signals meet here.
    mutable Mutex mutex_;
    std::map<DisplayId, float> priorBrightnesses_ GUARDED_BY(mutex_);
    std::set<DisplayId> alcDisabledDisplays_ GUARDED_BY(mutex_);
    std::set<DisplayId> lockedDisplays_ GUARDED_BY(mutex_); ///< set to full brightness last
    bool sealed_ GUARDED_BY(mutex_) = false;

    /// Deferred work holds this weakly and does nothing once the controller is gone.
    const std::shared_ptr<const bool> alive_ = std::make_shared<const bool>(true);
};

} // namespace noctra
