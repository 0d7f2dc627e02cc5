#include "platform/linux/displayservices/DisplayList.h"

#include <algorithm>
#include <array>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

// A monitor that has just been plugged in or woken may not answer for some seconds.
constexpr std::array<std::chrono::seconds, 2> furtherLooks{2s, 8s};
// Looking costs every bus some hundred milliseconds, and events come in bursts.
constexpr auto betweenLooks = 2s;
// Nor is there a look for somebody who asks on his way out.
constexpr auto beforeFirstLook = 100ms;
constexpr auto shortAbsence = 2s; // a change of mode; the monitor is still the same

void lookAgain(DisplayEntry& entry, TimePoint now) {
    // Without an EDID it could not be told from the others.
    entry.lookFor = !entry.output.builtIn && entry.output.edid;
    entry.looks = 0;
    entry.nextLook = now + beforeFirstLook;
}

void comeBack(DisplayEntry& entry, TimePoint now) {
    const bool wasAway = entry.goneSince && now - *entry.goneSince > shortAbsence;
    entry.goneSince.reset();
    if (wasAway || !entry.monitor || entry.brightness.hasFailed())
        lookAgain(entry, now);
    entry.brightness.forgive();
}

void noteNotFound(DisplayEntry& entry, TimePoint now) {
    entry.monitor.reset();
    entry.brightness = MonitorBrightness();
    const auto look = static_cast<std::size_t>(entry.looks++);
    entry.lookFor = entry.output.edid && !entry.goneSince && look < furtherLooks.size();
    if (entry.lookFor)
        entry.nextLook = now + furtherLooks.at(look);
}

} // namespace

void DisplayList::replace(const std::vector<Output>& attached, TimePoint now) {
    for (DisplayEntry& entry : entries_)
        if (!entry.goneSince &&
            std::none_of(attached.begin(), attached.end(),
                         [&](const Output& output) { return output.id == entry.output.id; }))
            entry.goneSince = now;
    for (const Output& output : attached) {
        DisplayEntry* known = find(output.id);
        if (known != nullptr && known->output.builtIn == output.builtIn &&
            known->output.edid == output.edid) {
            comeBack(*known, now);
            continue;
        }
        DisplayEntry& entry = known != nullptr ? *known : entries_.emplace_back();
        const bool answered = entry.answered;
        entry = {};
        entry.output = output;
        entry.answered = answered;
        lookAgain(entry, now);
    }
}

void DisplayList::assign(const std::vector<Edid>& monitors, TimePoint now) {
    looksAgain_ = now + betweenLooks;
    std::vector<bool> taken(monitors.size(), false);
    for (const bool attached : {true, false})
        for (DisplayEntry& entry : entries_) {
            if (entry.output.builtIn || entry.goneSince.has_value() == attached)
                continue;
            std::size_t i = 0;
            while (i < monitors.size() && (taken[i] || entry.output.edid != monitors[i]))
                ++i;
            if (i == monitors.size()) {
                noteNotFound(entry, now);
                continue;
            }
            taken[i] = true;
            entry.monitor = i;
            entry.lookFor = false;
        }
}

void DisplayList::assignNone() {
    for (DisplayEntry& entry : entries_) {
        entry.monitor.reset();
        entry.brightness = MonitorBrightness();
        entry.lookFor = false;
    }
}

DisplayEntry* DisplayList::find(DisplayId id) {
    const auto found =
        std::find_if(entries_.begin(), entries_.end(),
                     [id](const DisplayEntry& entry) { return entry.output.id == id; });
    return found != entries_.end() ? &*found : nullptr;
}

std::optional<TimePoint> DisplayList::nextLook(bool finishing) const {
    std::optional<TimePoint> next;
    for (const DisplayEntry& entry : entries_)
        if (entry.asked && entry.lookFor && (!finishing || entry.brightness.isPending()))
            next = std::min(next.value_or(TimePoint::max()), std::max(entry.nextLook, looksAgain_));
    return next;
}

} // namespace noctra::display_services
