#include "tests/desktop/support/MessageBus.h"

#include <array>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

#include "tests/desktop/support/LineReader.h"
#include "tests/desktop/support/TemporaryFolder.h"

namespace noctra::desktop {

MessageBus startMessageBus(const std::string& file, const std::string& configuration) {
    writeFile(file, configuration);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe can be made");
    ChildProcess::Start start;
    start.arguments = {"dbus-daemon",           "--nofork",
                       "--nopidfile",           "--nosyslog",
                       "--config-file=" + file, "--print-address=" + std::to_string(ends[1])};
    start.environment = {"PATH=/usr/bin:/bin"};
    start.kept = ends[1];
    MessageBus bus{std::make_unique<ChildProcess>(start), {}};
    close(ends[1]);
    const LineReader reader(ends[0]);
    if (!reader.waitUntil(patience, [](const auto& lines) { return !lines.empty(); }))
        throw std::runtime_error("a message bus did not come up");
    bus.address = reader.lines().front();
    return bus;
}

} // namespace noctra::desktop
