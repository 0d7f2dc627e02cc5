// The whole program with a remote control: it does what lines on its standard input ask for, on its
// main thread, as the control panel would.
//
//   pwm on | pwm off    switches PWM-safe mode
//   open                makes the PWM-safe controller, as showing the panel does; prints the state
//   login on | login off
//   quit                what the menu item does
//   state               the same
//   pending             prints how many timers and pieces of delayed work wait
//   flicker             prints the warning level, without making the controller
//   panel               prints whether the panel is shown and a fader held, the cursor that it has
//                       pushed, and the values that the controls stand for

#include <algorithm>
#include <cstdio>
#include <string>
#include <unistd.h>

#include <QtGui/QCursor>
#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>

#include "app/AppDelegate.h"
#include "app/linux/LinuxProgram.h"
#include "engine/ColorFilterManager.h"
#include "foundation/Numbers.h"
#include "platform/Preferences.h"
#include "pwmsafe/PwmSafeManager.h"

namespace {

using namespace noctra;

const char* nameOf(ColorFilterManager::FlickerWarningLevel level) {
    using Level = ColorFilterManager::FlickerWarningLevel;
    return level == Level::severe ? "severe" : level == Level::mild ? "mild" : "none";
}

const char* stateOf(const PwmSafeManager& manager) {
    if (!manager.isAvailable)
        return "Inert";
    if (!manager.isEnabled)
        return "Off";
    return manager.verified ? "Locked" : "Locking";
}

void printState(const Preferences& preferences) {
    const ColorFilterManager& engine = ColorFilterManager::shared();
    const PwmSafeManager& manager = PwmSafeManager::shared();
    std::printf("state pwm=%s controllable=%d flicker=%s hardware=%s login=%d stored=%d\n",
                stateOf(manager), manager.hasControllableDisplay ? 1 : 0,
                nameOf(engine.flickerWarningLevel()),
                engine.hardwareBrightnessAvailable
                    ? shortestDecimal(engine.hardwareBrightness.get()).c_str()
                    : "unknown",
                engine.startAtLogin ? 1 : 0, preferences.boolForKey("pwmSafeMode") ? 1 : 0);
    std::fflush(stdout);
}

const char* nameOfPushedCursor() {
    const QCursor* cursor = QGuiApplication::overrideCursor();
    if (cursor == nullptr)
        return "none";
    return cursor->shape() == Qt::PointingHandCursor ? "hand" : "other";
}

void printPanel() {
    bool shown = false;
    bool dragging = false;
    for (const QWindow* window : QGuiApplication::topLevelWindows()) {
        shown = shown || window->isVisible();
        const auto items = window->findChildren<QObject*>();
        dragging = dragging || std::any_of(items.begin(), items.end(), [](const QObject* item) {
                       return item->property("dragging").toBool();
                   });
    }
    const ColorFilterManager& engine = ColorFilterManager::shared();
    std::printf("panel shown=%d dragging=%d cursor=%s enabled=%d intensity=%s brightness=%s "
                "extreme=%d\n",
                shown ? 1 : 0, dragging ? 1 : 0, nameOfPushedCursor(), engine.isEnabled ? 1 : 0,
                shortestDecimal(engine.intensity).c_str(),
                shortestDecimal(engine.brightness).c_str(), engine.allowExtremeDim ? 1 : 0);
}

void obey(const std::string& line, const RunningProgram& program) {
    if (line == "state" || line == "open")
        printState(program.preferences);
    else if (line == "pwm on" || line == "pwm off")
        PwmSafeManager::shared().isEnabled = line == "pwm on";
    else if (line == "login on" || line == "login off")
        ColorFilterManager::shared().startAtLogin = line == "login on";
    else if (line == "pending")
        std::printf("pending %zu\n", program.mainQueue.pendingCount());
    else if (line == "flicker")
        std::printf("flicker %s\n", nameOf(ColorFilterManager::shared().flickerWarningLevel()));
    else if (line == "panel")
        printPanel();
    else if (line == "quit")
        program.delegate.quitApp();
    else
        std::fprintf(stderr, "unknown request: %s\n", line.c_str());
    std::fflush(stdout);
}

/// Reads what there is and obeys every whole line; false at the end of the input.
bool readRequests(std::string& unread, const RunningProgram& program) {
    char bytes[512];
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count <= 0)
        return false;
    unread.append(bytes, static_cast<std::size_t>(count));
    for (std::size_t end; (end = unread.find('\n')) != std::string::npos;) {
        const std::string line = unread.substr(0, end);
        unread.erase(0, end + 1);
        obey(line, program);
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::string unread;
    AnyCancellable requests;
    return runLinuxProgram(PosixProcess::start(), argc, argv, {},
                           [&](const RunningProgram& program) {
                               requests = program.mainQueue.watch(STDIN_FILENO, [&, program] {
                                   if (!readRequests(unread, program))
                                       requests.cancel();
                               });
                           });
}
