// Stands in for libddcutil: the functions that Noctra calls, on monitors in files. The folder
// $NOCTRA_TEST_MONITORS has a folder 0, 1, ... for each monitor, in it
//
//   edid                     its 128 bytes
//   value                    of feature 0x10, brightness
//   maximum                  100 where missing
//   read-ms, write-ms        what a command takes
//   applies-at-once          a value is there when its write begins, not when it ends
//   fails-reads, fails-writes
//   ignores-writes           and says that all is well
//   reverts-ms               how long a written value lasts
//   unplugged                cannot be opened; stays in the list
//   asleep                   cannot be opened and is not listed
//
// and a file log: a line for each of "load", "redetect", "read 0", "write 0 100".

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

#include <ddcutil_c_api.h>
#include <ddcutil_status_codes.h>

namespace {

using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::milliseconds;
using Path = std::filesystem::path;

constexpr int most = 16;
constexpr DDCA_Vcp_Feature_Code brightness = 0x10;

Path folder() {
    const char* const path = std::getenv("NOCTRA_TEST_MONITORS");
    return path != nullptr ? path : "/nonexistent";
}

void note(const std::string& what) {
    std::ofstream(folder() / "log", std::ios::app) << what + "\n";
}

struct Monitor {
    int number = 0;
    int written = -1; ///< what it had before it was written, which it reverts to; -1: nothing
    Clock::time_point writtenAt;

    [[nodiscard]] Path file(const char* name) const {
        return folder() / std::to_string(number) / name;
    }
    [[nodiscard]] bool has(const char* name) const { return std::filesystem::exists(file(name)); }
    [[nodiscard]] int get(const char* name, int otherwise) const {
        int value = otherwise;
        std::ifstream(file(name)) >> value;
        return value;
    }
    void setValue(int value) const {
        std::ofstream(file("value.new")) << value << '\n';
        std::filesystem::rename(file("value.new"), file("value"));
    }
    void takeTime(const char* name) {
        std::this_thread::sleep_for(Milliseconds(get(name, 0)));
        const int lasts = get("reverts-ms", 0);
        if (lasts > 0 && written >= 0 && Clock::now() - writtenAt >= Milliseconds(lasts)) {
            setValue(written);
            written = -1;
        }
    }
};

Monitor monitors[most];

Monitor& monitorOf(void* reference) {
    return *static_cast<Monitor*>(reference);
}

// As the real one does where it finds no graphics card.
[[gnu::constructor]] void announce() {
    std::printf("libddcutil prints this while it is loaded\n");
    note("load");
}

} // namespace

DDCA_Status ddca_get_display_info_list2(bool /*invalidToo*/, DDCA_Display_Info_List** list) {
    auto* found = static_cast<DDCA_Display_Info_List*>(
        std::calloc(1, sizeof(DDCA_Display_Info_List) + most * sizeof(DDCA_Display_Info)));
    *list = found;
    for (int number = 0; number < most; ++number) {
        Monitor& monitor = monitors[number];
        monitor.number = number;
        if (!monitor.has("edid") || monitor.has("asleep"))
            continue;
        DDCA_Display_Info& info = found->info[found->ct++];
        std::ifstream(monitor.file("edid"), std::ios::binary)
            .read(reinterpret_cast<char*>(info.edid_bytes), sizeof info.edid_bytes);
        info.dref = &monitor;
    }
    return DDCRC_OK;
}

void ddca_free_display_info_list(DDCA_Display_Info_List* list) {
    std::free(list);
}

DDCA_Status ddca_redetect_displays() {
    note("redetect");
    return DDCRC_OK;
}

void ddca_set_fout(FILE* /*file*/) {}

DDCA_Status ddca_open_display2(DDCA_Display_Ref reference, bool /*wait*/,
                               DDCA_Display_Handle* handle) {
    if (monitorOf(reference).has("unplugged") || monitorOf(reference).has("asleep"))
        return DDCRC_INVALID_DISPLAY;
    *handle = reference;
    return DDCRC_OK;
}

DDCA_Status ddca_close_display(DDCA_Display_Handle /*handle*/) {
    return DDCRC_OK;
}

DDCA_Status ddca_get_non_table_vcp_value(DDCA_Display_Handle handle, DDCA_Vcp_Feature_Code feature,
                                         DDCA_Non_Table_Vcp_Value* value) {
    Monitor& monitor = monitorOf(handle);
    note("read " + std::to_string(monitor.number));
    monitor.takeTime("read-ms");
    if (feature != brightness)
        return DDCRC_REPORTED_UNSUPPORTED;
    if (monitor.has("fails-reads"))
        return -EIO;
    const auto maximum = static_cast<unsigned>(monitor.get("maximum", 100));
    const auto current = static_cast<unsigned>(monitor.get("value", 0));
    *value = {static_cast<std::uint8_t>(maximum >> 8U), static_cast<std::uint8_t>(maximum & 0xFFU),
              static_cast<std::uint8_t>(current >> 8U), static_cast<std::uint8_t>(current & 0xFFU)};
    return DDCRC_OK;
}

DDCA_Status ddca_set_non_table_vcp_value(DDCA_Display_Handle handle, DDCA_Vcp_Feature_Code feature,
                                         std::uint8_t high, std::uint8_t low) {
    Monitor& monitor = monitorOf(handle);
    const int value = high << 8U | low;
    note("write " + std::to_string(monitor.number) + " " + std::to_string(value));
    if (monitor.has("applies-at-once") && feature == brightness)
        monitor.setValue(value);
    monitor.takeTime("write-ms");
    if (feature != brightness)
        return DDCRC_REPORTED_UNSUPPORTED;
    if (monitor.has("fails-writes"))
        return -EIO;
    if (monitor.has("ignores-writes"))
        return DDCRC_OK;
    if (monitor.written < 0)
        monitor.written = monitor.get("value", 0);
    monitor.writtenAt = Clock::now();
    monitor.setValue(value);
    return DDCRC_OK;
}
