#include "tests/desktop/support/TestDesktop.h"

#include <cstdlib>
#include <sstream>

namespace noctra::desktop {

namespace {

constexpr const char* personsFolders[] = {"home", "config", "cache", "data", "state", "runtime"};

std::filesystem::path chosenBinary() {
    const char* other = std::getenv("NOCTRA_BINARY");
    return other != nullptr ? other : NOCTRA_BINARY;
}

/// What a sanitized program needs to know, else it would run with other rules than the tests.
void passSanitizerOptions(std::vector<std::string>& environment) {
    for (const char* name : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS"})
        if (const char* value = std::getenv(name); value != nullptr)
            environment.push_back(std::string(name) + "=" + value);
}

} // namespace

TestDesktop::TestDesktop(std::string display)
    : display_(std::move(display)), bus_(std::make_unique<SessionBus>()),
      busAddress_(bus_->address()), binary_(chosenBinary()), drivenBinary_(NOCTRA_DRIVEN_BINARY) {
    for (const char* name : personsFolders) {
        std::filesystem::create_directory(folder_ / name);
        std::filesystem::permissions(folder_ / name, std::filesystem::perms::owner_all);
    }
}

void TestDesktop::takeBusAway() {
    bus_.reset();
    busAddress_ = "unix:path=" + (folder_ / "no-session-bus").string();
}

std::filesystem::path TestDesktop::preferencesFile() const {
    return folder_.path() / "config" / "noctra" / "noctra.conf";
}

void TestDesktop::writePreferences(const std::string& bytes) const {
    std::filesystem::create_directories(preferencesFile().parent_path());
    writeFile(preferencesFile(), bytes);
}

void TestDesktop::presetFilter(double warmth, double brightness, bool allowExtremeDim) const {
    std::ostringstream text;
    text << "[General]\nfilterIntensity=" << warmth << "\nfilterBrightness=" << brightness
         << "\nallowExtremeDim=" << (allowExtremeDim ? "true" : "false")
         << "\nhasShownFirstRunPopover=true\n";
    writePreferences(text.str());
}

std::unique_ptr<Program> TestDesktop::start(const std::vector<std::string>& arguments,
                                            Program::Output output) const {
    std::vector<std::string> all{binary_};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return std::make_unique<Program>(all, environment(), output);
}

std::unique_ptr<Program> TestDesktop::startDriven(const std::vector<std::string>& launcher) const {
    std::vector<std::string> all = launcher;
    all.emplace_back(drivenBinary_);
    return std::make_unique<Program>(all, environment());
}

std::unique_ptr<Program> TestDesktop::startOther(const std::vector<std::string>& command) const {
    return std::make_unique<Program>(command, environment());
}

void TestDesktop::copyProgramsWithout(const std::string& missing) {
    const std::filesystem::path folder = folder_ / "programs";
    std::filesystem::create_directory(folder);
    for (const auto& entry : std::filesystem::directory_iterator(drivenBinary_.parent_path()))
        if (const std::filesystem::path name = entry.path().filename();
            name != missing && (name.extension() == ".so" || entry.is_directory()))
            std::filesystem::create_symlink(entry.path(), folder / name);
    // Not as links: a program looks where its file really is.
    for (std::filesystem::path* binary : {&binary_, &drivenBinary_}) {
        std::filesystem::copy_file(*binary, folder / binary->filename());
        *binary = folder / binary->filename();
    }
}

std::vector<std::string> TestDesktop::environment() const {
    const std::string at = folder_.path().string();
    std::vector<std::string> variables{
        "PATH=/usr/bin:/bin",
        "LANG=C.UTF-8",
        "USER=tester",
        "HOME=" + at + "/home",
        "XDG_CONFIG_HOME=" + at + "/config",
        "XDG_CACHE_HOME=" + at + "/cache",
        "XDG_DATA_HOME=" + at + "/data",
        "XDG_STATE_HOME=" + at + "/state",
        "XDG_RUNTIME_DIR=" + at + "/runtime",
        "XDG_SESSION_TYPE=x11",
        "DBUS_SESSION_BUS_ADDRESS=" + busAddress_,
        "DBUS_SYSTEM_BUS_ADDRESS=unix:path=" + at + "/no-system-bus",
    };
    if (!display_.empty())
        variables.push_back("DISPLAY=" + display_);
    for (const auto& [name, value] : extra_) {
        std::erase_if(variables, [prefix = name + "="](const std::string& variable) {
            return variable.starts_with(prefix);
        });
        variables.push_back(name + "=" + value);
    }
    passSanitizerOptions(variables);
    return variables;
}

} // namespace noctra::desktop
