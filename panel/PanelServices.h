#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "foundation/Clock.h"
#include "foundation/Log.h"
#include "foundation/MainQueue.h"

namespace noctra {

class Application;
class Clipboard;
class ColorFilterManager;
class CursorStack;
class Fonts;
class MotionPreference;
class NumberFormat;
class PwmSafeManager;
class Resources;

/// What the panel's views need. Everything must outlive them.
struct PanelServices {
    Log& log;
    /// The whole diagnostic log as one text.
    std::function<std::string()> fullLog;
    MainQueue& mainQueue;
    const SteadyClock& steadyClock;
    ColorFilterManager& filterManager;
    PwmSafeManager& pwmSafeManager;
    Application& application;
    Clipboard& clipboard;
    CursorStack& cursor;
    const NumberFormat& numbers;
    const MotionPreference& motion;
    const Resources& resources;
    const Fonts& fonts;
    /// Runs when the panel's window has been made and not been shown yet, with the window system's
    /// number for it; may be empty.
    std::function<void(std::uintptr_t window)> windowMade = {};
};

} // namespace noctra
