#include "bench/support/LineReader.h"

#include <array>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

namespace noctra::desktop {

LineReader::LineReader(int descriptor)
    : descriptor_(descriptor), stop_(eventfd(0, EFD_CLOEXEC)), thread_([this] { read(); }) {}

LineReader::~LineReader() {
    eventfd_write(stop_, 1);
    thread_.join();
    close(descriptor_);
    close(stop_);
}

std::vector<std::string> LineReader::lines() const {
    const std::lock_guard lock(mutex_);
    return lines_;
}

bool LineReader::waitUntil(
    Duration limit, const std::function<bool(const std::vector<std::string>&)>& condition) const {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, limit, [&] { return ended_ || condition(lines_); });
    return condition(lines_);
}

bool LineReader::waitForEnd(Duration limit) const {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, limit, [&] { return ended_; });
}

void LineReader::read() {
    std::array<pollfd, 2> sources{pollfd{descriptor_, POLLIN, 0}, pollfd{stop_, POLLIN, 0}};
    std::array<char, 65536> bytes{};
    while (poll(sources.data(), sources.size(), -1) >= 0 && sources[1].revents == 0) {
        const ssize_t count = ::read(descriptor_, bytes.data(), bytes.size());
        if (count <= 0)
            break;
        take(bytes.data(), static_cast<std::size_t>(count));
    }
    const std::lock_guard lock(mutex_);
    ended_ = true;
    if (!unfinished_.empty())
        lines_.push_back(std::exchange(unfinished_, {}));
    changed_.notify_all();
}

void LineReader::take(const char* bytes, std::size_t count) {
    const std::lock_guard lock(mutex_);
    unfinished_.append(bytes, count);
    std::size_t start = 0;
    for (std::size_t end = 0; (end = unfinished_.find('\n', start)) != std::string::npos;
         start = end + 1)
        lines_.push_back(unfinished_.substr(start, end - start));
    unfinished_.erase(0, start);
    changed_.notify_all();
}

} // namespace noctra::desktop
