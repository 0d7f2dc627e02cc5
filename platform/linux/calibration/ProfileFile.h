#pragma once

#include <string>

#include "platform/linux/calibration/IccProfile.h"

namespace noctra {

/// The contents of a profile's file. Empty when it cannot be read, is not a regular file (a pipe is
/// not waited for) or is larger than `largestIccProfile`. Any thread.
[[nodiscard]] IccProfile readProfileFile(const std::string& path);

} // namespace noctra
