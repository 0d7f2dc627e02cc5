#pragma once

#include <chrono>
#include <optional>

#include "platform/linux/backlight/BacklightDevices.h"
#include "platform/linux/displayservices/OwnLevels.h"
#include "platform/linux/displayservices/Retries.h"

namespace noctra::display_services {

/// The level that the built-in panel's backlight is to have, the one that was its own, and which
/// value is to be written next. No thread of its own and no clock; whoever uses it takes turns.
///
/// A wish stays until the backlight's setting is what is wished for, or a newer wish replaces it.
/// The setting is what is recorded and put back; what the hardware says of itself may be on another
/// scale, and only shows that a write has had no effect.
class PanelBrightness {
public:
    /// A backlight with this highest value is there; 0: none. It may be another one than before.
    void setMaximum(unsigned int maximum);

    /// Replaces what was wished for. `level` from 0.0 to 1.0; `smoothly` in small steps, else it is
    /// put back.
    void want(float level, bool smoothly);
    /// An earlier run ended before it had put back this level, the backlight's own.
    void resume(const OwnLevel& own);
    /// Wishes for the backlight's own level, and for nothing else.
    void wantOwn();
    /// The level, 0.0 to 1.0, of a backlight that says `reading`: the wish that is being worked
    /// off, unless it is for more and the last write failed, else the setting. Where the last write
    /// to a higher level has not moved the hardware at all, the level before it.
    [[nodiscard]] std::optional<float> brightness(const BacklightReading& reading) const;

    /// There is a backlight, and the last three writes have not failed, nor the only one.
    [[nodiscard]] bool canChange() const { return maximum_ > 0 && failures_ < failuresThatTell; }
    /// Somebody asks whether the backlight can be changed: it is tried out where that is not known,
    /// by writing what it has. What failed is tried again soon.
    void expectQuestion();
    /// A wish is being worked off.
    [[nodiscard]] bool isPending() const { return wanted_.has_value(); }
    /// The level that the backlight had when the program first wished for one, until that has been
    /// put back.
    [[nodiscard]] const std::optional<OwnLevel>& own() const { return own_; }

    /// When the next step comes; nothing when there is none. Once the process is `finishing`, steps
    /// come sooner and only where a wish needs them.
    [[nodiscard]] std::optional<TimePoint> due(bool finishing) const;
    /// What to write now, to a backlight that says `reading`; nothing when this step changes
    /// nothing. What `own` says then has to be kept before the value is written. Once the process
    /// is `finishing`, the whole way at once.
    std::optional<unsigned int> step(const BacklightReading& reading, TimePoint now,
                                     bool finishing);
    /// The outcome of a write of `value`. True when it began or ended the way to a level.
    bool written(unsigned int value, bool succeeded, TimePoint now);

private:
    static constexpr int failuresThatTell = 3;

    struct Ramp {
        unsigned int from;
        TimePoint begun;
    };

    [[nodiscard]] unsigned int rawOf(float level) const;
    [[nodiscard]] float fractionOf(unsigned int raw) const;
    void fulfilled();
    std::optional<unsigned int> rampStep(unsigned int from, unsigned int target, TimePoint now);

    unsigned int maximum_ = 0;
    std::optional<float> wanted_;
    bool smoothly_ = false;
    bool begun_ = false; ///< something has been written for this wish
    std::optional<Ramp> ramp_;
    TimePoint nextStep_;

    std::optional<OwnLevel> own_;
    bool resumed_ = false; ///< own_ is an earlier run's, and has not been compared
    /// What the backlight said before the first write for the newest wish that needed one, and what
    /// was written last.
    BacklightReading before_;
    std::optional<unsigned int> lastWritten_;
    bool justWritten_ = false; ///< and no step has been made since

    bool uncertain_ = false; ///< a write that failed may still be carried out
    bool probing_ = false;   ///< to find out whether the backlight can be written
    bool proved_ = false;    ///< a write has succeeded
    int failures_ = 0;       ///< in a row
    Retries retries_{std::chrono::milliseconds(100), std::chrono::seconds(30)};
};

} // namespace noctra::display_services
