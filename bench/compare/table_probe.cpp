// Times how soon gamma tables follow a command, and reads and writes them: what a script could not
// do fast enough. bench/compare/compare.py drives it; needs an X server ($DISPLAY).

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <thread>
#include <vector>
#include <xcb/xcb.h>

#include "bench/compare/TableWatch.h"
#include "bench/compare/Triggers.h"
#include "bench/support/CommandChannel.h"
#include "bench/support/GammaProbe.h"

namespace noctra::bench {

namespace {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

constexpr auto patience = 20s;

constexpr const char* usage = R"(usage: table_probe WHAT
  run warm|neutral COMMAND...       microseconds from before the start of the command until the
                                    displays are so; then waits for the command to end
  start warm|neutral COMMAND...     the same; then ends the command by SIGTERM
  signal warm|neutral PROCESS,...   the same from before SIGUSR1 to running programs
  open warm|neutral URL             the same from before a call to the running Noctra on the session
                                    bus, to which it has been connected before
  await warm|neutral SECONDS        waits until the displays are so; status 2 where they are not
  foreign SECONDS                   writes linear tables; seconds until the displays are warm again,
                                    or "never"
  write linear|calibration          writes tables to all displays
  read                              prints the tables of all displays, a line for each channel
  requests                          sends requests of every length; prints how many
)";

std::string display() {
    const char* name = std::getenv("DISPLAY");
    return name != nullptr ? name : "";
}

bool isWarm(const std::string& word) {
    if (word != "warm" && word != "neutral")
        throw std::runtime_error("neither warm nor neutral: " + word);
    return word == "warm";
}

/// Prints how long after `trigger` is called the displays are as asked for.
void timeTables(bool warm, const std::function<void()>& trigger) {
    const TableWatch watch(display());
    if (!watch.allAre(!warm))
        throw std::runtime_error("the displays are not as they should be before");
    const auto before = TableWatch::Clock::now();
    trigger();
    const auto seen = watch.await(warm, patience);
    if (!seen)
        throw std::runtime_error("the displays do not follow");
    std::printf("%.1f\n", std::chrono::duration<double, std::micro>(*seen - before).count());
}

/// Of a display with a calibration: curves that differ by channel and do not reach the top.
std::vector<std::uint16_t> curve(double top, double exponent, std::size_t size) {
    std::vector<std::uint16_t> levels;
    for (std::size_t i = 0; i < size; ++i)
        levels.push_back(static_cast<std::uint16_t>(std::lround(
            65535 * top *
            std::pow(static_cast<double>(i) / static_cast<double>(size - 1), exponent))));
    return levels;
}

void write(bool calibration) {
    const desktop::GammaProbe probe(display());
    desktop::TablesByCrtc tables = probe.readLit();
    for (auto& [crtc, its] : tables) {
        const std::size_t size = its.red.size();
        its = calibration
                  ? desktop::Tables{curve(0.97, 1.15, size), curve(0.99, 0.9, size),
                                    curve(0.93, 1.05, size)}
                  : desktop::Tables{curve(1, 1, size), curve(1, 1, size), curve(1, 1, size)};
    }
    probe.write(tables);
}

void read() {
    for (const auto& [crtc, tables] : desktop::GammaProbe(display()).readLit())
        for (const auto* channel : {&tables.red, &tables.green, &tables.blue}) {
            for (const std::uint16_t level : *channel)
                std::printf("%d ", level);
            std::printf("\n");
        }
}

/// The next sequence number tells how many requests a connection has sent.
void sendRequests() {
    const desktop::XConnection connection(display());
    xcb_connection_t* x = connection.get();
    for (int i = 0; i < 100; ++i)
        xcb_no_operation(x);
    const std::string name(100, 'n');
    for (int i = 0; i < 10; ++i)
        static_cast<void>(connection.atom(name.substr(static_cast<std::size_t>(i))));
    // Longer than a request whose length has 16 bits.
    const std::vector<std::uint8_t> large(400'000);
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, connection.root(),
                        connection.atom("_BENCH_LARGE"), XCB_ATOM_CARDINAL, 8,
                        static_cast<std::uint32_t>(large.size()), large.data());
    xcb_delete_property(x, connection.root(), connection.atom("_BENCH_LARGE"));
    const auto last = xcb_get_input_focus(x);
    free(desktop::XConnection::answered(xcb_get_input_focus_reply(x, last, nullptr), "focus")
             .release());
    std::printf("%u\n", last.sequence);
}

void foreign(double seconds) {
    const TableWatch watch(display());
    write(false);
    const auto begin = TableWatch::Clock::now();
    const std::chrono::duration<double> limit(seconds);
    while (TableWatch::Clock::now() - begin < limit) {
        if (watch.allAre(true)) {
            const std::chrono::duration<double> passed = TableWatch::Clock::now() - begin;
            std::printf("%.2f\n", passed.count());
            return;
        }
        std::this_thread::sleep_for(1ms);
    }
    std::printf("never\n");
}

bool await(bool warm, double seconds) {
    const TableWatch watch(display());
    const auto end = TableWatch::Clock::now() + std::chrono::duration<double>(seconds);
    while (!watch.allAre(warm)) {
        if (TableWatch::Clock::now() > end)
            return false;
        std::this_thread::sleep_for(1ms);
    }
    return true;
}

int probe(const Words& words) {
    const std::string what = words.empty() ? "" : words[0];
    if (what == "read" && words.size() == 1) {
        read();
    } else if (what == "requests" && words.size() == 1) {
        sendRequests();
    } else if (what == "write" && words.size() == 2) {
        write(words[1] == "calibration");
    } else if (what == "foreign" && words.size() == 2) {
        foreign(std::stod(words[1]));
    } else if (words.size() < 3) {
        std::fputs(usage, stderr);
        return 1;
    } else if (const bool warm = isWarm(words[1]); what == "await") {
        return await(warm, std::stod(words[2])) ? 0 : 2;
    } else if (what == "signal") {
        timeTables(warm, [&] { sendSwitchSignal(words[2]); });
    } else if (what == "open") {
        desktop::CommandChannel channel(std::getenv("DBUS_SESSION_BUS_ADDRESS"));
        timeTables(warm, [&] { channel.openWithoutWaiting({words[2]}); });
    } else if (what == "run" || what == "start") {
        std::optional<StartedProgram> program;
        timeTables(warm, [&] { program.emplace(Words(words.begin() + 2, words.end())); });
        what == "run" ? program->wait() : program->end();
    } else {
        std::fputs(usage, stderr);
        return 1;
    }
    return 0;
}

} // namespace

} // namespace noctra::bench

int main(int argc, char** argv) {
    try {
        return noctra::bench::probe(std::vector<std::string>(argv + 1, argv + argc));
    } catch (const std::exception& problem) {
        std::fprintf(stderr, "table_probe: %s\n", problem.what());
        return 1;
    }
}
