#pragma once

#include <cstdint>

namespace noctra::bench {

/// How many blocks of memory this process has asked for since it started, on all threads.
struct AllocationCounts {
    std::uint64_t fromCpp;    ///< through operator new: the program's own code
    std::uint64_t fromMalloc; ///< through malloc, which also libxcb and operator new use
};

[[nodiscard]] AllocationCounts allocationCounts();

} // namespace noctra::bench
