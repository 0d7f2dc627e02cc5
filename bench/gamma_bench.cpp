// What one application of the filter costs on the displays of $DISPLAY, beside the bare xcb calls
// for the same tables, taken in turns in one run. See scripts/bench.

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include "bench/Allocations.h"
#include "bench/Timing.h"
#include "engine/ColorFilterManager.h"
#include "engine/GammaRamp.h"
#include "platform/linux/GammaResampler.h"
#include "platform/linux/RandrDisplays.h"
#include "platform/simulated/SimulatedDesktop.h"

namespace noctra::bench {

namespace {

constexpr std::size_t rounds = 4000;
constexpr std::size_t warmUp = 200;

/// The least that puts tables on every display: queued writes and one round trip.
class BareWrites {
public:
    BareWrites() : connection_(connectToRandr(nullptr)) {
        const RandrOutputProperties properties(connection_.xcb.get());
        for (const RandrScreen& screen : readConfiguration(connection_, properties).screens)
            crtcs_.push_back(screen.crtc);
    }

    void write(const NativeTables& tables) {
        xcb_connection_t* xcb = connection_.xcb.get();
        for (const xcb_randr_crtc_t crtc : crtcs_)
            xcb_randr_set_crtc_gamma(xcb, crtc, static_cast<std::uint16_t>(tables.size()),
                                     tables.red.data(), tables.green.data(), tables.blue.data());
        const XcbReply<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    }

    [[nodiscard]] std::size_t displays() const { return crtcs_.size(); }

private:
    RandrConnection connection_;
    std::vector<xcb_randr_crtc_t> crtcs_;
};

void timeRampAlone() {
    const GammaTables captured = SimulatedDisplays::linearTables();
    GammaTables output;
    NativeTables native;
    native.resize(gammaTableSize);
    Samples curve(rounds);
    Samples ramp(rounds);
    Samples conversion(rounds);
    ChannelGains gains;
    for (std::size_t i = 0; i < rounds; ++i) {
        const double intensity = static_cast<double>(i % 1000) / 1000.0;
        curve.time([&] { gains = ColorTemperatureCurve::normalizedRGB(intensity); });
        ramp.time([&] { scaleGammaTables(captured, gains, 0.7, output); });
        conversion.time([&] { tablesToNative(output, nullptr, native); });
    }
    std::printf("  per display, median: curve %.2f us (once per application), ramp %.2f us, "
                "to 16 bits %.2f us (clock included)\n",
                curve.quantile(0.5), ramp.quantile(0.5), conversion.quantile(0.5));
}

int run(const std::string& recordPath) {
    SimulatedDesktop desktop; // log, preferences and clocks; the displays are real
    RandrConnection connection = connectToRandr(nullptr);
    if (!connection.xcb) {
        std::fprintf(stderr, "gamma_bench: %s\n", connection.description.c_str());
        return 1;
    }
    auto opened = TableRecord::open(recordPath);
    if (opened.opened != TableRecord::Opened::fresh) {
        std::fprintf(stderr, "gamma_bench: needs a fresh record: %s\n", opened.error.c_str());
        return 1;
    }
    RandrDisplays displays(std::move(connection), std::move(opened.record), desktop.log);
    ColorFilterManager engine({.log = desktop.log,
                               .mainQueue = desktop.mainQueue,
                               .displays = displays,
                               .preferences = desktop.preferences,
                               .process = desktop.process});
    engine.intensity = 0.4;
    engine.brightness = 0.7;
    engine.isEnabled = true;

    BareWrites bare;
    GammaTables filtered;
    scaleGammaTables(SimulatedDisplays::linearTables(), ColorTemperatureCurve::normalizedRGB(0.4),
                     0.7, filtered);
    NativeTables native;
    native.resize(gammaTableSize);
    tablesToNative(filtered, nullptr, native);

    for (std::size_t i = 0; i < warmUp; ++i) {
        engine.applyFilter();
        bare.write(native);
    }
    Samples ours(rounds);
    Samples theirs(rounds);
    Samples step(rounds);
    for (std::size_t i = 0; i < rounds; ++i) {
        ours.time([&] { engine.applyFilter(); });
        theirs.time([&] { bare.write(native); });
        step.time([&] { engine.intensity = 0.4; }); // a step of a drag: apply and put off the save
    }
    std::printf("%zu display(s), %zu rounds in turns\n", bare.displays(), rounds);
    std::printf("  applyFilter       median %7.1f us  p95 %7.1f us\n", ours.quantile(0.5),
                ours.quantile(0.95));
    std::printf("  bare xcb writes   median %7.1f us  p95 %7.1f us\n", theirs.quantile(0.5),
                theirs.quantile(0.95));
    std::printf("  drag step         median %7.1f us  p95 %7.1f us\n", step.quantile(0.5),
                step.quantile(0.95));
    std::printf("  ratio applyFilter / bare, medians: %.3f\n",
                ours.quantile(0.5) / theirs.quantile(0.5));

    const auto perRound = [](auto&& work) {
        const AllocationCounts before = allocationCounts();
        for (std::size_t i = 0; i < rounds; ++i)
            work();
        const AllocationCounts after = allocationCounts();
        const auto share = [](std::uint64_t count) {
            return static_cast<double>(count) / static_cast<double>(rounds);
        };
        return std::pair(share(after.fromCpp - before.fromCpp),
                         share(after.fromMalloc - before.fromMalloc));
    };
    const auto apply = perRound([&] { engine.applyFilter(); });
    const auto drag = perRound([&] { engine.intensity = 0.4; });
    const auto bareCounts = perRound([&] { bare.write(native); });
    std::printf("  heap allocations each: applyFilter %.3f (all of malloc, libxcb included: %.3f), "
                "drag step %.3f (%.3f), bare %.3f (%.3f)\n",
                apply.first, apply.second, drag.first, drag.second, bareCounts.first,
                bareCounts.second);
    timeRampAlone();
    engine.isEnabled = false;
    return 0;
}

} // namespace

} // namespace noctra::bench

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: gamma_bench RECORD-FILE (that does not exist yet)\n");
        return 2;
    }
    return noctra::bench::run(argv[1]);
}
