#include "platform/DisplayIdentity.h"

#include <algorithm>
#include <set>

namespace noctra {

namespace {

std::uint32_t hashOf(const std::optional<Edid>& edid, std::string_view connector) {
    const std::uint32_t ofEdid = edid ? stableHash(*edid) : stableHash({});
    return stableHash({reinterpret_cast<const std::uint8_t*>(connector.data()), connector.size()},
                      ofEdid);
}

/// The first number from `wanted` on that is free.
DisplayId freeFrom(std::uint32_t wanted, const std::set<DisplayId>& taken) {
    while (wanted == 0 || taken.contains(wanted))
        ++wanted;
    return wanted;
}

bool hasTwin(std::span<const AttachedDisplay> displays, const AttachedDisplay& display) {
    return std::ranges::count(displays, display.edid, &AttachedDisplay::edid) > 1;
}

} // namespace

std::uint32_t stableHash(std::span<const std::uint8_t> bytes, std::uint32_t begin) {
    constexpr std::uint32_t prime = 16777619U;
    std::uint32_t hash = begin;
    for (const std::uint8_t byte : bytes)
        hash = (hash ^ byte) * prime;
    return hash;
}

std::string connectorName(std::string_view name) {
    if (name.starts_with("card")) {
        const std::size_t digits = name.find_first_not_of("0123456789", 4);
        if (digits != std::string_view::npos && digits > 4 && name[digits] == '-')
            name.remove_prefix(digits + 1);
    }
    constexpr std::string_view kernelsHdmi = "HDMI-A-";
    return name.starts_with(kernelsHdmi) ? "HDMI-" + std::string(name.substr(kernelsHdmi.size()))
                                         : std::string(name);
}

bool isPanelConnectorName(std::string_view connector) {
    constexpr std::array<std::string_view, 3> starts{"eDP", "LVDS", "DSI"};
    return std::ranges::any_of(
        starts, [connector](std::string_view start) { return connector.starts_with(start); });
}

/// The number of the display that was on this connector the last time, if this is the same one.
std::optional<DisplayId> DisplayNumbers::numberBefore(const AttachedDisplay& display) const {
    const auto before = attached_.find(display.connector);
    if (before == attached_.end())
        return std::nullopt;
    const bool same = display.edid == before->second.edid || !display.edid ||
                      (display.builtIn && before->second.builtIn);
    return same ? std::optional(before->second.id) : std::nullopt;
}

void DisplayNumbers::assign(std::span<AttachedDisplay> displays) {
    std::set<DisplayId> taken;
    std::vector<AttachedDisplay*> newcomers;
    for (AttachedDisplay& display : displays) {
        const auto number = numberBefore(display);
        if (number && taken.insert(*number).second)
            display.id = *number;
        else
            newcomers.push_back(&display);
    }
    for (AttachedDisplay* display : newcomers) {
        const auto known = known_.find({display->edid, display->connector});
        if (known != known_.end() && !taken.contains(known->second)) {
            display->id = known->second;
        } else {
            const bool alone = display->edid && !hasTwin(displays, *display);
            const std::uint32_t own = alone ? stableHash(*display->edid) : 0;
            display->id = own != 0 && !taken.contains(own)
                              ? own
                              : freeFrom(hashOf(display->edid, display->connector), taken);
        }
        taken.insert(display->id);
    }
    attached_.clear();
    for (const AttachedDisplay& display : displays) {
        attached_.emplace(display.connector, display);
        known_[{display.edid, display.connector}] = display.id;
    }
}

} // namespace noctra
