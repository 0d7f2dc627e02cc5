#include "platform/linux/displayservices/DisplayList.h"

#include <algorithm>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

// So often is a monitor looked for that nobody waits for; it may be waking up.
constexpr int mostLooks = 3;
// Looking costs every bus some hundred milliseconds, and events come in bursts.
constexpr auto betweenLooks = 2s;
constexpr auto betweenLastLooks = 300ms; // when the process is finishing
// Nor is there a look for somebody who asks on his way out.
constexpr auto beforeFirstLook = 100ms;
constexpr auto shortAbsence = 2s; // a change of mode; the monitor is still the same

void lookAgain(DisplayEntry& entry, TimePoint now) {
    // Without an EDID it could not be told from the others.
    entry.lookFor = !entry.display.builtIn && entry.display.edid;
    entry.looks = 0;
    entry.looksAgain.reset();
    entry.nextLook = now + beforeFirstLook;
}

/// The display is attached, as it was before, or again.
void update(DisplayEntry& entry, const AttachedDisplay& display, TimePoint now) {
    const bool wasAway = entry.goneSince && now - *entry.goneSince > shortAbsence;
    const bool moved = entry.display.connector != display.connector;
    const auto edid = display.edid ? display.edid : entry.display.edid;
    entry.display = display;
    entry.display.edid = edid;
    entry.goneSince.reset();
    if (wasAway || moved || !entry.monitor || entry.brightness.isFailing())
        lookAgain(entry, now);
    if (wasAway || moved)
        entry.brightness.comeBack();
}

/// A monitor that is to be written to may be one that has changed its bus without a word.
bool isLost(const DisplayEntry& entry) {
    return entry.monitor && entry.brightness.isPending() && entry.brightness.isFailing();
}

} // namespace

void DisplayList::replace(std::span<const AttachedDisplay> attached, TimePoint now) {
    for (DisplayEntry& entry : entries_)
        if (!entry.goneSince &&
            !std::ranges::count(attached, entry.display.id, &AttachedDisplay::id))
            entry.goneSince = now;
    for (const AttachedDisplay& display : attached) {
        if (DisplayEntry* known = find(display.id)) {
            update(*known, display, now);
            continue;
        }
        DisplayEntry& entry = entries_.emplace_back();
        entry.display = display;
        lookAgain(entry, now);
    }
}

void DisplayList::assign(const std::vector<Edid>& monitors, TimePoint now) {
    lastLook_ = now;
    std::vector<bool> taken(monitors.size(), false);
    for (const bool attached : {true, false})
        for (DisplayEntry& entry : entries_) {
            if (entry.display.builtIn || entry.goneSince.has_value() == attached)
                continue;
            std::size_t i = 0;
            while (i < monitors.size() && (taken[i] || entry.display.edid != monitors[i]))
                ++i;
            if (i == monitors.size()) {
                entry.monitor.reset();
                entry.lookFor = entry.display.edid.has_value();
                ++entry.looks;
            } else {
                taken[i] = true;
                if (!entry.monitor || entry.brightness.isFailing())
                    entry.brightness.comeBack();
                entry.monitor = i;
                entry.lookFor = false;
            }
            entry.looksAgain.failed(now);
            entry.nextLook = entry.looksAgain.due(false);
        }
}

void DisplayList::expectQuestion(DisplayEntry& entry, TimePoint now) {
    entry.asked = true;
    if (entry.lookFor && entry.looks >= mostLooks)
        lookAgain(entry, now);
    entry.brightness.expectQuestion(now);
}

DisplayEntry* DisplayList::find(DisplayId id) {
    const auto found = std::ranges::find_if(
        entries_, [id](const DisplayEntry& entry) { return entry.display.id == id; });
    return found != entries_.end() ? &*found : nullptr;
}

std::optional<TimePoint> DisplayList::nextLook(bool finishing) const {
    std::optional<TimePoint> next;
    for (const DisplayEntry& entry : entries_) {
        const bool pending = entry.brightness.isPending();
        // Once the process is finishing, one look is enough for a display that is away.
        const bool wanted = finishing ? pending && (!entry.goneSince || entry.looks == 0)
                                      : pending || (!entry.goneSince && entry.looks < mostLooks);
        const TimePoint soonest = lastLook_ + (finishing ? betweenLastLooks : betweenLooks);
        if (entry.asked && wanted && (entry.lookFor || isLost(entry)))
            next = std::min(next.value_or(TimePoint::max()),
                            finishing ? soonest : std::max(entry.nextLook, soonest));
    }
    return next;
}

} // namespace noctra::display_services
