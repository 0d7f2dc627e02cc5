#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "platform/linux/backlight/BacklightDevices.h"
#include "platform/linux/displayservices/DisplayList.h"
#include "platform/linux/displayservices/EventDescriptor.h"
#include "platform/linux/displayservices/News.h"
#include "platform/linux/displayservices/PanelBrightness.h"

namespace noctra::display_services {

/// One thing for the worker to do.
struct Job {
    /// The most urgent first: what has been asked for before what somebody would like to know.
    enum class Kind { panel, write, compare, ambientLight, look, verify, refresh };
    Kind kind = Kind::panel;
    TimePoint due = {};
    DisplayId display = 0;   ///< of a write, compare, verify or refresh
    std::size_t monitor = 0; ///< the same, for MonitorControl
    std::uint16_t raw = 0;   ///< of a write
    bool off = false;        ///< of ambientLight: it is to be off
};

/// What the callers of the library and its worker share: the displays, what is known of them and
/// what has been asked for. Any thread; no operation waits, but for those that say so.
class DisplayRegistry {
public:
    /// `wake` is raised when there may be something new to do. Both must outlive the object.
    DisplayRegistry(News& news, EventDescriptor& wake) : news_(news), wake_(wake) {}

    // For the callers. An operation gives nothing, or false, for a display that has never been
    // attached.

    /// Waits until the displays are known, at most `limit`.
    void awaitDisplays(std::chrono::milliseconds limit);
    /// 0.0 to 1.0; reads the panel's backlight from its file, other displays' from memory.
    [[nodiscard]] std::optional<float> brightness(DisplayId id, TimePoint now);
    /// `brightness` from 0.0 to 1.0. False where there is nothing to set it with.
    bool request(DisplayId id, float brightness, bool smoothly, TimePoint now);
    [[nodiscard]] bool canChange(DisplayId id, TimePoint now);
    /// Does nothing for a display that is not built in.
    bool enableAmbientLight(DisplayId id, bool enable, TimePoint now);
    /// From now on only what has been asked for is done.
    void beginFinishing();
    /// Waits until all that has been asked for is done or has failed; false at `deadline`.
    [[nodiscard]] bool awaitSettled(TimePoint deadline);

    // For whoever does the work.

    /// The most urgent job that is due, else the one that is due next; nothing: sleep.
    [[nodiscard]] std::optional<Job> nextJob(TimePoint now);
    void replaceDisplays(const std::vector<Output>& attached,
                         std::optional<BacklightDevice> backlight, TimePoint now);
    /// Nothing: there is no way to talk to monitors.
    void monitorsFound(const std::optional<std::vector<Edid>>& monitors, TimePoint now);
    void monitorRead(DisplayId id, std::optional<MonitorValue> value, TimePoint now);
    void monitorWritten(DisplayId id, std::uint16_t raw, bool succeeded, TimePoint now);
    void ambientLightDone(bool off);
    /// Null where there is no backlight.
    [[nodiscard]] std::shared_ptr<const BacklightDevice> backlight();
    [[nodiscard]] bool isPanelDue(TimePoint now);
    /// What to write to the backlight now, given what it has.
    [[nodiscard]] std::optional<unsigned int> panelStep(std::optional<unsigned int> current,
                                                        TimePoint now);
    void panelWritten(unsigned int value, bool succeeded, TimePoint now);

private:
    [[nodiscard]] bool canChange(const DisplayEntry& entry) const;
    [[nodiscard]] bool isSettled();
    void workDone();

    News& news_;
    EventDescriptor& wake_;
    std::mutex mutex_; // guards everything below
    std::condition_variable changed_;
    bool displaysKnown_ = false;
    bool finishing_ = false;
    DisplayList displays_;
    PanelBrightness panel_; // one, however many panels: the kernel does not tell them apart
    std::shared_ptr<const BacklightDevice> backlight_;
    std::optional<bool> ambientLightOff_; // asked for
    TimePoint ambientLightDue_;
};

} // namespace noctra::display_services
