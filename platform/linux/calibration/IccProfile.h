#pragma once

#include <cstddef>
#include <vector>

namespace noctra {

/// The bytes of an ICC profile as they came from a file or a property, unchecked.
using IccProfile = std::vector<std::byte>;

/// Larger profiles are left unread. Display profiles take a few kilobytes, the largest with full
/// look-up tables a few megabytes.
inline constexpr std::size_t largestIccProfile = std::size_t{16} << 20;

} // namespace noctra
