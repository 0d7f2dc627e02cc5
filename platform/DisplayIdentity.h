#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/GammaTables.h"

namespace noctra {

/// What a display says about itself: the first block, which tells one display from another unless
/// they are twins without serial numbers.
using Edid = std::array<std::uint8_t, 128>;

/// One attached display, as every adapter that deals with displays knows it.
struct AttachedDisplay {
    DisplayId id = 0;
    bool builtIn = false; ///< a panel that is part of the machine
    std::optional<Edid> edid = {};
    std::string connector = {}; ///< the plug's name, as `connectorName` spells it

    friend bool operator==(const AttachedDisplay&, const AttachedDisplay&) = default;
};

/// A connector's name in the one spelling that is used here, that of RandR drivers: the kernel's
/// "card0-HDMI-A-1" and the "HDMI-A-1" of Wayland compositors are "HDMI-1". Any thread.
[[nodiscard]] std::string connectorName(std::string_view name);

/// True for the name of a connector without a plug to the outside, such as "eDP-1". Any thread.
[[nodiscard]] bool isPanelConnectorName(std::string_view connector);

/// A 32-bit FNV-1a hash, which is the same at every start and on every machine.
[[nodiscard]] std::uint32_t stableHash(std::span<const std::uint8_t> bytes,
                                       std::uint32_t begin = 2166136261U);

/// Numbers displays so that a number follows its display: to another output, over being unplugged,
/// and from one run to the next. It comes from the display's EDID where no other attached one has
/// the same, else from EDID and connector, else from the connector. A display keeps its number for
/// the rest of the run also where a twin of it comes or goes, and where its EDID cannot be read for
/// a while. One thread at a time.
class DisplayNumbers {
public:
    /// Sets `id` of each of `displays`, which are those that are attached now: never 0, and each
    /// once.
    void assign(std::span<AttachedDisplay> displays);

private:
    using Place = std::pair<std::optional<Edid>, std::string>; ///< EDID and connector

    [[nodiscard]] std::optional<DisplayId> numberBefore(const AttachedDisplay& display) const;

    std::map<Place, DisplayId> known_;                ///< of this run
    std::map<std::string, AttachedDisplay> attached_; ///< at the last call, by connector
};

} // namespace noctra
