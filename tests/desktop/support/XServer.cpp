#include "tests/desktop/support/XServer.h"

#include <array>
#include <csignal>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

#include "tests/desktop/support/LineReader.h"
#include "tests/desktop/support/OutputPlugs.h"

namespace noctra::desktop {

namespace {

constexpr const char* serverConfiguration = R"(Section "Device"
    Identifier "card"
    Driver "dummy"
    VideoRam 256000
EndSection
Section "Monitor"
    Identifier "monitor"
    HorizSync 5-1000
    VertRefresh 5-200
EndSection
Section "Screen"
    Identifier "screen"
    Device "card"
    Monitor "monitor"
    DefaultDepth 24
    SubSection "Display"
        Depth 24
        Modes "640x480"
        Virtual 5760 1080
    EndSubSection
EndSection
)";

// The server itself, not the wrapper in PATH: the wrapper asks for a console.
constexpr const char* serverBinary = "/usr/lib/xorg/Xorg";

std::string lastPart(const std::string& text) {
    constexpr std::size_t enough = 2000;
    return text.size() > enough ? text.substr(text.size() - enough) : text;
}

} // namespace

XServer::XServer(int outputs) {
    const std::string configuration = folder_ / "xorg.conf";
    const std::string log = folder_ / "xorg.log";
    writeFile(configuration, serverConfiguration);
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0)
        throw std::runtime_error("no pipe can be made");
    ChildProcess::Start start;
    start.arguments = {serverBinary, "-displayfd",  std::to_string(ends[1]),
                       "-noreset",   "-novtswitch", "-sharevts",
                       "-config",    configuration, "-logfile",
                       log,          "-nolisten",   "tcp"};
    start.environment = {"PATH=/usr/bin:/bin", "HOME=" + folder_.path().string()};
    start.kept = ends[1];
    process_ = std::make_unique<ChildProcess>(start);
    close(ends[1]);
    awaitDisplay(ends[0]);
    if (display_.empty())
        throw std::runtime_error("the X server did not come up:\n" + lastPart(readFile(log)));
    OutputPlugs(display_).plugOnly(outputs);
}

void XServer::awaitDisplay(int descriptor) {
    const LineReader reader(descriptor);
    reader.waitUntil(patience, [](const auto& lines) { return !lines.empty(); });
    if (const auto lines = reader.lines(); !lines.empty())
        display_ = ":" + lines.front();
}

void XServer::pause() const {
    process_->signal(SIGSTOP);
}

void XServer::resume() const {
    process_->signal(SIGCONT);
}

void XServer::killAtOnce() const {
    process_->signal(SIGKILL);
    process_->waitForEnding(patience);
}

} // namespace noctra::desktop
