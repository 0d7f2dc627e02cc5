#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/Log.h"
#include "platform/simulated/SimulatedDisplayServices.h"
#include "platform/simulated/SimulatedDisplays.h"
#include "platform/simulated/SimulatedPanelServices.h"
#include "platform/simulated/SimulatedPreferences.h"
#include "platform/simulated/SimulatedProcess.h"
#include "platform/simulated/SimulatedServices.h"
#include "platform/simulated/SimulatedStatusBar.h"
#include "platform/simulated/VirtualTime.h"

namespace noctra {

/// The messages that were logged, without time stamps. One thread at a time.
class RecordedLog : public Log {
public:
    std::vector<std::string> messages;

    void log(std::string_view message) override { messages.emplace_back(message); }

    [[nodiscard]] std::size_t count(std::string_view message) const {
        return static_cast<std::size_t>(std::count(messages.begin(), messages.end(), message));
    }
};

/// A whole desktop in memory, on virtual time.
struct SimulatedDesktop {
    VirtualSteadyClock steady;
    VirtualWallClock wall;
    SimulatedRunLoop runLoop{steady, wall};
    MainQueue mainQueue{runLoop, steady};
    RecordedLog log;
    SimulatedDisplays displays;
    SimulatedPreferences preferences;
    SimulatedProcess process;
    SimulatedApplication application;
    SimulatedUrlChannel urls;
    SimulatedSystemInfo system;
    RecordedLines output;
    SimulatedScratchFiles files;
    SimulatedLoginItem loginItem;
    SimulatedBacklight backlight;
    SimulatedOnlineDisplays online;
    SimulatedDisplayServices displayServices;
    SimulatedDisplayChanges displayChanges;
    SimulatedClipboard clipboard;
    SimulatedCursorStack cursor;
    SimulatedNumberFormat numbers;
    SimulatedMotionPreference motion;
    SimulatedImages images;
    SimulatedStatusBar statusBar;
    SimulatedEventMonitors eventMonitors;

    void advance(Seconds time) { runLoop.advance(mainQueue, time); }
    void settle() { SimulatedRunLoop::settle(mainQueue); }
};

} // namespace noctra
