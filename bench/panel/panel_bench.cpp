// What the control panel costs: how long the displays take to follow the pointer, the frames drawn
// meanwhile, how long the panel takes to appear, and the memory. Needs an X server ($DISPLAY)
// without a window manager and a session bus; scripts/bench brings both.

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <string>
#include <string_view>
#include <thread>
#include <unistd.h>

#include "bench/Timing.h"
#include "bench/panel/DragBench.h"
#include "bench/panel/Noctra.h"
#include "bench/panel/ServerView.h"
#include "bench/support/CommandChannel.h"
#include "bench/support/Waiting.h"
#include "bench/support/WindowManagement.h"

namespace noctra::bench {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t runs = 9;
constexpr int rounds = 20;
constexpr const char* title = "NOCTRA";
// A place in the panel's header.
constexpr int headerX = 470; // the display is 640 wide, the panel in its top right corner
constexpr int headerY = 6;

/// Shows and closes the panel from outside.
class Panel {
public:
    explicit Panel(const ServerView& server)
        : server_(server), commands_(std::getenv("DBUS_SESSION_BUS_ADDRESS")),
          windows_(std::getenv("DISPLAY")), empty_(server.pixel(headerX, headerY)) {}

    /// Milliseconds from the request until there are pixels.
    double open() {
        const auto start = std::chrono::steady_clock::now();
        commands_.openWithoutWaiting({"noctra://show"});
        while (server_.pixel(headerX, headerY) == empty_) {
            if (std::chrono::steady_clock::now() - start > 10s)
                throw std::runtime_error("the panel does not appear");
            std::this_thread::sleep_for(100us);
        }
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
            .count();
    }

    void close() {
        windows_.askToClose(title);
        if (!desktop::pollUntil(5s, [this] { return !windows_.shows(title); }))
            throw std::runtime_error("the panel does not close");
        std::this_thread::sleep_for(200ms); // what it shows is freed on a later turn
    }

private:
    const ServerView& server_;
    desktop::CommandChannel commands_;
    desktop::WindowManagement windows_;
    const std::uint32_t empty_;
};

/// Every file is read from the disk again. False where this process may not.
bool dropPageCache() {
    ::sync();
    std::ofstream file("/proc/sys/vm/drop_caches");
    return static_cast<bool>(file << "3" << std::flush);
}

void printMilliseconds(const char* what, Samples& samples) {
    std::printf("  %-50s median %6.1f ms  slowest %6.1f ms\n", what, samples.quantile(0.5),
                samples.quantile(1.0));
}

void benchOpening(const std::string& binary, const ServerView& server) {
    Samples starts(runs);
    Samples first(runs);
    Samples again(runs);
    Samples fromDisk(3);
    for (std::size_t i = 0; i < runs; ++i) {
        Noctra noctra(binary);
        std::this_thread::sleep_for(300ms);
        Panel panel(server);
        starts.add(noctra.startTime());
        first.add(panel.open());
        std::this_thread::sleep_for(300ms);
        panel.close();
        again.add(panel.open());
    }
    for (int i = 0; i < 3; ++i) {
        Noctra noctra(binary);
        std::this_thread::sleep_for(300ms);
        Panel panel(server);
        if (!dropPageCache())
            break;
        fromDisk.add(panel.open());
    }
    std::printf("Showing the panel, from the message on the bus to pixels, %zu runs\n", runs);
    printMilliseconds("start of the program, until it says so", starts);
    printMilliseconds("first time in a process", first);
    printMilliseconds("second time", again);
    if (fromDisk.count() > 0)
        printMilliseconds("first time, page cache dropped before", fromDisk);
}

void printMemory(const char* when, const Noctra& noctra) {
    const Noctra::Memory memory = noctra.memory();
    std::printf("  %-50s resident %6.1f MiB  share %6.1f MiB  private dirty %6.1f MiB\n", when,
                static_cast<double>(memory.resident) / 1024.0,
                static_cast<double>(memory.share) / 1024.0,
                static_cast<double>(memory.dirty) / 1024.0);
}

void benchMemory(const std::string& binary, const ServerView& server) {
    const Noctra noctra(binary);
    Panel panel(server);
    std::this_thread::sleep_for(2s);
    std::printf("Memory\n");
    printMemory("before the panel was shown", noctra);
    panel.open();
    std::this_thread::sleep_for(1s);
    printMemory("with the panel", noctra);
    panel.close();
    std::this_thread::sleep_for(1s);
    printMemory("after it was closed", noctra);
    for (int count = rounds; count <= 3 * rounds; count += rounds) {
        for (int i = 0; i < rounds; ++i) {
            panel.open();
            std::this_thread::sleep_for(100ms);
            panel.close();
        }
        std::this_thread::sleep_for(1s);
        printMemory(("after it was shown " + std::to_string(count) + " more times").c_str(),
                    noctra);
    }
}

void benchSteps(const std::string& measured) {
    Noctra noctra(measured);
    noctra.tell("on");
    static_cast<void>(noctra.ask("show"));
    const auto told = noctra.ask("steps 600");
    const auto value = [&told](std::size_t index) {
        return std::atof(told.at(index).c_str());
    };
    std::printf(
        "A step of a drag inside the program, in turns with the filter alone\n"
        "  event to table                                     median %7.1f us  p95 %7.1f us\n"
        "  applyFilter alone                                  median %7.1f us  p95 %7.1f us\n"
        "  heap allocations: event to table %.2f of ours, %.2f of Qt's and the C "
        "libraries'; the frame after it %.2f and %.2f\n",
        value(1), value(2), value(4), value(5), value(7), value(8), value(10), value(11));
}

int run(const std::string& what, const std::string& folder) {
    const char* display = std::getenv("DISPLAY");
    if (display == nullptr || std::getenv("DBUS_SESSION_BUS_ADDRESS") == nullptr)
        throw std::runtime_error("needs an X server and a session bus");
    const ServerView server(display);
    const std::string measured = folder + "/measured_noctra";
    const std::string program = folder + "/noctra";
    if (what == "drag") {
        Noctra noctra(measured);
        benchDrag(noctra, server);
    } else if (what == "steps") {
        benchSteps(measured);
    } else if (what == "opening") {
        benchOpening(program, server);
    } else if (what == "memory") {
        benchMemory(program, server);
    } else {
        return 2;
    }
    return 0;
}

} // namespace

} // namespace noctra::bench

int main(int argc, char** argv) {
    try {
        if (argc == 3)
            if (const int status = noctra::bench::run(argv[1], argv[2]); status != 2)
                return status;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "panel_bench: %s\n", error.what());
        return 1;
    }
    std::fprintf(stderr, "usage: panel_bench drag|steps|opening|memory FOLDER-OF-NOCTRA\n");
    return 2;
}
