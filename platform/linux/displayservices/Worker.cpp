#include "platform/linux/displayservices/Worker.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include <poll.h>
#include <pthread.h>
#include <unistd.h>

#include "platform/linux/displayservices/GnomeAmbientSetting.h"

namespace noctra::display_services {

namespace {

using Clock = std::chrono::steady_clock;

/// The host decides which of its threads take signals; none is to be taken by a new one.
class SignalsBlocked {
public:
    SignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    SignalsBlocked(const SignalsBlocked&) = delete;
    SignalsBlocked& operator=(const SignalsBlocked&) = delete;
    ~SignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

private:
    sigset_t before_{};
};

} // namespace

Worker::Worker(DisplayRegistry& registry, EventDescriptor& wake, PanelActuator& panel,
               OwnLevels& ownLevels, Settings settings)
    : registry_(registry), wake_(wake), panel_(panel), ownLevels_(ownLevels),
      settings_(std::move(settings)),
      ambientLight_(settings_.ambientMarker, std::make_unique<GnomeAmbientSetting>()) {
    const SignalsBlocked blocked;
    thread_ = std::thread([this] { run(); });
    pthread_setname_np(thread_.native_handle(), "noctra-displays");
}

Worker::~Worker() {
    stopping_ = true;
    wake_.raise();
    thread_.join();
}

void Worker::run() {
    while (!stopping_) {
        wake_.clear();
        const auto job = registry_.nextJob(Clock::now());
        if (job && job->due <= Clock::now()) {
            perform(*job);
            keepOwnLevels(); // those that have been put back go
        } else {
            sleep(job);
        }
    }
}

void Worker::sleep(const std::optional<Job>& next) {
    pollfd wake{wake_.number(), POLLIN, 0};
    int limit = -1;
    if (next) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(next->due - Clock::now());
        limit = static_cast<int>(std::max<std::chrono::milliseconds::rep>(left.count(), 0));
    }
    ::poll(&wake, 1, limit);
}

void Worker::keepOwnLevels() {
    ownLevels_.save([this] { return registry_.levelsToKeep(); });
}

void Worker::perform(const Job& job) {
    switch (job.kind) {
    case Job::Kind::backlight:
        registry_.lookForBacklight();
        break;
    case Job::Kind::panel:
        panel_.advance();
        break;
    case Job::Kind::ambientLight:
        job.off ? ambientLight_.switchOff() : ambientLight_.putBack();
        registry_.ambientLightDone(job.off);
        break;
    case Job::Kind::look:
        lookForMonitors();
        break;
    case Job::Kind::write: {
        if (!registry_.monitorWriteBegins(job.display, job.raw))
            break;
        keepOwnLevels();
        const bool succeeded = monitors_->write(job.monitor, job.raw);
        registry_.monitorWritten(job.display, job.raw, succeeded, Clock::now());
        break;
    }
    case Job::Kind::compare:
    case Job::Kind::verify:
    case Job::Kind::refresh: {
        const auto value = monitors_->read(job.monitor);
        registry_.monitorRead(job.display, value, Clock::now());
        break;
    }
    }
}

void Worker::lookForMonitors() {
    if (!monitors_ && !settings_.deviceFolder.empty())
        monitors_ = createMonitorControl(settings_.deviceFolder);
    const auto found = monitors_ ? std::optional(monitors_->detect()) : std::nullopt;
    registry_.monitorsFound(found, Clock::now());
}

} // namespace noctra::display_services
