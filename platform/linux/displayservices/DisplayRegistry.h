#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/backlight/BacklightDevices.h"
#include "platform/linux/displayservices/DisplayList.h"
#include "platform/linux/displayservices/EventDescriptor.h"
#include "platform/linux/displayservices/News.h"
#include "platform/linux/displayservices/OwnLevels.h"
#include "platform/linux/displayservices/PanelBrightness.h"

namespace noctra::display_services {

/// One thing for the worker to do.
struct Job {
    /// The most urgent first: what has been asked for before what somebody would like to know.
    enum class Kind { backlight, panel, write, compare, ambientLight, look, verify, refresh };
    Kind kind = Kind::panel;
    TimePoint due = {};
    DisplayId display = 0;   ///< of a write, compare, verify or refresh
    std::size_t monitor = 0; ///< the same, for MonitorControl
    std::uint16_t raw = 0;   ///< of a write
    bool off = false;        ///< of ambientLight: it is to be off
};

/// What the callers of the library and its worker share: the displays, what is known of them and
/// what has been asked for. Any thread; no operation waits, but for the one that says so.
class DisplayRegistry {
public:
    struct Hardware {
        bool monitors = false;       ///< external monitors are not left alone
        std::string backlightFolder; ///< with the kernel's backlights
    };

    /// `wake` is raised when there may be something new to do. All that is passed by reference must
    /// outlive the object.
    DisplayRegistry(News& news, EventDescriptor& wake, OwnLevels& ownLevels, Hardware hardware)
        : news_(news), wake_(wake), ownLevels_(ownLevels), hardware_(std::move(hardware)) {}

    // For the callers. An operation gives nothing, or false, for a display that has never been
    // attached.

    void replaceDisplays(std::span<const AttachedDisplay> attached, TimePoint now);
    /// 0.0 to 1.0; reads the panel's backlight from its files, other displays' from memory.
    [[nodiscard]] std::optional<float> brightness(DisplayId id, TimePoint now);
    /// `brightness` from 0.0 to 1.0; not `smoothly`: it is put back. False where there is nothing
    /// to set it with.
    bool request(DisplayId id, float brightness, bool smoothly, TimePoint now);
    [[nodiscard]] bool canChange(DisplayId id, TimePoint now);
    /// Does nothing for a display that is not built in.
    bool enableAmbientLight(DisplayId id, bool enable, TimePoint now);
    /// From now on every display is to have its own level, and only that is worked on.
    void beginFinishing(TimePoint now);
    /// Waits until every display that can be reached has what it is to have; false at `deadline`.
    [[nodiscard]] bool awaitSettled(TimePoint deadline);

    // For whoever does the work.

    /// The most urgent job that is due, else the one that is due next; nothing: sleep.
    [[nodiscard]] std::optional<Job> nextJob(TimePoint now);
    /// The levels that have to be on disk before anything is written.
    [[nodiscard]] OwnLevels::Map levelsToKeep();
    /// Null where there is no backlight.
    [[nodiscard]] std::shared_ptr<const BacklightDevice> backlight();
    /// Takes the best backlight that there is now, else the one before, if it only cannot be read
    /// at the moment. Reads a few small files. Any thread.
    void lookForBacklight();
    /// Nothing: there is no way to talk to monitors.
    void monitorsFound(const std::optional<std::vector<Edid>>& monitors, TimePoint now);
    void monitorRead(DisplayId id, std::optional<MonitorValue> value, TimePoint now);
    /// False: the write of `raw` is wished for no more.
    [[nodiscard]] bool monitorWriteBegins(DisplayId id, std::uint16_t raw);
    void monitorWritten(DisplayId id, std::uint16_t raw, bool succeeded, TimePoint now);
    void ambientLightDone(bool off);
    [[nodiscard]] bool isPanelDue(TimePoint now);
    /// What to write to the backlight now, given what it says.
    [[nodiscard]] std::optional<unsigned int> panelStep(const BacklightReading& reading,
                                                        TimePoint now);
    void panelWritten(unsigned int value, bool succeeded, TimePoint now);

private:
    [[nodiscard]] bool isMonitor(const AttachedDisplay& display) const;
    [[nodiscard]] bool canChange(const DisplayEntry* entry) const;
    [[nodiscard]] bool isSettled();
    void resumeFrom(OwnLevels::From from);
    void workDone();
    void replaceBacklight(std::optional<BacklightDevice> backlight);
    void backlightMayHaveChanged();

    News& news_;
    EventDescriptor& wake_;
    OwnLevels& ownLevels_;
    const Hardware hardware_;
    std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    bool finishing_ = false;
    DisplayList displays_;
    bool monitorsCanBeReached_ = true; // until a look has found no way to
    PanelBrightness panel_; // one, however many panels: the kernel does not tell them apart
    std::shared_ptr<const BacklightDevice> backlight_;
    bool backlightStale_ = false; // it failed, or the displays have changed
    /// What the host was last told about canChange, also of displays that are not known.
    std::map<DisplayId, bool> answers_;
    std::optional<bool> ambientLightOff_; // asked for
    TimePoint ambientLightDue_;
};

} // namespace noctra::display_services
