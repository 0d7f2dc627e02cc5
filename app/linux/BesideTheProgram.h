#pragma once

#include <string>
#include <vector>

#include "platform/linux/LinuxSystem.h"

namespace noctra {

/// The same file as seen from an installed program, and from one in the folder that everything was
/// built in; both relative to the program's own folder.
[[nodiscard]] inline std::vector<std::string> besideTheProgram(const char* installed,
                                                               const char* built) {
    const std::string program = programPath();
    const std::string folder = program.substr(0, program.rfind('/') + 1);
    return {folder + installed, folder + built};
}

} // namespace noctra
