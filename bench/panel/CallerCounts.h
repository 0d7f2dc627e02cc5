#pragma once

#include <cstdint>

namespace noctra::bench {

/// How many blocks of memory this process's threads have asked for since it started.
struct CallerCounts {
    std::uint64_t ours = 0;   ///< by operator new, called from the program or the panel's library
    std::uint64_t others = 0; ///< everything else: Qt, xcb, the C library

    friend CallerCounts operator-(CallerCounts a, const CallerCounts& b) {
        a.ours -= b.ours;
        a.others -= b.others;
        return a;
    }
    CallerCounts& operator+=(const CallerCounts& other) {
        ours += other.ours;
        others += other.others;
        return *this;
    }
};

/// From now on calls from the panel's library count as ours; call it once that has been loaded.
void findPanelLibrary();

[[nodiscard]] CallerCounts callerCounts();

} // namespace noctra::bench
