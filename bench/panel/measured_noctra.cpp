// The whole program, with instruments: it does what lines on its standard input ask for, on its
// main thread, and answers each with one line that starts with "bench". panel_bench starts it.
//
//   on         switches the filter on; no answer
//   show       shows the panel; milliseconds until its first frame
//   place      where on the screen the warmth fader's cap is: x, y, and the length of its way
//   warmth X   sets the warmth, as anything but the panel does; no answer
//   apply N    applies the filter N times; median and 95th percentile, microseconds
//   watch      starts to count frames; no answer
//   frames     what was counted since
//   steps N    drags the warmth fader N times without the X server's help, a frame after each

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

#include <QtCore/QCoreApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QPointingDevice>

#include "app/AppDelegate.h"
#include "app/linux/LinuxProgram.h"
#include "bench/Timing.h"
#include "bench/panel/CallerCounts.h"
#include "bench/panel/FrameWatch.h"
#include "engine/ColorFilterManager.h"

namespace noctra::bench {

namespace {

constexpr unsigned pause = 3000; ///< microseconds
constexpr double padding = 20.0; ///< above and below the fader's way, points

/// Seconds that this process has had a core for.
double processorTime() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Null while the panel is not shown.
const QObject* warmthFader() {
    const auto faders = FrameWatch::items("noctra::FaderItem");
    return faders.empty() ? nullptr : faders.front();
}

/// Where on the screen a place in an item is.
QPointF onScreen(const QObject& item, double x, double y) {
    QPointF place(x, y);
    for (const QObject* at = &item; at != nullptr; at = at->property("parent").value<QObject*>())
        place += QPointF(at->property("x").toDouble(), at->property("y").toDouble());
    return FrameWatch::panel()->mapToGlobal(place);
}

class Instruments {
public:
    explicit Instruments(const RunningProgram& program) : program_(program) {
        requests_ = program.mainQueue.watch(STDIN_FILENO, [this] { readRequests(); });
    }

private:
    void readRequests() {
        char bytes[512];
        const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) {
            requests_.cancel();
            return;
        }
        unread_.append(bytes, static_cast<std::size_t>(count));
        for (std::size_t end; (end = unread_.find('\n')) != std::string::npos;) {
            const std::string line = unread_.substr(0, end);
            unread_.erase(0, end + 1);
            obey(line);
        }
    }

    void obey(const std::string& line) {
        const std::string verb = line.substr(0, line.find(' '));
        const double number = std::atof(line.substr(verb.size()).c_str());
        if (verb == "on")
            ColorFilterManager::shared().isEnabled = true;
        else if (verb == "show")
            show();
        else if (verb == "place")
            place();
        else if (verb == "warmth")
            ColorFilterManager::shared().intensity = number;
        else if (verb == "apply")
            apply(static_cast<std::size_t>(number));
        else if (verb == "watch")
            watch();
        else if (verb == "frames")
            tellFrames();
        else if (verb == "steps")
            drag(static_cast<std::size_t>(number));
        std::fflush(stdout);
    }

    void show() {
        const auto start = FrameWatch::Clock::now();
        program_.delegate.handleAutomationURL("noctra://show");
        watch_.begin();
        const bool shown = watch_.awaitFrame();
        const std::chrono::duration<double, std::milli> took =
            watch_.frames().empty() ? start - start : watch_.frames().front() - start;
        std::printf("bench shown %d %.1f\n", shown ? 1 : 0, took.count());
        findPanelLibrary();
    }

    static void place() {
        const QObject* fader = warmthFader();
        if (fader == nullptr)
            return;
        const double way = fader->property("height").toDouble() - 2.0 * padding;
        const double above = (1.0 - fader->property("value").toDouble()) * way;
        const QPointF cap =
            onScreen(*fader, fader->property("width").toDouble() / 2.0, padding + above);
        std::printf("bench place %d %d %d\n", qRound(cap.x()), qRound(cap.y()), qRound(way));
    }

    static void apply(std::size_t rounds) {
        Samples samples(rounds);
        for (std::size_t i = 0; i < rounds; ++i)
            samples.time([] { ColorFilterManager::shared().applyFilter(); });
        std::printf("bench applied %.1f %.1f\n", samples.quantile(0.5), samples.quantile(0.95));
    }

    void watch() {
        watch_.begin();
        watchedSince_ = FrameWatch::Clock::now();
        processorTimeBefore_ = processorTime();
    }

    void tellFrames() const {
        const auto& frames = watch_.frames();
        double longest = 0.0;
        int missed = 0;
        for (std::size_t i = 1; i < frames.size(); ++i) {
            const double gap =
                std::chrono::duration<double, std::milli>(frames[i] - frames[i - 1]).count();
            longest = std::max(longest, gap);
            missed += std::max(0, static_cast<int>(gap * 60.0 / 1000.0 - 0.5));
        }
        std::printf(
            "bench %zu frames, longest gap %.1f ms, %d missed of 60 a second, %.1f %% of a core; "
            "painted:",
            frames.size(), longest, missed,
            100.0 * (processorTime() - processorTimeBefore_) /
                std::chrono::duration<double>(FrameWatch::Clock::now() - watchedSince_).count());
        for (const auto& [name, count] : watch_.painted())
            std::printf(" %s=%d", name.c_str(), count);
        std::printf("\n");
    }

    void drag(std::size_t rounds) {
        const QObject* fader = warmthFader();
        QWindow* window = FrameWatch::panel();
        if (fader == nullptr)
            return;
        const QPointF start = onScreen(*fader, fader->property("width").toDouble() / 2.0,
                                       fader->property("height").toDouble() / 2.0);
        const auto send = [&](QEvent::Type type, double y, Qt::MouseButtons held) {
            const QPointF global(start.x(), y);
            QMouseEvent event(type, global - window->position(), global - window->position(),
                              global, type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                              held, Qt::NoModifier, QPointingDevice::primaryPointingDevice());
            QCoreApplication::sendEvent(window, &event);
        };
        watch_.begin();
        send(QEvent::MouseButtonPress, start.y(), Qt::LeftButton);
        Samples steps(rounds);
        Samples alone(rounds);
        CallerCounts inSteps;
        CallerCounts inFrames;
        for (std::size_t i = 0; i < rounds; ++i) {
            const CallerCounts before = callerCounts();
            const double y = start.y() + static_cast<double>(i % 60) - 30.0;
            steps.time([&] { send(QEvent::MouseMove, y, Qt::LeftButton); });
            const CallerCounts between = callerCounts();
            watch_.awaitFrame();
            inFrames += callerCounts() - between;
            inSteps += between - before;
            ::usleep(pause); // the X server has taken the frame in
            alone.time([] { ColorFilterManager::shared().applyFilter(); });
            ::usleep(pause);
        }
        send(QEvent::MouseButtonRelease, start.y(), Qt::NoButton);
        const auto share = [rounds](std::uint64_t count) {
            return static_cast<double>(count) / static_cast<double>(rounds);
        };
        std::printf("bench steps %.1f %.1f apply %.1f %.1f allocations %.2f %.2f frame %.2f %.2f\n",
                    steps.quantile(0.5), steps.quantile(0.95), alone.quantile(0.5),
                    alone.quantile(0.95), share(inSteps.ours), share(inSteps.others),
                    share(inFrames.ours), share(inFrames.others));
    }

    const RunningProgram program_;
    std::string unread_;
    FrameWatch watch_;
    FrameWatch::Clock::time_point watchedSince_;
    double processorTimeBefore_ = 0.0;
    AnyCancellable requests_;
};

} // namespace

} // namespace noctra::bench

int main(int argc, char** argv) {
    using namespace noctra;
    std::unique_ptr<bench::Instruments> instruments;
    return runLinuxProgram(PosixProcess::start(), argc, argv, {},
                           [&](const RunningProgram& program) {
                               instruments = std::make_unique<bench::Instruments>(program);
                           });
}
