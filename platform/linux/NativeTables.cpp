#include "platform/linux/NativeTables.h"

#include <algorithm>
#include <cstdlib>

namespace noctra {

namespace {

constexpr int rounding = 256;    // of two loaders of one profile
constexpr int stepOf8Bits = 257; // of 65535
constexpr int leastEnd = 0xFF00;

bool isClose(const std::vector<std::uint16_t>& a, const std::vector<std::uint16_t>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](int one, int other) { return std::abs(one - other) <= rounding; });
}

bool isStraight(const std::vector<std::uint16_t>& levels) {
    if (levels.empty() || levels.back() < leastEnd)
        return false;
    const std::size_t last = levels.size() - 1;
    for (std::size_t i = 0; i < last; ++i)
        if (std::abs(static_cast<double>(levels[i]) - static_cast<double>(levels.back()) *
                                                          static_cast<double>(i) /
                                                          static_cast<double>(last)) > stepOf8Bits)
            return false;
    return true;
}

} // namespace

bool isSameCalibration(const NativeTables& a, const NativeTables& b) {
    return isClose(a.red, b.red) && isClose(a.green, b.green) && isClose(a.blue, b.blue);
}

bool isPlainRamp(const NativeTables& tables) {
    return isStraight(tables.red) && isStraight(tables.green) && isStraight(tables.blue);
}

} // namespace noctra
