#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace noctra {

/// The value of a desktop entry's Exec key that runs the program at `path` without arguments.
[[nodiscard]] std::string execLineFor(std::string_view path);

/// The text that the value of a desktop entry's key stands for.
[[nodiscard]] std::string textIn(std::string_view value);

/// The program and the arguments that the value of an Exec key names, as far as it is well formed.
/// Field codes such as %U stay as they are.
[[nodiscard]] std::vector<std::string> argumentsIn(std::string_view execLine);

} // namespace noctra
