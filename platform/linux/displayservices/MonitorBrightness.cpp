#include "platform/linux/displayservices/MonitorBrightness.h"

#include <algorithm>
#include <cmath>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

constexpr auto betweenCommands = 50ms;    // a monitor may lose a command that comes sooner
constexpr auto freshForAnswer = 1s;       // an older reading is still an answer, but renewed
constexpr auto freshForCompare = 2s;      // decides without a new reading whether to write
constexpr auto betweenTries = 300ms;      // after a failed write, compare or verify
constexpr auto betweenRefreshes = 1s;     // also after a failed one
constexpr auto takesEffectWithin = 100ms; // of most monitors, after a write
constexpr auto slowEffectWithin = 300ms;  // of some; the second look
constexpr int looks = 2;                  // readings of something else that prove a refusal
constexpr int triesInARow = 3;
// A monitor that has gone back twice within this time of a write is watched for a while before it
// is believed again: it would be written to for ever.
constexpr auto holdsAfter = 15s;
constexpr int revertsThatTell = 2;
constexpr auto watchedFor = 1500ms;

float fractionOf(const MonitorValue& value) {
    return static_cast<float>(value.raw) / static_cast<float>(value.maximum);
}

} // namespace

std::uint16_t MonitorBrightness::rawOf(float brightness) const {
    return static_cast<std::uint16_t>(
        std::lround(static_cast<double>(brightness) * reading_->maximum));
}

bool MonitorBrightness::knowsValue(TimePoint now, bool finishing) const {
    return current_ && (finishing || now - readAt_ < freshForCompare);
}

/// Whether a write of `raw` would change nothing, as far as is known.
bool MonitorBrightness::isAt(std::uint16_t raw, TimePoint now, bool finishing) const {
    if (written_)
        return *written_ == raw;
    return knowsValue(now, finishing) && reading_->raw == raw;
}

std::optional<float> MonitorBrightness::brightness(TimePoint now) {
    const bool busy = wanted_ || written_;
    if (!busy && (failed_ || !current_ || now - readAt_ >= freshForAnswer))
        refreshWanted_ = true;
    if (failed_ || !reading_)
        return std::nullopt;
    if (busy) {
        const std::uint16_t onItsWay = wanted_ ? rawOf(*wanted_) : *written_;
        return fractionOf({refused_ == onItsWay ? reading_->raw : onItsWay, reading_->maximum});
    }
    if (!current_)
        return std::nullopt;
    answered_ = reading_->raw;
    return fractionOf(*reading_);
}

void MonitorBrightness::request(float brightness, TimePoint now) {
    if (wanted_ != brightness) {
        writeFailures_ = 0;
        nextTry_ = {};
    }
    wanted_ = brightness;
    if (reading_ && moved_ && rawOf(brightness) == moved_->answered) {
        wanted_ = fractionOf({moved_->found, reading_->maximum});
        moved_.reset();
    }
    if (reading_ && !failed_ && isAt(rawOf(*wanted_), now, false))
        wanted_.reset();
}

void MonitorBrightness::expectQuestion(TimePoint now) {
    if (failed_ || (current_ && now - readAt_ >= freshForCompare))
        refreshWanted_ = true;
}

void MonitorBrightness::forgive() {
    failed_ = false;
    readFailures_ = 0;
    writeFailures_ = 0;
    nextTry_ = {};
    nextRefresh_ = {};
    if (!current_)
        refreshWanted_ = true;
}

std::optional<MonitorBrightness::Task> MonitorBrightness::plan(TimePoint now, bool finishing) {
    const auto task = [this](Step step, TimePoint due, std::uint16_t raw = 0) {
        return Task{step, raw, std::max(nextCommand_, due)};
    };
    if (wanted_ && reading_ && isAt(rawOf(*wanted_), now, finishing))
        wanted_.reset();
    if (wanted_) {
        if (reading_ && (finishing || written_ || writeUnread_ || knowsValue(now, false)))
            return task(Step::write, nextTry_, rawOf(*wanted_));
        return task(Step::compare, nextTry_);
    }
    if (finishing)
        return std::nullopt;
    if (written_)
        return task(Step::verify, nextVerify_);
    if (refreshWanted_)
        return task(Step::refresh, nextRefresh_);
    return std::nullopt;
}

void MonitorBrightness::readDone(std::optional<MonitorValue> value, TimePoint now) {
    nextCommand_ = now + betweenCommands;
    nextRefresh_ = now + betweenRefreshes;
    if (!value || value->maximum == 0) {
        readFailed(now);
        return;
    }
    if (reading_ && reading_->maximum != value->maximum)
        forgetRawValues();
    reading_ = MonitorValue{std::min(value->raw, value->maximum), value->maximum};
    readAt_ = now;
    current_ = true;
    failed_ = false;
    readFailures_ = 0;
    refreshWanted_ = false;
    writeUnread_ = false;
    // Only on the way to full, and from something else: then what was answered will be wanted back.
    if (wanted_ && rawOf(*wanted_) == reading_->maximum && !written_ && !moved_ && answered_ &&
        *answered_ != reading_->raw && *answered_ != reading_->maximum)
        moved_ = Moved{*answered_, reading_->raw};
    if (written_)
        checkWritten(now);
    else if (held_)
        checkHeld(now);
}

/// The monitor counts in other units than before: what is known in the old ones means nothing now.
void MonitorBrightness::forgetRawValues() {
    written_.reset();
    held_.reset();
    refused_.reset();
    answered_.reset();
    moved_.reset();
}

void MonitorBrightness::readFailed(TimePoint now) {
    ++readFailures_;
    nextVerify_ = now + betweenTries;
    nextTry_ = now + betweenTries;
    if (wanted_ && reading_) {
        writeUnread_ = true;
        nextTry_ = {};
    }
    if (readFailures_ < triesInARow)
        return;
    failed_ = true;
    current_ = false;
    refreshWanted_ = false;
    written_.reset();
    if (!reading_)
        wanted_.reset(); // its units are unknown
}

/// A reading has come in after a write.
void MonitorBrightness::checkWritten(TimePoint now) {
    if (reading_->raw == *written_) {
        held_ = written_;
        if (refused_ == written_)
            refused_.reset();
        written_.reset();
    } else if (++mismatches_ >= looks) {
        refused_ = written_;
        written_.reset();
    } else {
        nextVerify_ = now + slowEffectWithin;
    }
}

/// A reading has come in of a monitor that took the last write.
void MonitorBrightness::checkHeld(TimePoint now) {
    const bool soon = now - writtenAt_ < holdsAfter;
    if (reading_->raw != *held_) {
        reverts_ = soon ? reverts_ + 1 : 0;
        refused_ = held_;
        held_.reset();
    } else if (!soon) {
        reverts_ = 0;
    }
}

void MonitorBrightness::writeDone(std::uint16_t raw, bool succeeded, TimePoint now) {
    nextCommand_ = now + betweenCommands;
    const bool stillWanted = wanted_ && rawOf(*wanted_) == raw;
    if (succeeded) {
        current_ = false;
        answered_.reset();
        written_ = raw;
        held_.reset();
        writtenAt_ = now;
        mismatches_ = 0;
        writeFailures_ = 0;
        nextVerify_ = now + (reverts_ >= revertsThatTell ? watchedFor : takesEffectWithin);
        if (stillWanted)
            wanted_.reset();
        return;
    }
    nextTry_ = now + betweenTries;
    if (++writeFailures_ < triesInARow)
        return;
    failed_ = true;
    current_ = false;
    refused_ = raw;
    writeFailures_ = 0;
    if (stillWanted)
        wanted_.reset();
}

} // namespace noctra::display_services
