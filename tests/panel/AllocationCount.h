#pragma once

#include <cstdint>

namespace noctra {

/// How many blocks this program has asked operator new for since it started.
[[nodiscard]] std::uint64_t allocationCount();

} // namespace noctra
