#include "platform/linux/tray/StrutProperty.h"

#include <algorithm>
#include <cstddef>
#include <limits>

namespace noctra {

namespace {

constexpr int largestCoordinate = std::numeric_limits<std::int16_t>::max();

int coordinate(std::uint32_t value) {
    return static_cast<int>(std::min<std::uint32_t>(value, largestCoordinate));
}

} // namespace

Strut strutIn(std::span<const std::uint32_t> partial, std::span<const std::uint32_t> plain) {
    const auto side = [&](std::size_t index) -> StrutSide {
        if (partial.size() == 12)
            return {coordinate(partial[index]), coordinate(partial[4 + 2 * index]),
                    coordinate(partial[5 + 2 * index])};
        if (plain.size() == 4)
            return {coordinate(plain[index]), 0, largestCoordinate};
        return {};
    };
    return {side(0), side(1), side(2), side(3)};
}

} // namespace noctra
