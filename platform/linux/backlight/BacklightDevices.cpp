#include "platform/linux/backlight/BacklightDevices.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <memory>
#include <string_view>
#include <tuple>
#include <utility>

#include <dirent.h>

#include "platform/linux/backlight/NumberFile.h"

namespace noctra {

namespace {

/// The kinds of device, best first: firmware knows what the machine's maker wired up, a raw
/// interface only the graphics chip.
constexpr std::array<const char*, 3> kinds{"firmware", "platform", "raw"};

/// Names of the backlights that a driver makes of external monitors begin so.
constexpr std::string_view monitors = "ddcci";

struct Candidate {
    std::size_t rank = 0; ///< of its kind
    BacklightDevice device;
};

std::optional<std::size_t> rankOf(const std::string& folder) {
    std::ifstream file(folder + "/type");
    std::string kind;
    std::getline(file, kind);
    const auto* const found = std::find(kinds.begin(), kinds.end(), kind);
    if (found == kinds.end())
        return std::nullopt;
    return static_cast<std::size_t>(std::distance(kinds.begin(), found));
}

std::optional<Candidate> examine(const std::string& classFolder, const std::string& name) {
    const std::string folder = classFolder + "/" + name;
    const auto rank = rankOf(folder);
    const auto maximum = NumberFile(folder + "/max_brightness").read();
    if (!rank || !maximum || *maximum == 0)
        return std::nullopt;
    Candidate candidate{*rank, {name, folder, *maximum}};
    if (!readBacklight(candidate.device).setting)
        return std::nullopt;
    return candidate;
}

} // namespace

std::vector<BacklightDevice> listBacklightDevices(const std::string& classFolder) {
    struct Close {
        void operator()(DIR* folder) const { ::closedir(folder); }
    };
    const std::unique_ptr<DIR, Close> folder(::opendir(classFolder.c_str()));
    if (!folder)
        return {};
    std::vector<Candidate> candidates;
    while (const dirent* const entry = ::readdir(folder.get()))
        if (entry->d_name[0] != '.' && !std::string_view(entry->d_name).starts_with(monitors))
            if (auto candidate = examine(classFolder, entry->d_name))
                candidates.push_back(std::move(*candidate));
    std::sort(candidates.begin(), candidates.end(), [](const Candidate& a, const Candidate& b) {
        return std::tie(a.rank, a.device.name) < std::tie(b.rank, b.device.name);
    });
    std::vector<BacklightDevice> devices;
    for (Candidate& candidate : candidates)
        devices.push_back(std::move(candidate.device));
    return devices;
}

BacklightReading readBacklight(const BacklightDevice& device) {
    return backlightReading(NumberFile(device.folder + "/brightness").read(),
                            NumberFile(device.folder + "/actual_brightness").read(),
                            device.maximum);
}

BacklightReading backlightReading(std::optional<unsigned int> setting,
                                  std::optional<unsigned int> actual, unsigned int maximum) {
    const auto upTo = [maximum](std::optional<unsigned int> value) {
        return value && *value <= maximum ? value : std::nullopt;
    };
    setting = upTo(setting);
    return {setting ? setting : upTo(actual), actual};
}

} // namespace noctra
