#include "bench/panel/DragBench.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <thread>

#include "bench/Timing.h"

namespace noctra::bench {

namespace {

using namespace std::chrono_literals;

constexpr int steps = 400;
constexpr auto frame = 25ms;      ///< time enough for what a step draws
constexpr auto mousePeriod = 8ms; ///< of a mouse that reports 125 times a second

/// The fader's cap, held by the pointer, on its way up and down again.
class HeldCap {
public:
    HeldCap(Noctra& noctra, const ServerView& server) : server_(server) {
        noctra.tell("warmth 0.5"); // the middle of the way
        std::this_thread::sleep_for(frame);
        const auto place = noctra.ask("place");
        if (place.size() != 4)
            throw std::runtime_error("the panel has no fader");
        x_ = std::atoi(place[1].c_str());
        y_ = middle_ = std::atoi(place[2].c_str());
        server_.move(x_, y_);
        std::this_thread::sleep_for(frame);
        server_.press();
        std::this_thread::sleep_for(frame);
    }
    ~HeldCap() { server_.release(); }
    HeldCap(const HeldCap&) = delete;
    HeldCap& operator=(const HeldCap&) = delete;

    void step() {
        constexpr int span = 60; // steps, of two pixels each
        constexpr int length = 2;
        const int at = ++count_ % (2 * span);
        y_ = middle_ + length * (at <= span ? at : 2 * span - at) - span;
        server_.move(x_, y_);
    }

private:
    const ServerView& server_;
    int x_ = 0;
    int middle_ = 0;
    int y_ = 0;
    int count_ = 0;
};

double timeToTable(const ServerView& server, const std::function<void()>& cause) {
    const auto before = server.lastTable();
    const auto start = std::chrono::steady_clock::now();
    cause();
    if (server.awaitOtherTable(before) < 0.0)
        throw std::runtime_error("the table does not follow");
    return std::chrono::duration<double, std::micro>(std::chrono::steady_clock::now() - start)
        .count();
}

void printRow(const char* what, Samples& samples, double alone) {
    const double median = samples.quantile(0.5);
    std::printf("  %-50s median %7.1f us  p95 %7.1f us  above the filter alone %7.1f us\n", what,
                median, samples.quantile(0.95), median - alone);
}

} // namespace

void benchDrag(Noctra& noctra, const ServerView& server) {
    noctra.tell("on");
    const auto shown = noctra.ask("show");
    std::printf("%zu display(s), panel shown, first frame after %s ms (Qt's modules of the panel "
                "not loaded before)\n",
                server.displays(), shown.at(2).c_str());
    std::this_thread::sleep_for(500ms);
    const auto applied = noctra.ask("apply 1000");
    const double alone = std::atof(applied.at(1).c_str());
    std::printf("  %-50s median %7.1f us  p95 %7.1f us\n", "applyFilter alone", alone,
                std::atof(applied.at(2).c_str()));

    HeldCap cap(noctra, server);
    Samples fromPipe(steps);
    Samples fromPointer(steps);
    for (int i = 0; i < steps; ++i) {
        const std::string request = "warmth " + std::to_string(0.2 + 0.6 * i / steps);
        fromPipe.add(timeToTable(server, [&] { noctra.tell(request); }));
        std::this_thread::sleep_for(frame);
        fromPointer.add(timeToTable(server, [&] { cap.step(); }));
        std::this_thread::sleep_for(frame);
    }
    printRow("assignment on a request over a pipe, seen", fromPipe, alone);
    printRow("pointer, a step every 25 ms, seen", fromPointer, alone);

    Samples whileDrawing(steps);
    auto next = std::chrono::steady_clock::now();
    for (int i = 0; i < steps; ++i) {
        whileDrawing.add(timeToTable(server, [&] { cap.step(); }));
        next += mousePeriod;
        std::this_thread::sleep_until(next);
    }
    printRow("pointer, a step every 8 ms, seen", whileDrawing, alone);

    noctra.tell("watch");
    next = std::chrono::steady_clock::now();
    const auto end = next + 5s;
    int count = 0;
    for (; next < end; ++count, next += mousePeriod) {
        cap.step();
        std::this_thread::sleep_until(next + mousePeriod);
    }
    std::printf("  dragging for 5 s, %d steps:", count);
    for (const std::string& word : noctra.ask("frames"))
        std::printf(" %s", word.c_str());
    std::printf("\n");
}

} // namespace noctra::bench
