#include "platform/linux/displayservices/MonitorBrightness.h"

#include <algorithm>
#include <cmath>

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

constexpr auto betweenCommands = 50ms;    // a monitor may lose a command that comes sooner
constexpr auto freshForAnswer = 1s;       // an older reading is still an answer, but renewed
constexpr auto freshForCompare = 2s;      // decides without a new reading whether to write
constexpr auto betweenRefreshes = 1s;     // also after a failed one
constexpr auto takesEffectWithin = 100ms; // of most monitors, after a write
constexpr auto slowEffectWithin = 300ms;  // of some; the second look
constexpr int looks = 2;                  // readings of something else that prove a refusal
constexpr int failuresThatTell = 3;       // in a row
// A monitor that took no write counts as one that can be changed again after this time.
constexpr auto newChanceAfter = 10s;

float fractionOf(std::uint16_t raw, std::uint16_t maximum) {
    return static_cast<float>(raw) / static_cast<float>(maximum);
}

} // namespace

std::uint16_t MonitorBrightness::rawOf(float level) const {
    return static_cast<std::uint16_t>(std::lround(static_cast<double>(level) * reading_->maximum));
}

bool MonitorBrightness::knowsValue(TimePoint now, bool finishing) const {
    return current_ && (finishing || now - readAt_ < freshForCompare);
}

/// Whether the monitor is known to have what is wished for.
bool MonitorBrightness::isThere(TimePoint now, bool finishing) const {
    return reading_ && !written_ && knowsValue(now, finishing) && reading_->raw == rawOf(*wanted_);
}

bool MonitorBrightness::isFailing() const {
    return readFailures_ >= failuresThatTell || writeFailures_ >= failuresThatTell;
}

bool MonitorBrightness::canChange() const {
    return reading_ && (current_ || wanted_) && !isFailing();
}

std::optional<float> MonitorBrightness::brightness(TimePoint now) {
    if (!wanted_ && (!current_ || now - readAt_ >= freshForAnswer))
        refreshWanted_ = true;
    if (!reading_ || readFailures_ >= failuresThatTell)
        return std::nullopt;
    if (wanted_) {
        const std::uint16_t onItsWay = rawOf(*wanted_);
        const bool inVain = refused_ == onItsWay && onItsWay > reading_->raw;
        return fractionOf(inVain ? reading_->raw : onItsWay, reading_->maximum);
    }
    if (!current_)
        return std::nullopt;
    answered_ = reading_->raw;
    return fractionOf(reading_->raw, reading_->maximum);
}

void MonitorBrightness::want(float level, bool putBack, TimePoint now) {
    if (putBack && own_ && reading_ && answeredOwn_ == rawOf(level))
        level = own_->fraction();
    if (wanted_ != level)
        retries_.reset();
    wanted_ = level;
    putBack_ = putBack;
    resumed_ = false;
    if (isThere(now, false))
        fulfilled();
}

void MonitorBrightness::resume(const OwnLevel& own) {
    own_ = own;
    wanted_ = own.fraction();
    putBack_ = true;
    resumed_ = true;
}

void MonitorBrightness::wantOwn(TimePoint now) {
    if (own_)
        want(own_->fraction(), true, now);
    else if (!putBack_)
        wanted_.reset(); // and nothing has been written for it
}

void MonitorBrightness::expectQuestion(TimePoint now) {
    if (isFailing() || !current_ || now - readAt_ >= freshForCompare)
        refreshWanted_ = true;
    retries_.hurry();
    if (!wanted_ && writeFailures_ >= failuresThatTell && now - writeFailedAt_ > newChanceAfter)
        writeFailures_ = failuresThatTell - 1;
}

void MonitorBrightness::comeBack() {
    readFailures_ = 0;
    writeFailures_ = 0;
    retries_.reset();
    nextRefresh_ = {};
    readAt_ = {}; // it may have been changed meanwhile
    refreshWanted_ = true;
}

std::optional<MonitorBrightness::Task> MonitorBrightness::plan(TimePoint now, bool finishing) {
    const auto task = [this](Step step, TimePoint due, std::uint16_t raw = 0) {
        return Task{step, raw, std::max(nextCommand_, due)};
    };
    if (wanted_ && isThere(now, finishing))
        fulfilled();
    if (wanted_ && reading_) {
        const std::uint16_t raw = rawOf(*wanted_);
        if (written_ == raw)
            return task(Step::verify, std::max(nextVerify_, retries_.due(finishing)));
        if (finishing || written_ || writeUnread_ || knowsValue(now, false))
            return task(Step::write, retries_.due(finishing), raw);
    }
    if (wanted_)
        return task(Step::compare, retries_.due(finishing));
    if (refreshWanted_ && !finishing)
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
    refreshWanted_ = false;
    writeUnread_ = false;
    if (readFailures_ > 0)
        retries_.hurry();
    readFailures_ = 0;
    compareWithWish(now);
}

/// A reading has come in: of a monitor that has been written to, or that is to be.
void MonitorBrightness::compareWithWish(TimePoint now) {
    if (refused_ == reading_->raw)
        refused_.reset();
    if (resumed_ && reading_->raw < rawOf(own_->fraction())) {
        // The earlier run held it at full; it has been set by hand since.
        own_.reset();
        wanted_.reset();
    }
    resumed_ = false;
    if (!wanted_)
        return;
    if (reading_->raw == rawOf(*wanted_)) {
        fulfilled();
    } else if (written_) {
        if (++mismatches_ < looks) {
            nextVerify_ = now + slowEffectWithin;
            return;
        }
        refused_ = written_;
        written_.reset();
        retries_.failed(now);
    }
}

/// What the monitor is to have in the end; by its own buttons it may get other levels meanwhile.
void MonitorBrightness::recordOwn() {
    if (own_)
        return;
    own_ = OwnLevel{putBack_ ? rawOf(*wanted_) : reading_->raw, reading_->maximum};
    answeredOwn_ = answered_;
}

void MonitorBrightness::fulfilled() {
    recordOwn();
    wanted_.reset();
    written_.reset();
    retries_.reset();
    if (putBack_ && reading_->raw == rawOf(own_->fraction())) {
        own_.reset();
        answeredOwn_.reset();
    }
}

/// The monitor counts in other units than before: what is known in the old ones means nothing now.
void MonitorBrightness::forgetRawValues() {
    written_.reset();
    refused_.reset();
    answered_.reset();
    answeredOwn_.reset();
}

void MonitorBrightness::readFailed(TimePoint now) {
    ++readFailures_;
    retries_.failed(now);
    // Readings fail now and then; the latest may be older than what its own buttons have set.
    const bool ownIsKnown = own_ || readFailures_ >= failuresThatTell;
    if (wanted_ && reading_ && ownIsKnown && !written_ && !writeUnread_) {
        writeUnread_ = true;
        retries_.hurry();
    }
    if (readFailures_ >= failuresThatTell) {
        current_ = false;
        refreshWanted_ = false;
    }
}

bool MonitorBrightness::writeBegins(std::uint16_t raw) {
    if (!wanted_ || rawOf(*wanted_) != raw)
        return false;
    recordOwn();
    current_ = false;
    written_.reset();
    answered_.reset();
    return true;
}

void MonitorBrightness::writeDone(std::uint16_t raw, bool succeeded, TimePoint now) {
    nextCommand_ = now + betweenCommands;
    if (succeeded) {
        written_ = raw;
        mismatches_ = 0;
        writeFailures_ = 0;
        writeUnread_ = false;
        nextVerify_ = now + takesEffectWithin;
        return;
    }
    refused_ = raw;
    writeFailedAt_ = now;
    ++writeFailures_;
    retries_.failed(now);
}

} // namespace noctra::display_services
