#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/desktop/support/Tables.h"

namespace noctra::desktop {

/// What the program and the machine may look like now. Where an action leaves it open what comes of
/// it (a signal in the middle of a save, two callers at once), all that is allowed is kept; what is
/// found is what is expected from then on.
struct SoakModel {
    // The filter, as the program says it is.
    std::set<bool> enabled{false};
    double warmth = 0;
    double brightness = 1;
    bool extremeDim = false;
    bool handled = false; ///< by mouse: any values within their ranges

    // Displays: the tables that are a CRTC's own, and those that an output left with.
    std::map<int, std::vector<Tables>> own;
    std::map<int, std::vector<Tables>> leftWith;
    bool displaysChange = false; ///< a refresh of the displays is on its way
    bool recordDoubtful = false; ///< it could not be used when it was needed, as the log says
    bool recordGone = false;     ///< until the next write makes it anew

    // PWM-safe mode and the backlight, in thousandths.
    std::set<bool> locked{false};
    std::set<int> levels;    ///< while the mode is off, and after it
    int backlightEvents = 0; ///< in this round
    bool builtInLit = true;  ///< throughout this round

    // The preferences file.
    std::string saved;                 ///< what it held when all was quiet last
    bool diskChanges = false;          ///< in this round: some of what is new may be saved already
    bool preferencesGone = false;      ///< with their folder
    std::optional<bool> login = false; ///< whether there is an autostart entry, where that is sure
    bool loginAsked = false;           ///< for another, in this round

    // Since the program was started.
    std::size_t ignoredUrls = 0;
    bool urlsMayBeLost = false; ///< in this round, with a bus
    bool mayEndByHand = false;  ///< the emergency stop is where somebody clicked

    int crashes = 0; ///< in all, each of which may leave one temporary file

    void anyFilter() { enabled = {false, true}; }
    void anyMode() { locked = {false, true}; }
};

} // namespace noctra::desktop
