#pragma once

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace noctra::test {

/// The folder that this run of the tests may write to; `main` removes it.
[[nodiscard]] const std::filesystem::path& scratchFolder();

/// Writes a file there and gives its path.
std::string writeScratchFile(const std::string& name, std::span<const std::byte> contents);

} // namespace noctra::test
