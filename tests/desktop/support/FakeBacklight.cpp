#include "tests/desktop/support/FakeBacklight.h"

#include <filesystem>

#include "tests/desktop/support/ChildProcess.h"

namespace noctra::desktop {

namespace {

/// A command that runs a shell script in a mount namespace of its own. Also where / is no mount
/// point, as in a chroot.
std::vector<std::string> inNamespace(const std::string& script) {
    return {"/usr/bin/unshare",
            "-m",
            "--propagation",
            "unchanged",
            "/bin/sh",
            "-c",
            "mount --make-rprivate /sys && " + script,
            "sh"};
}

} // namespace

FakeBacklight::FakeBacklight(int value) {
    std::filesystem::create_directories(folder_ / "backlight/test_backlight");
    writeFile(file("type"), "firmware\n");
    writeFile(file("max_brightness"), "1000\n");
    set(value);
    std::filesystem::create_symlink("brightness", file("actual_brightness"));
}

int FakeBacklight::value() const {
    const std::string text = readFile(file("brightness"));
    return text.empty() ? -1 : std::stoi(text); // empty while it is being written
}

void FakeBacklight::set(int value) const {
    writeFile(file("brightness"), std::to_string(value) + "\n");
}

void FakeBacklight::stickAt(int value) const {
    std::filesystem::remove(file("actual_brightness"));
    writeFile(file("actual_brightness"), std::to_string(value) + "\n");
}

std::vector<std::string> FakeBacklight::launcher() const {
    return inNamespace("mount --bind '" + folder_.path().string() + "' /sys/class && exec \"$@\"");
}

bool FakeBacklight::isPossible() {
    ChildProcess::Start start;
    start.arguments = inNamespace("mount -t tmpfs none /sys/class");
    start.environment = {"PATH=/usr/sbin:/usr/bin:/sbin:/bin"};
    return ChildProcess(start).waitForEnding(patience) == exited(0);
}

std::string FakeBacklight::file(const char* name) const {
    return (folder_ / "backlight/test_backlight" / name).string();
}

} // namespace noctra::desktop
