#include "platform/linux/RandrChanges.h"

#include <algorithm>

namespace noctra {

namespace {

const RandrScreen* find(const std::vector<RandrScreen>& screens, DisplayId display) {
    const auto found = std::find_if(screens.begin(), screens.end(), [&](const auto& screen) {
        return screen.display.id == display;
    });
    return found == screens.end() ? nullptr : &*found;
}

DisplayChangeFlags flagsBetween(const RandrScreen* before, const RandrScreen& after) {
    if (before == nullptr)
        return displayAdded;
    DisplayChangeFlags flags = 0;
    if (before->x != after.x || before->y != after.y)
        flags |= displayMoved;
    if (before->mode != after.mode || before->rotation != after.rotation ||
        before->output != after.output || before->crtc != after.crtc ||
        before->gammaSize != after.gammaSize)
        flags |= displayModeSet;
    return flags;
}

} // namespace

std::vector<DisplayChange> changesBetween(const std::vector<RandrScreen>& before,
                                          const std::vector<RandrScreen>& after) {
    std::vector<DisplayChange> changes;
    for (const RandrScreen& screen : before)
        if (find(after, screen.display.id) == nullptr)
            changes.push_back({screen.display.id, displayRemoved});
    for (const RandrScreen& screen : after)
        if (const DisplayChangeFlags flags = flagsBetween(find(before, screen.display.id), screen))
            changes.push_back({screen.display.id, flags});
    return changes;
}

} // namespace noctra
