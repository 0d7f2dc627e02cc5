#include "foundation/Numbers.h"

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace noctra {

TEST(Numbers, AreWrittenInTheirShortestDecimalFormWithAFraction) {
    const std::vector<std::pair<double, std::string>> cases{
        {-0.0, "-0.0"},
        {0.35, "0.35"},
        {0.1 + 0.2, "0.30000000000000004"},
        {100000.0, "100000.0"},
        {0.0001, "0.0001"},
        {-1e-5, "-1e-05"},
        {1e-320, "1e-320"},
        {9007199254740993.0, "9007199254740992.0"},
        {1e21, "1e+21"},
        {std::numeric_limits<double>::quiet_NaN(), "nan"},
        {-std::numeric_limits<double>::infinity(), "-inf"}};
    for (const auto& [value, text] : cases)
        EXPECT_EQ(shortestDecimal(value), text);
    EXPECT_EQ(shortestDecimal(0.1F), "0.1") << "a float is not widened first";
}

} // namespace noctra
