#include "tests/desktop/support/Tables.h"

#include <algorithm>
#include <cstdlib>

namespace noctra::desktop {

namespace {

std::string difference(const std::string& where, const std::vector<std::uint16_t>& actual,
                       const std::vector<std::uint16_t>& expected, int steps) {
    if (actual.size() != expected.size())
        return where + " has " + std::to_string(actual.size()) + " entries, not " +
               std::to_string(expected.size()) + "\n";
    std::size_t worst = 0;
    const auto distance = [&](std::size_t entry) {
        return std::abs(actual[entry] - expected[entry]);
    };
    for (std::size_t entry = 0; entry < actual.size(); ++entry)
        if (distance(entry) > distance(worst))
            worst = entry;
    if (actual.empty() || distance(worst) <= steps)
        return {};
    return where + " is " + std::to_string(actual[worst]) + " at entry " + std::to_string(worst) +
           ", not " + std::to_string(expected[worst]) + "\n";
}

} // namespace

std::string difference(const TablesByCrtc& actual, const TablesByCrtc& expected, int steps) {
    if (!std::ranges::equal(actual, expected, {}, &TablesByCrtc::value_type::first,
                            &TablesByCrtc::value_type::first))
        return "not the same CRTCs\n";
    std::string found;
    for (const auto& [crtc, tables] : actual) {
        const Tables& wanted = expected.at(crtc);
        const std::string name = "CRTC " + std::to_string(crtc);
        found += difference(name + " red", tables.red, wanted.red, steps);
        found += difference(name + " green", tables.green, wanted.green, steps);
        found += difference(name + " blue", tables.blue, wanted.blue, steps);
    }
    return found;
}

} // namespace noctra::desktop
