// Stands in for libddcutil: the functions that Noctra calls, on monitors in shared memory.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

#include <ddcutil_c_api.h>
#include <ddcutil_status_codes.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include "tests/platform/linux/displayservices/stand-in/StandInMonitors.h"

namespace {

using noctra::test::StandInMonitor;
using noctra::test::StandInMonitors;

StandInMonitors* monitors() {
    static auto* const mapped = []() -> StandInMonitors* {
        const char* const path = std::getenv(noctra::test::standInVariable);
        const int file = path != nullptr ? ::open(path, O_RDWR | O_CLOEXEC) : -1;
        if (file < 0)
            return nullptr;
        void* const memory =
            ::mmap(nullptr, sizeof(StandInMonitors), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
        ::close(file);
        return memory != MAP_FAILED ? static_cast<StandInMonitors*>(memory) : nullptr;
    }();
    return mapped;
}

std::int64_t nanoseconds() {
    return std::chrono::duration_cast<std::chrono::nanoseconds>(
               std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// A command to a monitor: takes its time, and notes how soon after the last one it came.
class Command {
public:
    Command(StandInMonitor& monitor, int milliseconds) : monitor_(monitor) {
        if (const auto last = monitor.lastEnd.load(); last != 0) {
            const auto pause = nanoseconds() - last;
            if (pause < monitor.shortestPause)
                monitor.shortestPause = pause;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        revert();
    }
    Command(const Command&) = delete;
    Command& operator=(const Command&) = delete;
    ~Command() { monitor_.lastEnd = nanoseconds(); }

private:
    void revert() {
        constexpr std::int64_t perMillisecond = 1000000;
        const std::int64_t after = monitor_.revertsAfterMilliseconds * perMillisecond;
        if (after == 0 || monitor_.writtenAt == 0 || nanoseconds() - monitor_.writtenAt < after)
            return;
        monitor_.value = monitor_.revertsTo.load();
        monitor_.writtenAt = 0;
    }
    StandInMonitor& monitor_;
};

StandInMonitor& monitorOf(void* reference) {
    return *static_cast<StandInMonitor*>(reference);
}

// As the real one does where it finds no graphics card.
[[gnu::constructor]] void announce() {
    std::printf("libddcutil prints this while it is loaded\n");
    if (monitors() != nullptr)
        ++monitors()->loads;
}

} // namespace

DDCA_Status ddca_get_display_info_list2(bool /*invalidToo*/, DDCA_Display_Info_List** list) {
    constexpr std::size_t most = std::tuple_size_v<decltype(StandInMonitors::monitors)>;
    auto* found = static_cast<DDCA_Display_Info_List*>(
        std::calloc(1, sizeof(DDCA_Display_Info_List) + most * sizeof(DDCA_Display_Info)));
    *list = found;
    if (monitors() == nullptr)
        return DDCRC_OK;
    for (StandInMonitor& monitor : monitors()->monitors) {
        if (!monitor.present)
            continue;
        DDCA_Display_Info& info = found->info[found->ct++];
        std::memcpy(info.edid_bytes, monitor.edid.data(), sizeof info.edid_bytes);
        info.dref = &monitor;
    }
    return DDCRC_OK;
}

void ddca_free_display_info_list(DDCA_Display_Info_List* list) {
    std::free(list);
}

DDCA_Status ddca_redetect_displays() {
    if (monitors() != nullptr)
        ++monitors()->redetections;
    return DDCRC_OK;
}

FILE* ddca_set_fout_was = stdout;
void ddca_set_fout(FILE* file) {
    ddca_set_fout_was = file;
}

DDCA_Status ddca_open_display2(DDCA_Display_Ref reference, bool /*wait*/,
                               DDCA_Display_Handle* handle) {
    if (monitorOf(reference).unplugged)
        return DDCRC_INVALID_DISPLAY;
    ++monitorOf(reference).open;
    *handle = reference;
    return DDCRC_OK;
}

DDCA_Status ddca_close_display(DDCA_Display_Handle handle) {
    --monitorOf(handle).open;
    return DDCRC_OK;
}

DDCA_Status ddca_get_non_table_vcp_value(DDCA_Display_Handle handle, DDCA_Vcp_Feature_Code feature,
                                         DDCA_Non_Table_Vcp_Value* value) {
    StandInMonitor& monitor = monitorOf(handle);
    const Command command(monitor, monitor.readMilliseconds);
    ++monitor.reads;
    if (feature != 0x10)
        return DDCRC_REPORTED_UNSUPPORTED;
    if (monitor.failsReads)
        return -EIO;
    const std::uint16_t maximum = monitor.maximum;
    const std::uint16_t current = monitor.value;
    *value = {static_cast<std::uint8_t>(maximum >> 8U), static_cast<std::uint8_t>(maximum & 0xFFU),
              static_cast<std::uint8_t>(current >> 8U), static_cast<std::uint8_t>(current & 0xFFU)};
    return DDCRC_OK;
}

DDCA_Status ddca_set_non_table_vcp_value(DDCA_Display_Handle handle, DDCA_Vcp_Feature_Code feature,
                                         std::uint8_t high, std::uint8_t low) {
    StandInMonitor& monitor = monitorOf(handle);
    const Command command(monitor, monitor.writeMilliseconds);
    ++monitor.writes;
    if (feature != 0x10)
        return DDCRC_REPORTED_UNSUPPORTED;
    if (monitor.failsWrites)
        return -EIO;
    if (monitor.ignoresWrites)
        return DDCRC_OK;
    if (monitor.writtenAt == 0)
        monitor.revertsTo = monitor.value.load();
    monitor.writtenAt = nanoseconds();
    monitor.value = static_cast<std::uint16_t>(high << 8U | low);
    return DDCRC_OK;
}
