// What the tray's item and its popover learn of other programs' windows, on a real X server.

#include <array>
#include <cstdlib>
#include <map>
#include <poll.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xinput.h>

#include "platform/linux/tray/BarColour.h"
#include "platform/linux/tray/DockWindows.h"
#include "platform/linux/tray/XInputEventMonitors.h"
#include "platform/simulated/SimulatedDesktop.h"
#include "tests/desktop/support/InputDevices.h"
#include "tests/desktop/support/XConnection.h"
#include "tests/desktop/support/XServer.h"

namespace noctra::desktop {

namespace {

using ::testing::ElementsAre;

/// Another program, or a connection of this one's, with windows of one colour.
struct Client : XConnection {
    using XConnection::XConnection;

    xcb_window_t show(xcb_window_t parent, const PixelRect& place, std::uint32_t colour,
                      std::uint32_t maps = 1) const {
        const xcb_window_t window = xcb_generate_id(get());
        const std::uint32_t values[]{colour, 1};
        xcb_create_window(
            get(), XCB_COPY_FROM_PARENT, window, parent, static_cast<std::int16_t>(place.x),
            static_cast<std::int16_t>(place.y), static_cast<std::uint16_t>(place.width),
            static_cast<std::uint16_t>(place.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
            XCB_COPY_FROM_PARENT, XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, values);
        if (maps != 0)
            xcb_map_window(get(), window);
        return window;
    }
    void set(xcb_window_t window, const char* property, xcb_atom_t type,
             const std::vector<std::uint32_t>& values) const {
        xcb_change_property(get(), XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                            static_cast<std::uint32_t>(values.size()), values.data());
    }
    /// From now on `timeOfPress` knows of the presses on the window.
    void hearPresses(xcb_window_t window) const {
        const std::uint32_t mask = XCB_EVENT_MASK_BUTTON_PRESS;
        xcb_change_window_attributes(get(), window, XCB_CW_EVENT_MASK, &mask);
    }
    /// Of the last one, by the server's clock.
    xcb_timestamp_t timeOfPress() const {
        static_cast<void>(isAlive()); // all that came before has arrived then
        xcb_timestamp_t time = 0;
        while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(get())})
            if (event->response_type == XCB_BUTTON_PRESS)
                time = reinterpret_cast<const xcb_button_press_event_t*>(event.get())->time;
        return time;
    }
    void makeDock(xcb_window_t window) const {
        set(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
            {atom("_NET_WM_WINDOW_TYPE_NORMAL"), atom("_NET_WM_WINDOW_TYPE_DOCK")});
    }
};

XServer& server() {
    static XServer theServer(2);
    return theServer;
}

constexpr std::uint32_t dark = 0x202020;
constexpr std::uint32_t light = 0xFFFFFF;

struct Shown {
    xcb_window_t window;
    std::uint32_t processId;
    PixelRect frame;
    Strut strut;
    friend bool operator==(const Shown&, const Shown&) = default;
};

TEST(TrayWindows, AreFoundWhereAWindowManagerHasFramedThemAndWithNonsenseOnThem) {
    const Client bar(server().display());
    const xcb_window_t frame = bar.show(bar.root(), {640, 440, 640, 40}, light);
    const xcb_window_t within = bar.show(frame, {5, 10, 600, 30}, light);
    const xcb_window_t framed = bar.show(within, {1, 2, 500, 20}, dark);
    bar.makeDock(framed);
    bar.set(framed, "_NET_WM_STRUT", XCB_ATOM_CARDINAL, {0, 0, 0, 0xFFFFFFFF});
    bar.set(framed, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL, {0, 0, 0, 40});
    bar.set(framed, "_NET_WM_PID", XCB_ATOM_STRING, {4711});
    const xcb_window_t plain = bar.show(bar.root(), {0, 0, 640, 20}, dark);
    bar.makeDock(plain);
    bar.set(plain, "_NET_WM_PID", XCB_ATOM_CARDINAL, {4711});
    bar.set(plain, "_NET_WM_STRUT", XCB_ATOM_CARDINAL, {1, 2, 3, 4});
    bar.set(plain, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL,
            {0, 0, 20, 0, 0, 0, 0, 0, 0, 639, 0, 0});
    bar.makeDock(bar.show(bar.root(), {0, 100, 640, 20}, dark, 0));
    bar.set(bar.show(bar.root(), {0, 100, 640, 20}, dark), "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
            {0});
    ASSERT_TRUE(bar.isAlive());

    const Client asking(server().display());
    std::vector<Shown> found;
    for (const Dock& dock : findDocks(asking.get(), asking.root()))
        found.push_back({dock.window, dock.processId, dock.frame, dock.strut});
    constexpr StrutSide none{0, 0, 32767};
    const Strut plainStrut{.top = {20, 0, 639}}, framedStrut{none, none, none, {32767, 0, 32767}};
    EXPECT_THAT(found, ElementsAre(Shown{framed, 0, {646, 452, 500, 20}, framedStrut},
                                   Shown{plain, 4711, {0, 0, 640, 20}, plainStrut}));
}

TEST(TrayWindows, ABarsColourIsReadBesideTheItemAndOnTheScreenOnly) {
    const Client bar(server().display());
    const xcb_window_t window = bar.show(bar.root(), {0, 200, 1280, 100}, dark);
    bar.show(window, {400, 0, 880, 100}, light); // the item, most of the bar
    ASSERT_TRUE(bar.isAlive());
    struct Case {
        const char* situation;
        PixelRect area, exclude;
        std::optional<double> luminance;
    };
    for (const Case& known :
         {Case{"with the item", {0, 200, 1280, 100}, {}, 1.0},
          Case{"without it", {100, 200, 500, 30}, {400, 200, 300, 30}, 0.01444},
          Case{"near it, of more than is read", {0, 200, 1280, 100}, {0, 200, 1, 1}, 0.01444},
          Case{"half beyond the screen", {-500, 200, 600, 100}, {}, 0.01444},
          Case{"beyond the screen", {-50, -10, 30, 400}, {}, std::nullopt},
          Case{"nothing but the item", {410, 205, 20, 20}, {400, 200, 300, 30}, std::nullopt}}) {
        const auto read = barLuminance(bar.get(), bar.root(), known.area, known.exclude);
        ASSERT_EQ(read.has_value(), known.luminance.has_value()) << known.situation;
        EXPECT_NEAR(read.value_or(0), known.luminance.value_or(0), 1e-4) << known.situation;
    }
}

/// Never sleeps: `turn` does what there is to do.
class PollingLoop : public RunLoop {
public:
    void wake() override {}
    void wakeAt(SteadyClock::TimePoint) override {}
    void watch(int descriptor, std::function<void()> readable) override {
        watched[descriptor] = std::move(readable);
    }
    void unwatch(int descriptor) override { watched.erase(descriptor); }

    void turn(MainQueue& queue) {
        queue.runDue();
        const auto now = watched;
        for (const auto& [descriptor, readable] : now)
            if (pollfd asked{descriptor, POLLIN, 0}; poll(&asked, 1, 0) > 0)
                readable();
    }

    std::map<int, std::function<void()>> watched;
};

struct Presses : testing::Test {
    Presses() { setenv("DISPLAY", server().display().c_str(), 1); }

    /// The press has been read, if it was told, when this returns.
    void click(PixelPoint at, int button) {
        input.perform({"mousemove", std::to_string(at.x), std::to_string(at.y), "click",
                       std::to_string(button)});
        read();
    }
    void read() {
        ASSERT_TRUE(own.isAlive()); // an answer comes after what was sent to others before
        loop.turn(queue);
        clock.set(clock.now() + std::chrono::milliseconds(50));
        queue.runDue();
    }

    Client own{server().display()};
    Client other{server().display()};
    InputDevices input{server().display()};
    PollingLoop loop;
    VirtualSteadyClock clock;
    MainQueue queue{loop, clock};
    RecordedLog log;
    xcb_window_t popover = own.show(own.root(), {10, 300, 100, 100}, dark);
    XInputEventMonitors monitors{queue, clock, log, [this](xcb_timestamp_t time) {
                                     const auto later = own.timeOfPress() - time;
                                     return later <= 50;
                                 }};
};

TEST_F(Presses, InOtherProgramsAreToldWhereverTheyGo) {
    const xcb_window_t tray = other.show(other.root(), {200, 300, 200, 100}, light);
    ASSERT_TRUE(other.isAlive());
    own.hearPresses(popover);
    own.hearPresses(own.show(tray, {150, 50, 50, 50}, dark)); // the item
    const auto grab = [this] {
        const auto cookie =
            xcb_grab_pointer(other.get(), 0, other.root(), 0, XCB_GRAB_MODE_ASYNC,
                             XCB_GRAB_MODE_ASYNC, XCB_NONE, XCB_NONE, XCB_CURRENT_TIME);
        std::free(xcb_grab_pointer_reply(other.get(), cookie, nullptr));
    };
    const auto ungrab = [this] {
        xcb_ungrab_pointer(other.get(), XCB_CURRENT_TIME);
    };
    // Of the mouse that xdotool moves, or of all together; all ten buttons have to be named.
    constexpr std::uint8_t allMice = 2, mouse = 4;
    const auto order = [this](std::uint8_t device, std::uint8_t left, std::uint8_t right) {
        const std::array<std::uint8_t, 10> buttons{left, 2, right, 4, 5, 6, 7, 8, 9, 10};
        const auto cookie =
            xcb_input_set_device_button_mapping(other.get(), device, 10, buttons.data());
        std::free(xcb_input_set_device_button_mapping_reply(other.get(), cookie, nullptr));
    };
    struct Case {
        const char* situation;
        PixelPoint at;
        int button;
        std::optional<bool> left; ///< nothing: not told
        std::function<void()> before = [] {
        };
    };
    const std::vector<Case> cases{
        {"left, another's window", {210, 310}, 1, true},
        {"right, on the second monitor's desktop", {700, 9}, 3, false},
        {"middle", {210, 310}, 2, {}},
        {"wheel", {210, 310}, 4, {}},
        {"the popover", {50, 350}, 1, {}},
        {"the item in the tray", {360, 360}, 3, {}},
        {"beside the item", {340, 340}, 1, true},
        {"while another has grabbed the mouse", {210, 310}, 1, true, grab},
        {"for the left hand",
         {210, 310},
         1,
         false,
         [&] {
             ungrab(), order(allMice, 3, 1);
         }},
        {"twice",
         {210, 310},
         3,
         false,
         [&] {
             order(mouse, 3, 1);
         }},
        {"of this mouse only",
         {210, 310},
         3,
         true,
         [&] {
             order(allMice, 1, 3);
         }},
    };
    int told = 0;
    const AnyCancellable monitor = monitors.addGlobalMonitor([&] { ++told; });
    EXPECT_FALSE(monitors.lastPress());
    for (const Case& known : cases) {
        known.before();
        clock.set(clock.now() + std::chrono::seconds(1));
        const auto heard = clock.now();
        told = 0;
        click(known.at, known.button);
        EXPECT_EQ(told, known.left ? 1 : 0) << known.situation;
        const auto press = monitors.lastPress();
        ASSERT_TRUE(press) << known.situation;
        EXPECT_EQ(press->when == heard, known.left.has_value()) << known.situation;
        if (known.left) {
            EXPECT_EQ(press->where, known.at) << known.situation;
            EXPECT_EQ(press->left, *known.left) << known.situation;
        }
    }
}

TEST_F(Presses, BelongToTheWindowThatWasToldWhereverThePointerIsWhenTheyAreRead) {
    own.hearPresses(popover);
    ASSERT_TRUE(own.isAlive());
    int told = 0;
    const AnyCancellable monitor = monitors.addGlobalMonitor([&] { ++told; });
    const auto pressAndLeave = [this](const char* from, const char* to) {
        input.perform({"mousemove", from, "350", "mousedown", "1", "mousemove", to, "350"});
        read();
        input.perform({"mouseup", "1"});
    };
    pressAndLeave("50", "600");
    EXPECT_EQ(told, 0);
    pressAndLeave("600", "50");
    EXPECT_EQ(told, 1);
}

TEST(PressesOfAServerThatDies, AreNotMissedWithMoreThanOneLine) {
    XServer mortal(1);
    setenv("DISPLAY", mortal.display().c_str(), 1);
    PollingLoop loop;
    VirtualSteadyClock clock;
    MainQueue queue(loop, clock);
    RecordedLog log;
    XInputEventMonitors monitors(queue, clock, log, [](auto) { return false; });
    const AnyCancellable token = monitors.addGlobalMonitor([] { FAIL(); });
    mortal.killAtOnce();
    ASSERT_TRUE(pollUntil(patience, [&] {
        loop.turn(queue);
        return loop.watched.empty();
    }));
    EXPECT_FALSE(monitors.addGlobalMonitor([] {}).isActive());
    EXPECT_EQ(log.messages.size(), 1U);
}

} // namespace

} // namespace noctra::desktop
