#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace noctra::desktop {

/// The gamma tables of one CRTC, in the X server's 16-bit levels.
struct Tables {
    std::vector<std::uint16_t> red;
    std::vector<std::uint16_t> green;
    std::vector<std::uint16_t> blue;

    friend bool operator==(const Tables&, const Tables&) = default;
};

/// The tables of several CRTCs, by the CRTC's number in the server's list.
using TablesByCrtc = std::map<int, Tables>;

/// Where two sets of tables are further apart than `steps`; empty when nowhere. Names at most one
/// entry for each channel.
std::string difference(const TablesByCrtc& actual, const TablesByCrtc& expected, int steps);

} // namespace noctra::desktop
