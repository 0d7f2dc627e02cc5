// What the backlight poll and PWM-safe mode's drift check cost, beside the bare reading of the one
// small file that each of them comes down to. Needs an X server ($DISPLAY) and a backlight under
// /sys/class/backlight; scripts/bench brings both. The argument is the display-services library.

#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

#include "bench/Allocations.h"
#include "bench/Timing.h"
#include "engine/ColorFilterManager.h"
#include "platform/linux/PosixLibraryLoader.h"
#include "platform/linux/RandrDisplays.h"
#include "platform/linux/Symbol.h"
#include "platform/linux/backlight/SysfsBacklight.h"
#include "platform/linux/displayservices/HostFunctions.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "pwmsafe/DisplayServicesBridge.h"
#include "pwmsafe/PwmSafeManager.h"

namespace noctra::bench {

namespace {

constexpr std::size_t rounds = 20000;

/// The least that tells a backlight's level: one read of an open file.
class BareReading {
public:
    explicit BareReading(const BacklightDevice& device)
        : descriptor_(::open((device.folder + "/actual_brightness").c_str(), O_RDONLY)) {}
    ~BareReading() { ::close(descriptor_); }
    BareReading(const BareReading&) = delete;
    BareReading& operator=(const BareReading&) = delete;

    void read() {
        char bytes[32];
        total_ += ::pread(descriptor_, bytes, sizeof bytes, 0);
    }

private:
    int descriptor_;
    ssize_t total_ = 0;
};

/// Makes the X server say that its first output is a panel that is part of the machine.
void makePanel(const RandrConnection& connection) {
    xcb_connection_t* xcb = connection.xcb.get();
    const auto [type, panel] = internAtoms(xcb, {connectorTypeProperty, panelConnectorType});
    const RandrOutputProperties properties(xcb);
    for (const RandrScreen& screen : readConfiguration(connection, properties).screens) {
        xcb_randr_change_output_property(xcb, screen.output, type, XCB_ATOM_ATOM, 32,
                                         XCB_PROP_MODE_REPLACE, 1, &panel);
        break;
    }
}

/// The panel of the X server, once the library has found it; 0 when it does not.
DisplayId findPanel(const OnlineDisplays& online, const DisplayServicesBridge& bridge) {
    DisplayId ids[16];
    std::uint32_t count = 0;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    do {
        online.list(ids, count);
        for (std::uint32_t i = 0; i < count; ++i)
            if (online.isBuiltIn(ids[i]) && bridge.canChangeBrightness()(ids[i]))
                return ids[i];
    } while (std::chrono::steady_clock::now() < end);
    return 0;
}

int run(const std::string& library) {
    SimulatedDesktop desktop; // log, preferences and clocks; displays and backlight are real
    RandrConnection connection = connectToRandr(nullptr);
    const auto devices = listBacklightDevices();
    if (!connection.xcb || devices.empty()) {
        std::fprintf(stderr, "backlight_bench: needs an X server and a backlight\n");
        return 1;
    }
    makePanel(connection);
    RandrDisplays displays(std::move(connection), TableRecord::open({}).record, desktop.log);
    PosixLibraryLoader loader({library}, [&](void* opened) {
        using namespace display_services;
        SetDisplays* setDisplays = nullptr;
        if (!findSymbol(opened, setDisplaysSymbol, setDisplays))
            return;
        displays.online().deliverTo([setDisplays](const std::vector<AttachedDisplay>& attached) {
            setDisplays(attached.data(), attached.size());
        });
    });
    const DisplayServicesBridge bridge(loader);
    if (bridge.getBrightness() == nullptr || findPanel(displays.online(), bridge) == 0) {
        std::fprintf(stderr, "backlight_bench: the library finds no panel\n");
        return 1;
    }
    const DisplayId panel = findPanel(displays.online(), bridge);

    SysfsBacklight backlight;
    BareReading bare(devices.front());
    PwmSafeManager manager({.log = desktop.log,
                            .mainQueue = desktop.mainQueue,
                            .wallClock = desktop.wall,
                            .preferences = desktop.preferences,
                            .onlineDisplays = displays.online(),
                            .displayChanges = desktop.displayChanges,
                            .bridge = bridge});
    manager.isEnabled = true;
    const auto settled = std::chrono::steady_clock::now() + std::chrono::seconds(1);
    while (std::chrono::steady_clock::now() < settled)
        desktop.settle(); // the library takes the panel up

    Samples poll(rounds);
    Samples reading(rounds);
    Samples getter(rounds);
    Samples tick(rounds);
    float level = 0.0F;
    for (std::size_t i = 0; i < rounds; ++i) {
        poll.time([&] { static_cast<void>(backlight.level()); });
        reading.time([&] { bare.read(); });
        getter.time([&] { bridge.getBrightness()(panel, &level); });
        // With its timer, on virtual time; nothing has drifted.
        tick.time([&] { desktop.advance(Seconds(5)); });
    }
    const AllocationCounts before = allocationCounts();
    for (std::size_t i = 0; i < rounds; ++i)
        static_cast<void>(backlight.level());
    const AllocationCounts after = allocationCounts();

    const double least = reading.quantile(0.5);
    const auto row = [least](const char* what, Samples& samples) {
        std::printf("  %-34s median %6.2f us  p95 %6.2f us  ratio %5.2f\n", what,
                    samples.quantile(0.5), samples.quantile(0.95), samples.quantile(0.5) / least);
    };
    std::printf("Backlight at %.3f, mode %s, %zu rounds in turns\n", static_cast<double>(level),
                manager.isEnabled ? "on" : "off", rounds);
    row("bare read of the value's file", reading);
    row("poll (every 2 s)", poll);
    row("library's getBrightness", getter);
    row("drift check with timer (every 5 s)", tick);
    std::printf("  heap allocations of a poll: %.3f\n",
                static_cast<double>(after.fromMalloc - before.fromMalloc) /
                    static_cast<double>(rounds));
    manager.isEnabled = false;
    return 0;
}

} // namespace

} // namespace noctra::bench

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: backlight_bench LIBRARY\n");
        return 2;
    }
    return noctra::bench::run(argv[1]);
}
