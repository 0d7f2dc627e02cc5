#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace noctra::test {

/// Names the file that the stand-in for libddcutil maps: a StandInMonitors.
inline constexpr const char* standInVariable = "NOCTRA_TEST_MONITORS";

/// A monitor that tests equip with the troubles that real ones have. Lives in memory that the test
/// and the program under test share; a new one is all zeros.
struct StandInMonitor {
    std::atomic<bool> present;
    std::array<std::uint8_t, 128> edid; ///< set before the program starts
    std::atomic<std::uint16_t> maximum;
    std::atomic<std::uint16_t> value;
    // Troubles:
    std::atomic<int> readMilliseconds; ///< that a command takes
    std::atomic<int> writeMilliseconds;
    std::atomic<bool> ignoresWrites; ///< and says that all is well
    std::atomic<int> revertsAfterMilliseconds;
    std::atomic<bool> failsReads;
    std::atomic<bool> failsWrites;
    std::atomic<bool> unplugged; ///< cannot be opened; stays in the list
    // What has been done to it:
    std::atomic<int> reads;
    std::atomic<int> writes;
    std::atomic<int> open;                   ///< handles at the moment
    std::atomic<std::int64_t> lastEnd;       ///< of a command, steady clock in ns
    std::atomic<std::int64_t> shortestPause; ///< between commands, ns; to be set high at first
    std::atomic<std::int64_t> writtenAt;     ///< ns; 0: it has nothing to revert
    std::atomic<std::uint16_t> revertsTo;
};

struct StandInMonitors {
    std::array<StandInMonitor, 3> monitors;
    std::atomic<int> loads;
    std::atomic<int> redetections;
};

} // namespace noctra::test
