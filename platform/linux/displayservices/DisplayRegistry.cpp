#include "platform/linux/displayservices/DisplayRegistry.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <tuple>
#include <utility>

#include <unistd.h>

#include "platform/linux/displayservices/HostFunctions.h"

namespace noctra::display_services {

namespace {

using namespace std::chrono_literals;

// Off and at once on again, as when the controller is made only to be asked to restore, is nothing.
constexpr auto beforeAmbientLightGoesOff = 100ms;

const LevelOwner panelOwner{"panel", "-"};

LevelOwner levelOwnerOf(const AttachedDisplay& display) {
    std::array<char, 16> name{};
    std::snprintf(name.data(), name.size(), "edid-%08x", stableHash(*display.edid));
    std::string connector = display.connector;
    std::ranges::replace_if(
        connector, [](unsigned char c) { return c <= ' '; }, '_');
    return {name.data(), connector.empty() ? "-" : connector};
}

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

void DisplayRegistry::replaceDisplays(std::span<const AttachedDisplay> attached, TimePoint now) {
    const std::lock_guard lock(mutex_);
    displays_.replace(attached, now);
    for (DisplayEntry& entry : displays_.entries())
        entry.asked = entry.asked || answers_.contains(entry.display.id);
    // Of twins, the one that stayed where it was comes before one that may have been moved.
    resumeFrom(OwnLevels::From::sameConnector);
    resumeFrom(OwnLevels::From::anyConnector);
    backlightMayHaveChanged();
    workDone();
}

void DisplayRegistry::resumeFrom(OwnLevels::From from) {
    for (DisplayEntry& entry : displays_.entries()) {
        if (entry.goneSince || !isMonitor(entry.display) || entry.brightness.own())
            continue;
        if (const auto left = ownLevels_.take(levelOwnerOf(entry.display), from)) {
            entry.brightness.resume(*left);
            entry.asked = true;
        }
    }
}

std::optional<float> DisplayRegistry::brightness(DisplayId id, TimePoint now) {
    std::shared_ptr<const BacklightDevice> panel;
    {
        const std::lock_guard lock(mutex_);
        DisplayEntry* entry = displays_.find(id);
        if (entry == nullptr || entry->goneSince)
            return std::nullopt;
        if (!entry->display.builtIn) {
            entry->asked = true;
            const auto answer = entry->brightness.brightness(now);
            wake_.raise();
            return entry->monitor ? answer : std::nullopt;
        }
        panel = backlight_;
    }
    if (!panel)
        return std::nullopt;
    BacklightReading reading = readBacklight(*panel); // some drivers take their time
    if (!reading.setting) {
        lookForBacklight(); // it may have another name now
        if ((panel = backlight()))
            reading = readBacklight(*panel);
    }
    const std::lock_guard lock(mutex_);
    return panel_.brightness(reading);
}

bool DisplayRegistry::request(DisplayId id, float brightness, bool smoothly, TimePoint now) {
    const std::lock_guard lock(mutex_);
    DisplayEntry* entry = displays_.find(id);
    if (entry == nullptr)
        return false;
    if (entry->display.builtIn) {
        if (!backlight_ && !panel_.own())
            return false;
        panel_.want(brightness, smoothly);
    } else {
        if (!isMonitor(entry->display))
            return false;
        entry->asked = true;
        entry->brightness.want(brightness, !smoothly, now);
    }
    wake_.raise();
    return true;
}

/// Without an EDID it could not be told from the others.
bool DisplayRegistry::isMonitor(const AttachedDisplay& display) const {
    return hardware_.monitors && !display.builtIn && display.edid;
}

bool DisplayRegistry::canChange(const DisplayEntry* entry) const {
    if (entry == nullptr || entry->goneSince)
        return false;
    return entry->display.builtIn ? panel_.canChange()
                                  : entry->monitor && entry->brightness.canChange();
}

bool DisplayRegistry::canChange(DisplayId id, TimePoint now) {
    const std::lock_guard lock(mutex_);
    DisplayEntry* entry = displays_.find(id);
    if (entry != nullptr && !entry->goneSince) {
        if (entry->display.builtIn)
            panel_.expectQuestion();
        else
            displays_.expectQuestion(*entry, now);
        wake_.raise();
    }
    return answers_[id] = canChange(entry);
}

bool DisplayRegistry::enableAmbientLight(DisplayId id, bool enable, TimePoint now) {
    const std::lock_guard lock(mutex_);
    DisplayEntry* entry = displays_.find(id);
    if (entry == nullptr)
        return false;
    if (!entry->display.builtIn)
        return true;
    ambientLightOff_ = !enable;
    ambientLightDue_ = enable ? now : now + beforeAmbientLightGoesOff;
    wake_.raise();
    return true;
}

void DisplayRegistry::beginFinishing(TimePoint now) {
    const std::lock_guard lock(mutex_);
    if (std::exchange(finishing_, true))
        return;
    panel_.wantOwn();
    for (DisplayEntry& entry : displays_.entries())
        entry.brightness.wantOwn(now);
    wake_.raise();
}

bool DisplayRegistry::isSettled() {
    return !panel_.isPending() && !ambientLightOff_ &&
           std::ranges::none_of(displays_.entries(), [this](const DisplayEntry& entry) {
               const bool canBeReached =
                   monitorsCanBeReached_ &&
                   (!entry.goneSince ||
                    (entry.monitor ? !entry.brightness.isFailing() : entry.looks == 0));
               return entry.brightness.isPending() && canBeReached;
           });
}

bool DisplayRegistry::awaitSettled(TimePoint deadline) {
    std::unique_lock lock(mutex_);
    return changed_.wait_until(lock, deadline, [this] { return isSettled(); });
}

// The worker's side.

std::optional<Job> DisplayRegistry::nextJob(TimePoint now) {
    const std::lock_guard lock(mutex_);
    Choice choice(now);
    if (backlightStale_)
        choice.offer({.kind = Job::Kind::backlight, .due = now});
    if (const auto due = panel_.due(finishing_))
        choice.offer({.kind = Job::Kind::panel, .due = *due});
    if (ambientLightOff_)
        choice.offer(
            {.kind = Job::Kind::ambientLight, .due = ambientLightDue_, .off = *ambientLightOff_});
    if (const auto due = displays_.nextLook(finishing_))
        choice.offer({.kind = Job::Kind::look, .due = *due});
    for (DisplayEntry& entry : displays_.entries()) {
        if (!entry.hasWork())
            continue;
        if (const auto task = entry.brightness.plan(now, finishing_))
            choice.offer({.kind = kindOf(task->step),
                          .due = task->due,
                          .display = entry.display.id,
                          .monitor = *entry.monitor,
                          .raw = task->raw});
    }
    if (isSettled()) // planning may have found that nothing is left to do
        changed_.notify_all();
    return choice.best();
}

OwnLevels::Map DisplayRegistry::levelsToKeep() {
    const std::lock_guard lock(mutex_);
    OwnLevels::Map levels;
    if (const auto& own = panel_.own())
        levels[panelOwner] = *own;
    for (DisplayEntry& entry : displays_.entries())
        if (const auto& own = entry.brightness.own())
            levels[levelOwnerOf(entry.display)] = *own;
    return levels;
}

/// Tells the host what its answers of before are worth now, and who waits for the end.
void DisplayRegistry::workDone() {
    bool other = false;
    for (auto& [id, answer] : answers_) {
        const bool now = canChange(displays_.find(id));
        other = other || now != answer;
        answer = now;
    }
    if (other)
        news_.post(controllabilityChanged);
    changed_.notify_all();
}

void DisplayRegistry::backlightMayHaveChanged() {
    backlightStale_ = true;
    wake_.raise();
}

void DisplayRegistry::lookForBacklight() {
    auto devices = listBacklightDevices(hardware_.backlightFolder);
    const std::lock_guard lock(mutex_);
    backlightStale_ = false;
    if (!devices.empty())
        replaceBacklight(std::move(devices.front()));
    else if (backlight_ && ::access(backlight_->folder.c_str(), F_OK) != 0)
        replaceBacklight(std::nullopt);
    workDone();
}

void DisplayRegistry::replaceBacklight(std::optional<BacklightDevice> backlight) {
    const bool same = backlight_ && backlight && backlight_->folder == backlight->folder &&
                      backlight_->maximum == backlight->maximum;
    if (same)
        return;
    panel_.setMaximum(backlight ? backlight->maximum : 0);
    backlight_ =
        backlight ? std::make_shared<const BacklightDevice>(*std::move(backlight)) : nullptr;
    if (backlight_ && !panel_.own())
        if (const auto left = ownLevels_.take(panelOwner, OwnLevels::From::sameConnector))
            panel_.resume(*left);
}

void DisplayRegistry::monitorsFound(const std::optional<std::vector<Edid>>& monitors,
                                    TimePoint now) {
    const std::lock_guard lock(mutex_);
    monitorsCanBeReached_ = monitors.has_value();
    displays_.assign(monitors.value_or(std::vector<Edid>()), now);
    workDone();
}

void DisplayRegistry::monitorRead(DisplayId id, std::optional<MonitorValue> value, TimePoint now) {
    const std::lock_guard lock(mutex_);
    if (DisplayEntry* entry = displays_.find(id))
        entry->brightness.readDone(value, now);
    workDone();
}

bool DisplayRegistry::monitorWriteBegins(DisplayId id, std::uint16_t raw) {
    const std::lock_guard lock(mutex_);
    DisplayEntry* entry = displays_.find(id);
    return entry != nullptr && entry->brightness.writeBegins(raw);
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
    const auto due = panel_.due(finishing_);
    return due && *due <= now;
}

std::optional<unsigned int> DisplayRegistry::panelStep(const BacklightReading& reading,
                                                       TimePoint now) {
    const std::lock_guard lock(mutex_);
    const auto value = panel_.step(reading, now, finishing_);
    if (!value)
        workDone();
    return value;
}

void DisplayRegistry::panelWritten(unsigned int value, bool succeeded, TimePoint now) {
    const std::lock_guard lock(mutex_);
    if (panel_.written(value, succeeded, now))
        news_.post(backlightWritten);
    if (!succeeded)
        backlightMayHaveChanged();
    workDone();
}

} // namespace noctra::display_services
