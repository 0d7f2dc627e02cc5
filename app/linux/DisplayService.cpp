#include "app/linux/DisplayService.h"

#include <array>
#include <cstdlib>
#include <utility>

#include "platform/linux/RuntimeDirectory.h"
#include "platform/linux/Xwayland.h"

namespace noctra {

namespace {

DisplayService notOnWayland(const std::string& found) {
    return {.problem = "this is a Wayland session (" + found +
                       "): Noctra cannot dim displays there yet; it needs an X11 session"};
}

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

DisplayService createRandrDisplays(Log& log) {
    const std::string name = variable("DISPLAY");
    if (name.empty() && !variable("WAYLAND_DISPLAY").empty())
        return notOnWayland("without an X server");
    RandrConnection connection = connectToRandr(nullptr);
    if (!connection.xcb)
        return {.problem = connection.description};
    if (isXwayland(connection))
        return notOnWayland("X display " + name +
                            " is Xwayland, which passes no gamma tables on to the displays");

    const RuntimeDirectory directory = openRuntimeDirectory();
    auto opened = TableRecord::open(
        directory.path.empty() ? std::string() : directory.path + "/" + tableRecordName(name));
    if (opened.opened == TableRecord::Opened::inUse)
        return {.problem = "another Noctra is running on this display and cannot be reached: " +
                           opened.error};
    if (!opened.record)
        return {.problem = "out of memory"};
    std::string problem = directory.path.empty() ? std::string() : directory.problem;
    if (!problem.empty())
        problem += "; using " + directory.path;
    if (opened.opened == TableRecord::Opened::unavailable)
        problem = "a filter cannot be taken off after Noctra was killed: " +
                  (directory.path.empty() ? directory.problem : opened.error);
    std::string chosen = connection.description;
    return {.displays = std::make_unique<RandrDisplays>(std::move(connection),
                                                        std::move(opened.record), log),
            .chosen = std::move(chosen),
            .problem = std::move(problem)};
}

/// Every kind of display service, best first.
struct DisplayServiceKind {
    const char* name;
    const char* windowSystem;
    DisplayService (*create)(Log& log);
};
constexpr std::array<DisplayServiceKind, 1> displayServiceKinds{{
    {"X11 RandR", "xcb", createRandrDisplays},
}};

} // namespace

DisplayService chooseDisplays(Log& log) {
    std::string problems;
    for (const DisplayServiceKind& kind : displayServiceKinds) {
        DisplayService service = kind.create(log);
        if (service.displays) {
            service.windowSystem = kind.windowSystem;
            service.chosen = std::string(kind.name) + " (" + service.chosen + ")";
            return service;
        }
        problems += (problems.empty() ? "" : "; ") + service.problem;
    }
    return {.problem = problems};
}

} // namespace noctra
