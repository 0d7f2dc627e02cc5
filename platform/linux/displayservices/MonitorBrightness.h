#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

#include "platform/linux/displayservices/OwnLevels.h"
#include "platform/linux/displayservices/Retries.h"

namespace noctra::display_services {

/// A monitor's brightness in its own units.
struct MonitorValue {
    std::uint16_t raw = 0;
    std::uint16_t maximum = 0; ///< full brightness; a reading with 0 is none
};

/// What is known of one external monitor's brightness, the level that it is to have, the one that
/// was its own, and which command it is to get next. No thread of its own and no clock; whoever
/// uses it takes turns.
///
/// A wish for a level stays until a reading made after the last write has found that level, or a
/// newer wish replaces it. Writes are rare, since they wear a monitor's memory: only the newest
/// wish counts, and nothing is written that the monitor is known to have.
class MonitorBrightness {
public:
    /// The most urgent first.
    enum class Step {
        write,   ///< of a value
        compare, ///< a reading that decides whether to write
        verify,  ///< a reading of what has been written
        refresh, ///< a reading because somebody wanted to know
    };
    struct Task {
        Step step;
        std::uint16_t raw; ///< what to write
        TimePoint due;
    };

    /// The brightness, 0.0 to 1.0: the latest reading, or the wish that is being worked off, so
    /// that a level that is about to be put back is not lost to whoever asks. But a wish for more
    /// that was in vain so far (a write failed, or a reading after it found something else) is not
    /// claimed: then it is the latest reading. Nothing before the first reading
    /// and while the monitor does not answer. Asks for a new reading when the latest is old.
    std::optional<float> brightness(TimePoint now);
    /// Replaces what was wished for. `level` from 0.0 to 1.0; where `putBack`, it is one that
    /// `brightness` said before.
    void want(float level, bool putBack, TimePoint now);
    /// An earlier run ended before it had put back this level, the monitor's own.
    void resume(const OwnLevel& own);
    /// Wishes for the monitor's own level, and for nothing else.
    void wantOwn(TimePoint now);

    /// `brightness` has an answer, and neither have the last three readings failed nor the last
    /// three writes.
    [[nodiscard]] bool canChange() const;
    /// The last three readings or writes have failed.
    [[nodiscard]] bool isFailing() const;
    /// A wish is being worked off.
    [[nodiscard]] bool isPending() const { return wanted_.has_value(); }
    /// The level that the monitor had when the program first wished for one, until that has been
    /// put back.
    [[nodiscard]] const std::optional<OwnLevel>& own() const { return own_; }

    /// Somebody asks about the monitor: what failed is tried again soon, and an old reading is
    /// renewed.
    void expectQuestion(TimePoint now);
    /// The monitor was away, or could not be reached, and is there again.
    void comeBack();

    /// The command that comes next, at its `due` time; nothing when there is nothing to do. Once
    /// the process is `finishing`, only what a wish needs.
    std::optional<Task> plan(TimePoint now, bool finishing);
    /// The outcome of a compare, verify or refresh; nothing: it failed.
    void readDone(std::optional<MonitorValue> value, TimePoint now);
    /// A write of `raw` is about to be made. From here to its end nothing is known of the monitor,
    /// and `own` is what has to be kept. False: it is wished for no more, and is not to be made.
    [[nodiscard]] bool writeBegins(std::uint16_t raw);
    /// The outcome of a write of `raw`.
    void writeDone(std::uint16_t raw, bool succeeded, TimePoint now);

private:
    [[nodiscard]] std::uint16_t rawOf(float level) const;
    [[nodiscard]] bool knowsValue(TimePoint now, bool finishing) const;
    [[nodiscard]] bool isThere(TimePoint now, bool finishing) const;
    void forgetRawValues();
    void readFailed(TimePoint now);
    void compareWithWish(TimePoint now);
    void recordOwn();
    void fulfilled();

    std::optional<MonitorValue> reading_;
    TimePoint readAt_;
    bool current_ = false; // no write has begun since reading_

    std::optional<float> wanted_;
    bool putBack_ = false;                 // the wish is for what it had
    std::optional<std::uint16_t> written_; // not read back yet
    std::optional<std::uint16_t> refused_; // not taken, or not found after a write
    int mismatches_ = 0;                   // readings of something else since the write
    bool writeUnread_ = false;             // write without comparing: the monitor cannot be read

    std::optional<OwnLevel> own_;
    bool resumed_ = false;                  // own_ is an earlier run's, and has not been compared
    std::optional<std::uint16_t> answered_; // last
    /// What was answered before the write that began with own_: the monitor's own buttons may have
    /// changed it in between, and who puts it back only knows this.
    std::optional<std::uint16_t> answeredOwn_;

    bool refreshWanted_ = true;
    int readFailures_ = 0; // in a row
    int writeFailures_ = 0;
    TimePoint writeFailedAt_;
    Retries retries_{std::chrono::milliseconds(300), std::chrono::seconds(30)};

    TimePoint nextCommand_; // none before
    TimePoint nextVerify_;
    TimePoint nextRefresh_;
};

} // namespace noctra::display_services
