#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "platform/DisplayIdentity.h"
#include "platform/linux/displayservices/MonitorBrightness.h"

namespace noctra::display_services {

/// A display that is attached or has been. What is known of it, and what has been asked for, stays
/// while it is away.
struct DisplayEntry {
    AttachedDisplay display;
    std::optional<TimePoint> goneSince; ///< nothing: it is attached

    // Of an external one:
    MonitorBrightness brightness;
    std::optional<std::size_t> monitor; ///< its place in the latest list of MonitorControl
    bool asked = false;                 ///< somebody wanted to know about it, or to set it
    bool lookFor = false;               ///< it is to be found among the monitors
    int looks = 0;                      ///< without finding it, since somebody asked or it came
    Retries looksAgain{std::chrono::seconds(2), std::chrono::minutes(1)};
    TimePoint nextLook;

    /// Only what has been asked for is done for a display, and for one that is away only what it
    /// takes to fulfil a wish.
    [[nodiscard]] bool hasWork() const {
        return asked && monitor && (!goneSince || brightness.isPending());
    }
};

/// The displays, and which of the monitors that can be talked to is which of them. No thread and no
/// clock of its own.
class DisplayList {
public:
    /// Takes over the attached displays. Monitors that failed or were not found get a new chance.
    void replace(std::span<const AttachedDisplay> attached, TimePoint now);
    /// Takes over the monitors that have been found. Each belongs to one display: of displays with
    /// the same EDID, to the first, and so on.
    void assign(const std::vector<Edid>& monitors, TimePoint now);
    /// Somebody asks whether the brightness of the external display `entry` can be set.
    void expectQuestion(DisplayEntry& entry, TimePoint now);

    /// Null for a display that has never been attached.
    [[nodiscard]] DisplayEntry* find(DisplayId id);
    /// When the monitors are to be looked for; nothing when nobody waits for that. Once the process
    /// is `finishing`, only for a display that is to be written to.
    [[nodiscard]] std::optional<TimePoint> nextLook(bool finishing) const;
    [[nodiscard]] std::vector<DisplayEntry>& entries() { return entries_; }

private:
    std::vector<DisplayEntry> entries_;
    TimePoint lastLook_;
};

} // namespace noctra::display_services
