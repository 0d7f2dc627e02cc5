#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace noctra::display_services {

using TimePoint = std::chrono::steady_clock::time_point;

/// A monitor's brightness in its own units.
struct MonitorValue {
    std::uint16_t raw = 0;
    std::uint16_t maximum = 0; ///< full brightness; a reading with 0 is none
};

/// What is known of one external monitor's brightness, what has been asked for, and which command
/// the monitor is to get next. No thread of its own and no clock; whoever uses it takes turns.
///
/// Writes are rare: only the newest request counts, and nothing is written that the monitor already
/// has.
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

    /// The brightness, 0.0 to 1.0: the latest reading, or what has been asked for since, until it
    /// has been read back; but a value that the monitor did not take or hold before is not answered
    /// until it has been read. Nothing before the first reading and when the monitor does not
    /// answer. Wishes for a new reading when the latest is old.
    std::optional<float> brightness(TimePoint now);
    /// `brightness` from 0.0 to 1.0.
    void request(float brightness, TimePoint now);
    /// A reading has succeeded, and since then not three commands of a kind in a row have failed.
    [[nodiscard]] bool canChange() const { return reading_ && !failed_; }
    [[nodiscard]] bool hasFailed() const { return failed_; }
    /// Somebody may soon want to know the brightness: wishes for a fresh reading.
    void expectQuestion(TimePoint now);
    /// Forgets failures: the monitor may have been plugged in again.
    void forgive();

    /// The command that comes next, at its `due` time; nothing when there is nothing to do. Once
    /// the process is `finishing`, only what a request needs.
    std::optional<Task> plan(TimePoint now, bool finishing);
    /// The outcome of a compare, verify or refresh; nothing: it failed.
    void readDone(std::optional<MonitorValue> value, TimePoint now);
    /// The outcome of a write of `raw`.
    void writeDone(std::uint16_t raw, bool succeeded, TimePoint now);
    /// True while a request has not been written and has not failed for good.
    [[nodiscard]] bool isPending() const { return wanted_.has_value(); }

private:
    [[nodiscard]] std::uint16_t rawOf(float brightness) const;
    [[nodiscard]] bool knowsValue(TimePoint now, bool finishing) const;
    [[nodiscard]] bool isAt(std::uint16_t raw, TimePoint now, bool finishing) const;
    void forgetRawValues();
    void readFailed(TimePoint now);
    void checkWritten(TimePoint now);
    void checkHeld(TimePoint now);

    std::optional<MonitorValue> reading_;
    TimePoint readAt_;
    bool current_ = false; // nothing has been written since reading_

    std::optional<float> wanted_;
    bool writeUnread_ = false; // write without comparing: the monitor cannot be read

    std::optional<std::uint16_t> written_; // not read back yet
    std::optional<std::uint16_t> held_;    // written, and found there since
    std::optional<std::uint16_t> refused_; // written, and not found there, or not for long
    TimePoint writtenAt_;
    int mismatches_ = 0; // readings of something else since the write
    int reverts_ = 0;    // times that the monitor went back soon, in a row

    /// The monitor was changed by its own buttons between the answer that somebody may want back
    /// and the first write: the value that was answered, and the one that was found.
    struct Moved {
        std::uint16_t answered;
        std::uint16_t found;
    };
    std::optional<std::uint16_t> answered_; // last
    std::optional<Moved> moved_;

    bool refreshWanted_ = true;
    bool failed_ = false;
    int readFailures_ = 0; // in a row
    int writeFailures_ = 0;

    TimePoint nextCommand_; // none before
    TimePoint nextTry_;     // no write or compare before
    TimePoint nextVerify_;
    TimePoint nextRefresh_;
};

} // namespace noctra::display_services
