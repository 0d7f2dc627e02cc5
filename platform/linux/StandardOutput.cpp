#include "platform/linux/StandardOutput.h"

#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace noctra {

namespace {

void writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return; // a line that cannot be written is lost, as its reader is
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace

StandardOutput::StandardOutput(int descriptor)
    : descriptor_(::fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1)) {}

StandardOutput::~StandardOutput() {
    {
        const MutexLock lock(mutex_);
        ending_ = true;
    }
    changed_.notify_all();
    writer_.join();
    ::close(descriptor_);
}

void StandardOutput::writeLine(std::string_view line) {
    {
        const MutexLock lock(mutex_);
        if (waiting_.size() >= maxWaiting) {
            ++dropped_;
            return;
        }
        if (dropped_ > 0)
            waiting_.push_back("(" + std::to_string(std::exchange(dropped_, 0)) +
                               " lines were not read in time)\n");
        waiting_.push_back(std::string(line) + '\n');
    }
    changed_.notify_all();
}

void StandardOutput::drain(Seconds patience) {
    const auto end = std::chrono::steady_clock::now() + patience;
    const MutexLock lock(mutex_);
    while ((!waiting_.empty() || writing_) && mutex_.waitUntil(changed_, end)) {
    }
}

void StandardOutput::writeWaiting() {
    const MutexLock lock(mutex_);
    for (;;) {
        while (!ending_ && waiting_.empty())
            mutex_.wait(changed_);
        if (waiting_.empty())
            return;
        const std::string text = std::move(waiting_.front());
        waiting_.pop_front();
        writing_ = true;
        mutex_.unlock();
        writeAll(descriptor_, text);
        mutex_.lock();
        writing_ = false;
        changed_.notify_all();
    }
}

} // namespace noctra
