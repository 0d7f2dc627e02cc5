#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/linux/displayservices/MonitorBrightness.h"
#include "platform/linux/displayservices/Output.h"

namespace noctra::display_services {

/// A display that is attached or has been. One that went away keeps its state: its brightness is
/// put back also while its output is switched off, and a change of mode looks like going and
/// coming back.
struct DisplayEntry {
    Output output;
    std::optional<TimePoint> goneSince; ///< nothing: it is attached

    // Of an external one:
    MonitorBrightness brightness;
    std::optional<std::size_t> monitor; ///< its place in the latest list of MonitorControl
    bool asked = false;                 ///< somebody wanted to know about it
    bool lookFor = false;               ///< it is to be found among the monitors
    int looks = 0;                      ///< that did not find it
    TimePoint nextLook;

    bool answered = false; ///< what the host was last told about canChange
};

/// The displays, and which of the monitors that can be talked to is which of them. No thread and no
/// clock of its own.
class DisplayList {
public:
    /// Takes over the attached displays. Monitors that failed or were not found get a new chance.
    void replace(const std::vector<Output>& attached, TimePoint now);
    /// Takes over the monitors that have been found. Each belongs to one display: of displays with
    /// the same EDID, to the first, and so on.
    void assign(const std::vector<Edid>& monitors, TimePoint now);

    /// There is no way to talk to monitors here.
    void assignNone();

    /// Null for a display that has never been attached.
    [[nodiscard]] DisplayEntry* find(DisplayId id);
    /// When the monitors are to be looked for; nothing when nobody waits for that. Once the process
    /// is `finishing`, only for a display that is to be written to.
    [[nodiscard]] std::optional<TimePoint> nextLook(bool finishing) const;
    [[nodiscard]] std::vector<DisplayEntry>& entries() { return entries_; }

private:
    std::vector<DisplayEntry> entries_;
    TimePoint looksAgain_; // no look before
};

} // namespace noctra::display_services
