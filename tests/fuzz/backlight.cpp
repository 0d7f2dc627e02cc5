// The class folder of the kernel's backlights: which devices are there, and what their files say.

#include <algorithm>
#include <array>
#include <limits>
#include <string>

#include "platform/linux/backlight/BacklightDevices.h"
#include "platform/linux/backlight/NumberFile.h"
#include "platform/linux/backlight/SysfsBacklight.h"
#include "tests/fuzz/support/Input.h"
#include "tests/fuzz/support/ScratchFolder.h"

using namespace noctra;
using fuzz::require;

namespace {

constexpr std::array<const char*, 5> names{"intel_backlight", "acpi_video0", "ddcci3", ".hidden",
                                           "nv"};
constexpr std::array<const char*, 4> files{"/type", "/max_brightness", "/actual_brightness",
                                           "/brightness"};

/// A line per file: `-` means that there is none, `/` that a folder is in its place.
void fill(const std::string& folder, fuzz::Input& input) {
    std::filesystem::create_directory(folder);
    for (const char* const file : files) {
        const std::string text = input.textUpTo('\0');
        if (text == "/")
            std::filesystem::create_directory(folder + file);
        else if (text == ">")
            std::filesystem::create_symlink("nowhere", folder + file);
        else if (text != "-")
            fuzz::writeFile(folder + file, text);
    }
}

/// What a NumberFile should make of such contents.
std::optional<unsigned int> numberIn(const std::string& text) {
    if (text.size() >= 32) // longer than what the kernel says
        return std::nullopt;
    std::size_t i = 0;
    unsigned long long number = 0;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
        number = number * 10 + static_cast<unsigned long long>(text[i] - '0');
        if (number > std::numeric_limits<unsigned int>::max())
            return std::nullopt;
    }
    if (i == 0 || text.find_first_not_of(" \n", i) != std::string::npos)
        return std::nullopt;
    return static_cast<unsigned int>(number);
}

void check(const BacklightDevice& device) {
    require(device.name[0] != '.' && !device.name.starts_with("ddcci"), "a device is a backlight");
    require(device.maximum > 0, "a device has a maximum");
    require(numberIn(fuzz::readFile(device.folder + files[1])) == device.maximum,
            "the maximum is what its file says");
    for (const auto& [value, file] : {std::pair(readBacklight(device), files[2]),
                                      std::pair(readBacklightSetting(device), files[3])}) {
        require(!value || *value <= device.maximum, "a value is in range");
        require(!value || numberIn(fuzz::readFile(device.folder + file)) == value,
                "a value is what its file says");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static fuzz::ScratchFolder scratch;
    const std::string folder = scratch.newFolder();
    fuzz::Input input(data, size);
    for (const char* const name : names)
        if (!input.empty())
            fill(folder + '/' + name, input);
    const auto devices = listBacklightDevices(folder);
    std::for_each(devices.begin(), devices.end(), check);
    const auto level = SysfsBacklight(folder).level();
    require(!level || (*level >= 0.0F && *level <= 1.0F), "a level is in range");
    require(level.has_value() == !devices.empty(), "a device that is listed has a level");
    std::filesystem::remove_all(folder);
    return 0;
}
