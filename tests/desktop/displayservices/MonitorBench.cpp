#include "tests/desktop/displayservices/MonitorBench.h"

#include <limits>
#include <stdexcept>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace noctra::desktop {

MonitorBench::MonitorBench(int count, const XServer& server) : server_(server) {
    const int file = ::open((folder_ / "monitors").c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (::ftruncate(file, sizeof(test::StandInMonitors)) != 0)
        throw std::runtime_error("no shared memory can be made");
    void* const memory =
        ::mmap(nullptr, sizeof(test::StandInMonitors), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    ::close(file);
    if (memory == MAP_FAILED)
        throw std::runtime_error("no shared memory can be made");
    monitors_ = static_cast<test::StandInMonitors*>(memory);

    constexpr std::uint16_t maximum = 100;
    constexpr std::uint16_t value = 40;
    OutputPlugs(server.display()).plugOnly(count);
    for (int number = 0; number < count; ++number) {
        monitor(number).present = true;
        monitor(number).maximum = maximum;
        monitor(number).value = value;
        monitor(number).shortestPause = std::numeric_limits<std::int64_t>::max();
        mark(number, static_cast<std::uint8_t>(number));
    }
    std::filesystem::create_directory(folder_ / "dev");
    for (const char* device : {"null", "i2c-99"})
        writeFile(folder_.path() / "dev" / device, "");
}

MonitorBench::~MonitorBench() {
    ::munmap(monitors_, sizeof(test::StandInMonitors));
}

test::StandInMonitor& MonitorBench::monitor(int number) const {
    return monitors_->monitors.at(static_cast<std::size_t>(number));
}

void MonitorBench::mark(int number, std::uint8_t mark) const {
    monitor(number).edid = edidWith(mark);
    setEdid(server_, number, mark);
}

Driver::Surroundings MonitorBench::surroundings() const {
    return {{{"DISPLAY", server_.display()},
             {"LD_LIBRARY_PATH", NOCTRA_STAND_IN_FOLDER},
             {test::standInVariable, folder_ / "monitors"},
             {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + (folder_ / "no-bus").string()},
             {"XDG_STATE_HOME", folder_ / "state"}},
            withFolderAt(folder_ / "dev", "/dev")};
}

DisplayId MonitorBench::display(int number) const {
    return outputIds(server_).at(static_cast<std::size_t>(number));
}

} // namespace noctra::desktop
