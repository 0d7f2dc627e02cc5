#pragma once

#include <functional>
#include <string>
#include <vector>

#include "foundation/MainQueue.h"
#include "platform/linux/PosixProcess.h"

namespace noctra {

class AppDelegate;
class Preferences;

/// What a program that drives this one in a test may reach besides the shared objects.
struct RunningProgram {
    MainQueue& mainQueue;
    AppDelegate& delegate;
    Preferences& preferences;
};

/// Says on standard error what keeps the program from running; returns its exit status.
int failToRun(const std::string& message);

/// Puts the program together for a Linux desktop and runs it; returns its exit status, or ends the
/// process by itself. Hands `urls` to the Noctra that already runs in this session where there is
/// one. `launched`, if set, is called on the main thread once the program runs.
int runLinuxProgram(PosixProcess& process, int argc, char** argv,
                    const std::vector<std::string>& urls,
                    const std::function<void(const RunningProgram&)>& launched = nullptr);

} // namespace noctra
