#include "tests/desktop/support/FakeBacklight.h"

#include <filesystem>
#include <fstream>

#include "tests/desktop/support/MountNamespace.h"

namespace noctra::desktop {

FakeBacklight::FakeBacklight(int value) {
    std::filesystem::create_directories(folder_ / "backlight/test_backlight");
    writeFile(file("type"), "firmware\n");
    writeFile(file("max_brightness"), "1000\n");
    set(value);
    std::filesystem::create_symlink("brightness", file("actual_brightness"));
}

int FakeBacklight::value() const {
    const std::string text = readFile(file("brightness"));
    return text.empty() ? -1 : std::stoi(text); // empty while others write it
}

/// In the file that programs may hold open, which is never empty: the kernel's files are not,
/// either.
void FakeBacklight::set(int value) const {
    const std::string text = std::to_string(value) + "\n";
    std::fstream open(file("brightness"), std::ios::in | std::ios::out);
    if (!open)
        return writeFile(file("brightness"), text);
    open << text;
    open.close();
    std::filesystem::resize_file(file("brightness"), text.size());
}

void FakeBacklight::stickAt(int value) const {
    std::filesystem::remove(file("actual_brightness"));
    writeFile(file("actual_brightness"), std::to_string(value) + "\n");
}

void FakeBacklight::setFailing(bool failing) const {
    const std::string away = file("brightness.away");
    if (failing != std::filesystem::exists(away))
        failing ? std::filesystem::rename(file("brightness"), away)
                : std::filesystem::rename(away, file("brightness"));
}

std::vector<std::string> FakeBacklight::launcher() const {
    return withFolderAt(folder_.path(), "/sys/class");
}

std::string FakeBacklight::file(const char* name) const {
    return (folder_ / "backlight/test_backlight" / name).string();
}

} // namespace noctra::desktop
