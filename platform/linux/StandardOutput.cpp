#include "platform/linux/StandardOutput.h"

#include <algorithm>

#include <limits.h>
#include <poll.h>
#include <unistd.h>

namespace noctra {

namespace {

constexpr int stallMilliseconds = 20;
constexpr std::size_t chunk = PIPE_BUF; // a pipe that is writable takes this much at once

} // namespace

void StandardOutput::writeLine(std::string_view line) {
    buffer_.assign(line);
    buffer_ += '\n';
    std::string_view rest = buffer_;
    while (!rest.empty()) {
        pollfd ready{descriptor_, POLLOUT, 0};
        const int answer = ::poll(&ready, 1, stalled_ ? 0 : stallMilliseconds);
        stalled_ = answer == 0;
        if (answer <= 0 || (ready.revents & POLLOUT) == 0)
            return;
        const ssize_t written = ::write(descriptor_, rest.data(), std::min(rest.size(), chunk));
        if (written <= 0)
            return;
        rest.remove_prefix(static_cast<std::size_t>(written));
    }
}

} // namespace noctra
