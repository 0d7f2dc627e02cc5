#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace noctra::fuzz {

/// Ends the process with `rule` where it does not hold, which is a finding.
inline void require(bool holds, const char* rule) {
    if (holds)
        return;
    std::fprintf(stderr, "A rule is broken: %s\n", rule);
    std::abort();
}

inline std::string_view textIn(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

} // namespace noctra::fuzz
