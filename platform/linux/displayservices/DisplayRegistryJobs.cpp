// The worker's side of the registry.

#include <algorithm>
#include <tuple>
#include <utility>

#include "platform/linux/displayservices/DisplayRegistry.h"
#include "platform/linux/displayservices/HostFunctions.h"

namespace noctra::display_services {

namespace {

Job::Kind kindOf(MonitorBrightness::Step step) {
    switch (step) {
    case MonitorBrightness::Step::write:
        return Job::Kind::write;
    case MonitorBrightness::Step::compare:
        return Job::Kind::compare;
    case MonitorBrightness::Step::verify:
        return Job::Kind::verify;
    case MonitorBrightness::Step::refresh:
        return Job::Kind::refresh;
    }
    return Job::Kind::refresh;
}

/// Keeps the better of two: what is due before what is not, then the more urgent, then the older.
class Choice {
public:
    explicit Choice(TimePoint now) : now_(now) {}
    void offer(const Job& job) {
        if (!best_ || rank(job) < rank(*best_))
            best_ = job;
    }
    [[nodiscard]] const std::optional<Job>& best() const { return best_; }

private:
    [[nodiscard]] std::tuple<TimePoint, Job::Kind, TimePoint> rank(const Job& job) const {
        return {std::max(job.due, now_), job.kind, job.due};
    }
    const TimePoint now_;
    std::optional<Job> best_;
};

} // namespace

std::optional<Job> DisplayRegistry::nextJob(TimePoint now) {
    const std::lock_guard lock(mutex_);
    Choice choice(now);
    if (const auto due = panel_.due())
        choice.offer({.kind = Job::Kind::panel, .due = *due});
    if (ambientLightOff_)
        choice.offer(
            {.kind = Job::Kind::ambientLight, .due = ambientLightDue_, .off = *ambientLightOff_});
    if (const auto due = displays_.nextLook(finishing_))
        choice.offer({.kind = Job::Kind::look, .due = *due});
    for (DisplayEntry& entry : displays_.entries()) {
        if (!entry.monitor || !entry.asked || (entry.goneSince && !entry.brightness.isPending()))
            continue;
        if (const auto task = entry.brightness.plan(now, finishing_))
            choice.offer({.kind = kindOf(task->step),
                          .due = task->due,
                          .display = entry.output.id,
                          .monitor = *entry.monitor,
                          .raw = task->raw});
    }
    if (isSettled()) // planning may have found that nothing is left to do
        changed_.notify_all();
    return choice.best();
}

/// Tells the host what its answers of before are worth now, and who waits for the end.
void DisplayRegistry::workDone() {
    bool other = false;
    for (DisplayEntry& entry : displays_.entries()) {
        const bool now = canChange(entry);
        other = other || now != entry.answered;
        entry.answered = now;
    }
    if (other)
        news_.post(controllabilityChanged);
    changed_.notify_all();
}

void DisplayRegistry::replaceDisplays(const std::vector<Output>& attached,
                                      std::optional<BacklightDevice> backlight, TimePoint now) {
    const std::lock_guard lock(mutex_);
    displays_.replace(attached, now);
    panel_.setMaximum(backlight ? backlight->maximum : 0);
    backlight_ =
        backlight ? std::make_shared<const BacklightDevice>(*std::move(backlight)) : nullptr;
    displaysKnown_ = true;
    workDone();
}

void DisplayRegistry::monitorsFound(const std::optional<std::vector<Edid>>& monitors,
                                    TimePoint now) {
    const std::lock_guard lock(mutex_);
    if (monitors)
        displays_.assign(*monitors, now);
    else
        displays_.assignNone();
    workDone();
}

void DisplayRegistry::monitorRead(DisplayId id, std::optional<MonitorValue> value, TimePoint now) {
    const std::lock_guard lock(mutex_);
    if (DisplayEntry* entry = displays_.find(id))
        entry->brightness.readDone(value, now);
    workDone();
}

void DisplayRegistry::monitorWritten(DisplayId id, std::uint16_t raw, bool succeeded,
                                     TimePoint now) {
    const std::lock_guard lock(mutex_);
    if (DisplayEntry* entry = displays_.find(id))
        entry->brightness.writeDone(raw, succeeded, now);
    workDone();
}

void DisplayRegistry::ambientLightDone(bool off) {
    const std::lock_guard lock(mutex_);
    if (ambientLightOff_ == off) // else something else has been asked for meanwhile
        ambientLightOff_.reset();
    workDone();
}

std::shared_ptr<const BacklightDevice> DisplayRegistry::backlight() {
    const std::lock_guard lock(mutex_);
    return backlight_;
}

bool DisplayRegistry::isPanelDue(TimePoint now) {
    const std::lock_guard lock(mutex_);
    const auto due = panel_.due();
    return due && *due <= now;
}

std::optional<unsigned int> DisplayRegistry::panelStep(std::optional<unsigned int> current,
                                                       TimePoint now) {
    const std::lock_guard lock(mutex_);
    const auto value = panel_.step(current, now, finishing_);
    if (!value)
        workDone();
    return value;
}

void DisplayRegistry::panelWritten(unsigned int value, bool succeeded, TimePoint now) {
    const std::lock_guard lock(mutex_);
    if (panel_.written(value, succeeded, now))
        news_.post(backlightWritten);
    workDone();
}

} // namespace noctra::display_services
